#pragma once

#include <string>
#include <string_view>

#include "AttributeSet.h"
#include "TreeNode.h"

namespace fixture {

/// Attributes as [name='value'], in document order.
inline std::string outline(const AttributeSet& attributes) {
  std::string result;
  for (std::size_t i = 0; i < attributes.getNumAttributes(); ++i) {
    const auto [name, value] = attributes.getAttribute(i);
    result.append("[").append(name).append("='").append(value).append("']");
  }
  return result;
}

/// A tree on one line: tag[name='value']"text"(child child).
inline std::string outline(const TreeNode* node) {
  if (node == nullptr) return "no tree";
  std::string result = node->getTag();
  if (node->getAttributes() != nullptr) result += outline(*node->getAttributes());
  if (!node->getContent().empty()) result.append("\"").append(node->getContent()).append("\"");
  for (int i = 0; i < node->getNumChildren(); ++i) {
    result += i == 0 ? "(" : " ";
    result += outline(node->getChild(i));
  }
  return node->getNumChildren() > 0 ? result + ")" : result;
}

inline std::string outline(const UncountedTree& tree) { return outline(tree.get()); }

}  // namespace fixture
