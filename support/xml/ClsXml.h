#pragma once

#include <cstdint>

#include "ClsBase.h"
#include "ValidityWord.h"

class StringBuffer;
class TreeNode;
class XString;

/// A cursor on one node of a document. Navigation moves the cursor and makes nothing. Any number
/// of cursors may stand on one tree, which lives as long as any of them, and each may be used by
/// a thread of its own.
///
/// Locks: the cursor's own comes before that of the tree.
class ClsXml : public ClsBase {
 public:
  /// A cursor on a new document with the root "unnamed"; null if memory is short. End it with
  /// deleteSelf().
  static ClsXml* createNewCls();
  /// A second cursor on the same node.
  ClsXml(const ClsXml& other);
  ClsXml& operator=(const ClsXml&) = delete;

  // Public operations: each starts the log anew -----------------------------------------------

  /// Reads a file into a new tree, with the white space around texts removed, and stands the
  /// cursor on its root. False, with the cursor where it was, if the file can't be read or is
  /// empty.
  bool LoadXmlFile(XString& path);
  void GetRoot2();
  /// Moves to the first direct child of that tag; false leaves the cursor where it is. White
  /// space around the tag doesn't count, and "*:" in front of it stands for any prefix.
  bool FindChild2(XString& tag);
  /// Replaces `out` by the attribute's value. True if the attribute exists, also with an empty
  /// value.
  bool GetAttrValue(XString& name, XString& out);
  /// The number that the value begins with, 0 if there is none or no attribute.
  int GetAttrValueInt(XString& name);

  // The same without a log of their own; texts are UTF-8 ----------------------------------------

  bool loadXmlFile(const char* path, bool autoTrim, LogBase& log);
  bool findChild2(const char* tag);
  bool getAttrValue(const char* name, StringBuffer& out);
  int getAttrValueInt(const char* name);

  /// The node that the cursor stands on. Looking at it takes the tree's lock.
  TreeNode* getTree() const { return m_tree; }

 private:
  class PublicCall;

  ClsXml();
  ~ClsXml() override;

  bool assert_m_tree(LogBase& log);
  bool assert_m_tree();
  void standOnNewRoot(const char* tag);
  void moveTo(TreeNode* node);
  void getRoot2();
  void removeTree();

  ValidityWord<std::uint32_t, 0x11BBDCE9> m_xmlMagic;
  TreeNode* m_tree = nullptr;
};
