#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "ExtPtrArray.h"
#include "KestrumObject.h"
#include "ValidityWord.h"

class AttributeSet;
class DataBuffer;
class LogBase;
class ParseEngine;
class StringBuffer;
class TreeInfo;
class TreeNode;

/// Releases a whole tree through its root.
struct TreeRelease {
  void operator()(TreeNode* root) const noexcept;
};
/// A tree that no cursor counts yet.
using UncountedTree = std::unique_ptr<TreeNode, TreeRelease>;

/// An attribute that a search asks for.
struct StringPair {
  std::string_view name;
  std::string_view value;
};

/// One element of a document. Nodes belong to the TreeInfo of their document, not to their
/// parents, and live as long as it. Texts are UTF-8.
///
/// An operation on a node that has been destroyed finds that out while the memory is still there,
/// and returns false, 0, null or an empty view. Operations that add to a tree return false or null
/// if memory is short. The tree's lock is in its TreeInfo.
class TreeNode : public KestrumObject {
 public:
  // Making trees ------------------------------------------------------------------------------

  /// A new document with this root, null if memory is short.
  static UncountedTree createRoot(std::string_view tag);
  /// A new last child of `parent`, in its document; null if memory is short. Without a parent, the
  /// root of a new document that the caller releases.
  static TreeNode* createNode(TreeNode* parent, std::string_view tag);

  /// Parses a file or text into a new tree. Whatever can be read goes into the tree and the rest
  /// is skipped: a document without an element gives a root "empty". Null only if the file can't
  /// be read or has no byte, the text is a null pointer, or memory is short for the root. Where it
  /// runs short later, what was read by then is the tree.
  ///
  /// With `autoTrim`, white space around texts goes. With `preventDuplicates`, the last attribute
  /// of a name wins, and it is the only one; otherwise all are kept and the first is found.
  static UncountedTree customParseFile(const char* path, LogBase* log, bool autoTrim,
                                       bool preventDuplicates, bool lowercaseNames);
  /// The bytes are taken as UTF-8.
  static UncountedTree customParseDb(const DataBuffer& bytes, LogBase* log, bool autoTrim,
                                     bool preventDuplicates, bool lowercaseNames);
  static UncountedTree customParseString(const char* text, LogBase* log, bool autoTrim,
                                         bool preventDuplicates, bool lowercaseNames);
  static UncountedTree customParse(ParseEngine& engine, LogBase* log, bool autoTrim,
                                   bool preventDuplicates, bool lowercaseNames);
  /// Reads a file and brings its text to UTF-8. The path is UTF-8. False, with the reason in the
  /// log, if the file can't be read; false too if it is empty.
  static bool loadToUtf8(const char* path, DataBuffer& out, LogBase& log);

  // Looking around ----------------------------------------------------------------------------

  /// True for a node that is alive.
  bool checkTreeNodeValidity() const;
  TreeInfo* getTreeInfo() const;
  TreeNode* getRoot() const;
  TreeNode* getParent() const;
  TreeNode* getNextSibling() const;
  TreeNode* getPrevSibling() const;
  TreeNode* getFirstChild() const { return getChild(0); }
  TreeNode* getLastChild() const { return getChild(getNumChildren() - 1); }
  int getNumChildren() const;
  /// Null out of range.
  TreeNode* getChild(int index) const;
  /// The first direct child of exactly this tag, and with the attribute if one is asked for. A
  /// tag that begins with "*:" leaves the prefix of a child's tag aside. Null has no tag.
  TreeNode* getChild(const char* tag, const StringPair* attrFilter) const {
    return tag == nullptr ? nullptr : findChild(tag, attrFilter);
  }
  TreeNode* findChild(std::string_view tag, const StringPair* attrFilter) const;

  /// Null on an invalid node.
  const char* getTag() const;
  bool tagEquals(std::string_view tag) const;
  /// The element's text as it stood in the document, with its entities.
  std::string_view getContent() const;
  /// The text came from a CDATA section, so that what looks like an entity is none.
  bool isCdata() const;
  /// Null for a node without attributes.
  const AttributeSet* getAttributes() const;
  /// Empties `out`, then appends the value. True if the attribute exists, also with an empty
  /// value.
  bool getAttributeValue(const char* name, StringBuffer& out) const;

  // Filling a node ----------------------------------------------------------------------------

  /// Sets the tag; bytes that belong in no name are removed.
  bool setTnTag(std::string_view tag);
  /// Adds an attribute with its name cleaned in the same way. The parser, which sets all of a tag
  /// at once, doesn't call it.
  bool addAttributeSb(const StringBuffer& name, const StringBuffer& value);
  /// Replaces the attributes by a copy of these.
  bool setAttributes(const AttributeSet& attributes);
  /// Replaces them by this very set, which needs no memory.
  void takeAttributes(std::unique_ptr<AttributeSet> attributes);
  /// Adds to the text; a `separator` stands between this piece and text that is there already.
  bool appendContent(std::string_view separator, std::string_view piece);
  /// The same for the text of a CDATA section.
  bool appendCdata(std::string_view piece);
  /// Removes white space around the text, and the text if nothing is left.
  void trimContent();

  // Counting cursors --------------------------------------------------------------------------

  /// Counts a cursor on this node and on its tree. False on an invalid node.
  bool incTreeRefCount();
  /// Takes a cursor off. No count goes below 0.
  bool decTreeRefCount();
  /// Cursors on all nodes of the tree.
  int getTreeRefCount() const;
  /// Cursors on this node.
  int getRefCount() const;

 private:
  friend class TreeInfo;

  explicit TreeNode(TreeInfo& info);
  ~TreeNode() override;

  std::int32_t m_refCount = 0;
  std::unique_ptr<StringBuffer> m_content;
  TreeInfo* m_treeInfo;
  /// Up to 15 bytes lie inside the node.
  std::string m_tag;
  std::unique_ptr<AttributeSet> m_attributes;
  /// In document order. Null without children.
  std::unique_ptr<ExtPtrArray> m_children;
  TreeNode* m_parent = nullptr;
  TreeNode* m_nextSibling = nullptr;
  TreeNode* m_prevSibling = nullptr;
  bool m_isCdata = false;
  ValidityWord<std::uint8_t, 0xCE, 0x31> m_validMark;
};
