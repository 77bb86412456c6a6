// The road from any bytes to a tree. The first byte chooses the options, the rest is the document.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "AttributeSet.h"
#include "DataBuffer.h"
#include "LogBase.h"
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
    if (!bytes.empty()) parse({reinterpret_cast<const char*>(bytes.getData2()), bytes.getSize()});
    return 0;
  }
  // A block of its own, so that a look behind the text is seen.
  const auto block = std::make_unique<char[]>(n);
  if (n > 0) std::memcpy(block.get(), data + 1, n);
  parse({block.get(), n});
  return 0;
}
