#include "ClsXml.h"

#include <memory>
#include <new>
#include <string_view>

#include "AsciiText.h"
#include "AttributeSet.h"
#include "CkMemory.h"
#include "Psdk.h"
#include "StringBuffer.h"
#include "TreeInfo.h"
#include "TreeNode.h"
#include "XString.h"
#include "XmlBytes.h"

namespace {

/// What callers hand over as a name or path often comes from a text field. Null is empty.
std::string_view trimmed(const char* text) {
  std::string_view result = text == nullptr ? "" : text;
  while (!result.empty() && isXmlByte(result.front(), kXmlBlank)) result.remove_prefix(1);
  return withoutBlanksAtEnd(result);
}

struct Release {
  void operator()(ClsXml* xml) const { xml->deleteSelf(); }
};

LogBase& cleared(LogBase& log) {
  log.ClearLog();
  return log;
}

}  // namespace

/// The frame of a public operation: the object's lock, a fresh log with the operation's name, and
/// the check that there is a tree.
class ClsXml::PublicCall {
 public:
  PublicCall(ClsXml& xml, const char* name) : m_lock(&xml), m_context(cleared(xml.m_log), name) {
    xml.logKestrumVersion(xml.m_log);
    m_hasTree = xml.assert_m_tree(xml.m_log);
  }

  bool hasTree() const { return m_hasTree; }

 private:
  CritSecExitor m_lock;
  LogContextExitor m_context;
  bool m_hasTree;
};

// Life -------------------------------------------------------------------------------------------

ClsXml* ClsXml::createNewCls() {
  try {
    std::unique_ptr<ClsXml, Release> made(new ClsXml);
    return made->m_tree == nullptr ? nullptr : made.release();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

ClsXml::ClsXml() { standOnNewRoot("unnamed"); }

ClsXml::ClsXml(const ClsXml& other) {
  // Locking leaves the other cursor as it is.
  const CritSecExitor lock(const_cast<ClsXml*>(&other));
  if (other.m_tree == nullptr) return;
  const CritSecExitor treeLock(other.m_tree->getTreeInfo());
  if (other.m_tree->incTreeRefCount()) m_tree = other.m_tree;
}

ClsXml::~ClsXml() {
  if (!m_xmlMagic.isAlive()) Psdk::badObjectFound();
  const CritSecExitor lock(this);
  removeTree();
}

void ClsXml::standOnNewRoot(const char* tag) {
  m_tree = TreeNode::createRoot(tag).release();
  if (m_tree != nullptr) m_tree->incTreeRefCount();
}

void ClsXml::removeTree() {
  if (m_tree == nullptr) return;
  TreeInfo* const info = m_tree->getTreeInfo();
  // Memory that isn't what it should be is abandoned rather than touched.
  if (info != nullptr && info->isValid()) {
    bool wasLast = false;
    {
      const CritSecExitor treeLock(info);
      m_tree->decTreeRefCount();
      wasLast = m_tree->getTreeRefCount() == 0;
    }
    if (wasLast) delete info;
  }
  m_tree = nullptr;
}

bool ClsXml::assert_m_tree(LogBase& log) {
  if (m_tree == nullptr) {
    log.LogError("m_tree is null.");
    return false;
  }
  if (m_tree->checkTreeNodeValidity()) return true;
  log.LogError("m_tree is invalid.");
  standOnNewRoot("rroot");
  return false;
}

bool ClsXml::assert_m_tree() {
  if (m_tree == nullptr) return false;
  if (m_tree->checkTreeNodeValidity()) return true;
  standOnNewRoot("rRoot");
  return false;
}

void ClsXml::moveTo(TreeNode* node) {
  node->incTreeRefCount();
  m_tree->decTreeRefCount();
  m_tree = node;
}

// Public operations ------------------------------------------------------------------------------

bool ClsXml::LoadXmlFile(XString& path) {
  const PublicCall call(*this, "LoadXmlFile");
  if (!call.hasTree()) return false;
  m_log.LogDataX("path", path);
  const bool success = loadXmlFile(path.getUtf8(), true, m_log);
  logSuccessFailure(success);
  return success;
}

void ClsXml::GetRoot2() {
  const PublicCall call(*this, "GetRoot2");
  if (call.hasTree()) getRoot2();
}

bool ClsXml::FindChild2(XString& tag) {
  const PublicCall call(*this, "FindChild2");
  return call.hasTree() && findChild2(tag.getUtf8());
}

bool ClsXml::GetAttrValue(XString& name, XString& out) {
  out.clear();
  const PublicCall call(*this, "GetAttrValue");
  if (!call.hasTree()) return false;
  const std::uint32_t shortages = ckMemoryShortages();
  const bool found = getAttrValue(name.getUtf8(), out.getUtf8Sb_rw());
  // "" would look like an attribute without a value.
  return ckMemoryShortages() == shortages ? found : out.noteShortage();
}

int ClsXml::GetAttrValueInt(XString& name) {
  const PublicCall call(*this, "GetAttrValueInt");
  return call.hasTree() ? getAttrValueInt(name.getUtf8()) : 0;
}

// Inner operations -------------------------------------------------------------------------------

bool ClsXml::loadXmlFile(const char* path, bool autoTrim, LogBase& log) {
  const CritSecExitor lock(this);
  if (!assert_m_tree(log)) return false;
  StringBuffer cleanPath;
  if (!cleanPath.append(trimmed(path))) return false;
  UncountedTree tree =
      TreeNode::customParseFile(cleanPath.getString(), &log, autoTrim, false, false);
  if (tree == nullptr) return false;
  TreeInfo& loaded = *tree->getTreeInfo();
  if (TreeInfo* const old = m_tree->getTreeInfo(); old != nullptr && old->isValid()) {
    const CritSecExitor treeLock(old);
    loaded.m_emitBom = old->m_emitBom;
    loaded.m_emitCompact = old->m_emitCompact;
  }
  removeTree();
  m_tree = tree.release();
  m_tree->incTreeRefCount();
  return true;
}

void ClsXml::getRoot2() {
  const CritSecExitor treeLock(m_tree->getTreeInfo());
  TreeNode* const root = m_tree->getRoot();
  if (root != nullptr && root != m_tree && root->checkTreeNodeValidity()) moveTo(root);
}

bool ClsXml::findChild2(const char* tag) {
  const CritSecExitor lock(this);
  if (!assert_m_tree()) return false;
  const CritSecExitor treeLock(m_tree->getTreeInfo());
  TreeNode* const child = m_tree->findChild(trimmed(tag), nullptr);
  if (child == nullptr) return false;
  moveTo(child);
  return true;
}

bool ClsXml::getAttrValue(const char* name, StringBuffer& out) {
  out.weakClear();
  const CritSecExitor lock(this);
  if (!assert_m_tree()) return false;
  const CritSecExitor treeLock(m_tree->getTreeInfo());
  const AttributeSet* const attributes = m_tree->getAttributes();
  return attributes != nullptr && attributes->getAttributeValue(trimmed(name), out);
}

int ClsXml::getAttrValueInt(const char* name) {
  const CritSecExitor lock(this);
  if (!assert_m_tree()) return 0;
  const CritSecExitor treeLock(m_tree->getTreeInfo());
  const AttributeSet* const attributes = m_tree->getAttributes();
  return attributes == nullptr ? 0 : asciiIntValue(attributes->valueOf(trimmed(name)).value_or(""));
}
