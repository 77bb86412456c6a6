#include "TreeNode.h"

#include <new>
#include <optional>
#include <utility>

#include "AttributeSet.h"
#include "Psdk.h"
#include "StringBuffer.h"
#include "TreeInfo.h"
#include "XmlBytes.h"

namespace {

constexpr std::string_view kAnyPrefix = "*:";

/// Runs a step that may be short of memory.
template <typename Step>
bool hadMemoryFor(Step step) {
  try {
    step();
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

std::string_view withoutPrefix(std::string_view tag) {
  const std::size_t colon = tag.find(':');
  return colon == std::string_view::npos ? tag : tag.substr(colon + 1);
}

}  // namespace

void TreeRelease::operator()(TreeNode* root) const noexcept { delete root->getTreeInfo(); }

// Making trees -----------------------------------------------------------------------------------

TreeNode::TreeNode(TreeInfo& info) : m_treeInfo(&info) {}

TreeNode::~TreeNode() = default;

UncountedTree TreeNode::createRoot(std::string_view tag) {
  try {
    auto info = std::make_unique<TreeInfo>();
    info->m_root = new TreeNode(*info);
    UncountedTree root(info.release()->m_root);
    if (!root->setTnTag(tag)) root.reset();
    return root;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

TreeNode* TreeNode::createNode(TreeNode* parent, std::string_view tag) {
  if (parent == nullptr) return createRoot(tag).release();
  if (!parent->checkTreeNodeValidity()) return nullptr;
  try {
    if (parent->m_children == nullptr) parent->m_children = std::make_unique<ExtPtrArray>();
    TreeNode* const previous = parent->getLastChild();
    auto* const node = new TreeNode(*parent->m_treeInfo);
    std::unique_ptr<KestrumObject> owner(node);
    if (!node->setTnTag(tag) || !parent->m_children->appendPtr(node)) return nullptr;
    static_cast<void>(owner.release());  // The document's now.
    node->m_parent = parent;
    node->m_prevSibling = previous;
    if (previous != nullptr) previous->m_nextSibling = node;
    return node;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

// Looking around ---------------------------------------------------------------------------------

bool TreeNode::checkTreeNodeValidity() const {
  const bool valid = m_validMark.isAlive();
  if (!valid) Psdk::badObjectFound();
  return valid;
}

TreeInfo* TreeNode::getTreeInfo() const { return checkTreeNodeValidity() ? m_treeInfo : nullptr; }

TreeNode* TreeNode::getRoot() const {
  return checkTreeNodeValidity() && m_treeInfo->isValid() ? m_treeInfo->m_root : nullptr;
}

TreeNode* TreeNode::getParent() const { return checkTreeNodeValidity() ? m_parent : nullptr; }

TreeNode* TreeNode::getNextSibling() const {
  return checkTreeNodeValidity() ? m_nextSibling : nullptr;
}

TreeNode* TreeNode::getPrevSibling() const {
  return checkTreeNodeValidity() ? m_prevSibling : nullptr;
}

int TreeNode::getNumChildren() const {
  return checkTreeNodeValidity() && m_children != nullptr ? m_children->getSize() : 0;
}

TreeNode* TreeNode::getChild(int index) const {
  if (!checkTreeNodeValidity() || m_children == nullptr) return nullptr;
  return static_cast<TreeNode*>(m_children->elementAt(index));
}

TreeNode* TreeNode::findChild(std::string_view tag, const StringPair* attrFilter) const {
  const bool anyPrefix = tag.starts_with(kAnyPrefix);
  if (anyPrefix) tag.remove_prefix(kAnyPrefix.size());
  const auto isWanted = [=](const TreeNode* child) {
    if (child == nullptr || !child->checkTreeNodeValidity()) return false;
    if (child->m_tag != tag && !(anyPrefix && withoutPrefix(child->m_tag) == tag)) return false;
    if (attrFilter == nullptr) return true;
    const std::optional<std::string_view> value =
        child->m_attributes == nullptr ? std::nullopt
                                       : child->m_attributes->valueOf(attrFilter->name);
    return value == attrFilter->value;
  };
  // By number, not from sibling to sibling: one that is invalid has no next one.
  const int children = getNumChildren();
  for (int i = 0; i < children; ++i) {
    if (TreeNode* const child = getChild(i); isWanted(child)) return child;
  }
  return nullptr;
}

const char* TreeNode::getTag() const { return checkTreeNodeValidity() ? m_tag.c_str() : nullptr; }

bool TreeNode::tagEquals(std::string_view tag) const {
  return checkTreeNodeValidity() && m_tag == tag;
}

std::string_view TreeNode::getContent() const {
  return checkTreeNodeValidity() && m_content != nullptr ? m_content->view() : std::string_view();
}

bool TreeNode::isCdata() const { return checkTreeNodeValidity() && m_isCdata; }

const AttributeSet* TreeNode::getAttributes() const {
  return checkTreeNodeValidity() ? m_attributes.get() : nullptr;
}

bool TreeNode::getAttributeValue(const char* name, StringBuffer& out) const {
  out.weakClear();
  const AttributeSet* const attributes = getAttributes();
  return attributes != nullptr && name != nullptr && attributes->getAttributeValue(name, out);
}

// Filling a node ---------------------------------------------------------------------------------

bool TreeNode::setTnTag(std::string_view tag) {
  return checkTreeNodeValidity() && hadMemoryFor([this, tag] {
           std::string scratch;
           m_tag = cleanXmlName(tag, scratch);
         });
}

bool TreeNode::addAttributeSb(const StringBuffer& name, const StringBuffer& value) {
  return checkTreeNodeValidity() && hadMemoryFor([this, &name, &value] {
           if (m_attributes == nullptr) m_attributes = std::make_unique<AttributeSet>();
           std::string scratch;
           m_attributes->addAttribute(cleanXmlAttributeName(name.view(), scratch), value.view());
         });
}

bool TreeNode::setAttributes(const AttributeSet& attributes) {
  return checkTreeNodeValidity() && hadMemoryFor([this, &attributes] {
           m_attributes = std::make_unique<AttributeSet>(attributes);
         });
}

void TreeNode::takeAttributes(std::unique_ptr<AttributeSet> attributes) {
  if (checkTreeNodeValidity()) m_attributes = std::move(attributes);
}

bool TreeNode::appendContent(std::string_view separator, std::string_view piece) {
  if (!checkTreeNodeValidity()) return false;
  const auto ensureContent = [this] {
    if (m_content != nullptr) return;
    m_content = std::make_unique<StringBuffer>();
    // The usual text comes in one piece, and then needs no slack.
    m_content->setExtendSize(0);
  };
  if (!hadMemoryFor(ensureContent)) return false;
  const std::uint32_t before = m_content->getSize();
  if ((before == 0 || m_content->append(separator)) && m_content->append(piece)) return true;
  m_content->rollback(before);
  return false;
}

bool TreeNode::appendCdata(std::string_view piece) {
  if (!appendContent({}, piece)) return false;
  m_isCdata = true;
  return true;
}

void TreeNode::trimContent() {
  if (!checkTreeNodeValidity() || m_content == nullptr) return;
  m_content->trim2();
  if (m_content->empty()) m_content.reset();
}

// Counting cursors -------------------------------------------------------------------------------

bool TreeNode::incTreeRefCount() {
  if (!checkTreeNodeValidity()) return false;
  ++m_refCount;
  if (m_treeInfo->isValid()) ++m_treeInfo->m_refCount;
  return true;
}

bool TreeNode::decTreeRefCount() {
  if (!checkTreeNodeValidity()) return false;
  if (m_refCount > 0) --m_refCount;
  if (m_treeInfo->isValid() && m_treeInfo->m_refCount > 0) --m_treeInfo->m_refCount;
  return true;
}

int TreeNode::getTreeRefCount() const {
  return checkTreeNodeValidity() && m_treeInfo->isValid() ? m_treeInfo->m_refCount : 0;
}

int TreeNode::getRefCount() const { return checkTreeNodeValidity() ? m_refCount : 0; }
