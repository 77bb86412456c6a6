#include "TreeInfo.h"

#include <atomic>

#include "TreeNode.h"

namespace {

std::atomic<std::uint32_t> NextTreeID{100};

/// Where the release of a tree goes on below `node`: to the first leaf.
TreeNode* firstLeaf(TreeNode* node) {
  while (TreeNode* const child = node->getFirstChild()) node = child;
  return node;
}

}  // namespace

TreeInfo::TreeInfo() : m_treeId(NextTreeID++) {}

TreeInfo::~TreeInfo() { deleteTreeNodes(); }

void TreeInfo::deleteTreeNodes() noexcept {
  TreeNode* node = m_root == nullptr ? nullptr : firstLeaf(m_root);
  m_root = nullptr;
  // Leaves first, along the links: a queue of nodes would need memory to give memory back.
  while (node != nullptr) {
    TreeNode* const sibling = node->getNextSibling();
    TreeNode* const next = sibling != nullptr ? firstLeaf(sibling) : node->getParent();
    delete node;
    node = next;
  }
}
