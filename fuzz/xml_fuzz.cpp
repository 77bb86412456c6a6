// The road from any bytes to a tree. The first byte chooses the options, the rest is the document.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "AttributeSet.h"
#include "DataBuffer.h"
#include "LogBase.h"
#include "MemoryWatch.h"
#include "ParseEngine.h"
#include "StringBuffer.h"
#include "TreeInfo.h"
#include "TreeNode.h"

namespace {

enum Option : std::uint8_t {
  kAutoTrim = 1,
  kPreventDuplicates = 2,
  kLowercaseNames = 4,
  kConvertFirst = 8,
  kMemoryRunsShort = 16,
};

void check(bool holds) {
  if (!holds) std::abort();
}

void checkAttributes(const TreeNode& node) {
  const AttributeSet* const attributes = node.getAttributes();
  if (attributes == nullptr) return;
  StringBuffer value;
  for (std::size_t i = 0; i < attributes->getNumAttributes(); ++i) {
    const std::string name(attributes->getAttribute(i).first);
    check(node.getAttributeValue(name.c_str(), value));
    if (i > 20) return;  // Each lookup walks all of them.
  }
}

void checkLinks(const TreeNode& node) {
  const TreeNode* previous = nullptr;
  int children = 0;
  for (const TreeNode* child = node.getFirstChild(); child != nullptr;
       child = child->getNextSibling()) {
    check(child->getParent() == &node && child->getPrevSibling() == previous);
    check(child->getRoot() == node.getRoot());
    previous = child;
    ++children;
  }
  check(children == node.getNumChildren() && previous == node.getLastChild());
  if (previous != nullptr) check(node.getChild(previous->getTag(), nullptr) != nullptr);
}

/// The next node in document order.
const TreeNode* nextNode(const TreeNode* node) {
  if (const TreeNode* const child = node->getFirstChild()) return child;
  while (node != nullptr && node->getNextSibling() == nullptr) node = node->getParent();
  return node == nullptr ? nullptr : node->getNextSibling();
}

void checkTree(const UncountedTree& tree) {
  check(tree != nullptr && tree->getRoot() == tree.get() && tree->getParent() == nullptr);
  for (const TreeNode* node = tree.get(); node != nullptr; node = nextNode(node)) {
    checkAttributes(*node);
    checkLinks(*node);
  }
}

/// True if all of the one stands at its place in the other. Content may be trimmed when its element
/// ends, so that of the part may still have its blanks.
bool isPart(const TreeNode& part, const TreeNode& whole) {
  constexpr std::string_view kBlanks = " \t\r\n";
  std::string_view content = part.getContent();
  if (!whole.getContent().starts_with(content)) {
    content.remove_prefix(std::min(content.find_first_not_of(kBlanks), content.size()));
    content = content.substr(0, content.find_last_not_of(kBlanks) + 1);
  }
  if (!whole.tagEquals(part.getTag()) || !whole.getContent().starts_with(content)) return false;
  if (const AttributeSet* const attributes = part.getAttributes()) {
    const AttributeSet* const all = whole.getAttributes();
    for (std::size_t i = 0; i < attributes->getNumAttributes(); ++i) {
      if (all == nullptr || attributes->getAttribute(i) != all->getAttribute(i)) return false;
    }
  }
  return part.getNumChildren() <= whole.getNumChildren();
}

/// What was read before memory ran short is a part of the document.
void checkShortage(std::string_view text, int allocations, bool autoTrim) {
  ParseEngine engine(text);
  const UncountedTree whole = TreeNode::customParse(engine, nullptr, autoTrim, false, false);
  UncountedTree tree;
  {
    ParseEngine again(text);
    const fixture::MemoryShortage shortage(allocations);
    tree = TreeNode::customParse(again, nullptr, autoTrim, false, false);
  }
  if (tree == nullptr) return;
  checkTree(tree);
  if (tree->tagEquals("empty")) return;  // before its first element
  std::vector<std::pair<const TreeNode*, const TreeNode*>> pairs = {{tree.get(), whole.get()}};
  while (!pairs.empty()) {
    const auto [part, full] = pairs.back();
    pairs.pop_back();
    check(isPart(*part, *full));
    for (int i = 0; i < part->getNumChildren(); ++i) {
      pairs.emplace_back(part->getChild(i), full->getChild(i));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t options = data[0];
  const std::size_t n = size - 1;
  const auto parse = [options](std::string_view text) {
    ParseEngine engine(text);
    checkTree(TreeNode::customParse(engine, nullptr, (options & kAutoTrim) != 0,
                                    (options & kPreventDuplicates) != 0,
                                    (options & kLowercaseNames) != 0));
  };
  if ((options & kConvertFirst) != 0) {
    LogNull log;
    DataBuffer bytes;
    bytes.append(data + 1, n);
    check(bytes.convertXmlToUtf8(log) == (n > 0));
    // A declaration can name an encoding that leaves nothing of the document.
    checkTree(TreeNode::customParseDb(bytes, nullptr, (options & kAutoTrim) != 0, false, false));
    return 0;
  }
  // A block of its own, so that a look behind the text is seen.
  const auto block = std::make_unique<char[]>(n);
  if (n > 0) std::memcpy(block.get(), data + 1, n);
  if ((options & kMemoryRunsShort) != 0 && n > 0) {
    checkShortage({block.get(), n}, data[1], (options & kAutoTrim) != 0);
    return 0;
  }
  parse({block.get(), n});
  return 0;
}
