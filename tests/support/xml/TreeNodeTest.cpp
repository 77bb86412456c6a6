#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "AttributeSet.h"
#include "Outline.h"
#include "StringBuffer.h"
#include "TreeInfo.h"
#include "TreeNode.h"

namespace {

using fixture::outline;

UncountedTree parse(const char* text) {
  return TreeNode::customParseString(text, nullptr, true, false, false);
}

TEST(TreeNode, LinksItsChildrenInDocumentOrder) {
  const UncountedTree root = TreeNode::createRoot("root");
  TreeNode* const a = TreeNode::createNode(*root, "a");
  TreeNode* const b = TreeNode::createNode(*root, "b");
  TreeNode* const c = TreeNode::createNode(*root, "c");
  TreeNode* const deep = TreeNode::createNode(*b, "deep");
  EXPECT_EQ(outline(root), "root(a b(deep) c)");
  EXPECT_EQ(root->getNumChildren(), 3);
  EXPECT_EQ(root->getFirstChild(), a);
  EXPECT_EQ(root->getLastChild(), c);
  EXPECT_EQ(a->getNextSibling(), b);
  EXPECT_EQ(c->getPrevSibling(), b);
  EXPECT_EQ(a->getPrevSibling(), nullptr);
  EXPECT_EQ(c->getNextSibling(), nullptr);
  EXPECT_EQ(deep->getParent(), b);
  EXPECT_EQ(deep->getRoot(), root.get());
  EXPECT_EQ(root->getParent(), nullptr);
  EXPECT_EQ(root->getChild(3), nullptr);
  EXPECT_EQ(root->getChild(-1), nullptr);
  EXPECT_EQ(a->getFirstChild(), nullptr);
}

TEST(TreeNode, KeepsTagsOfAnyLength) {
  for (const std::size_t length : {0U, 1U, 15U, 16U, 1000U}) {
    const std::string tag(length, 't');
    const UncountedTree root = TreeNode::createRoot(tag);
    EXPECT_EQ(root->getTag(), tag);
    EXPECT_TRUE(root->tagEquals(tag));
    EXPECT_FALSE(root->tagEquals(tag + "t"));
  }
}

TEST(TreeNode, CleansNames) {
  const UncountedTree root = TreeNode::createRoot("<1 t@g>");
  StringBuffer name("1 n@me");
  StringBuffer value("<as it stands>");
  EXPECT_TRUE(root->addAttributeSb(name, value));
  EXPECT_EQ(outline(root), "1tg[A1nme='<as it stands>']");
}

TEST(TreeNode, FindsDirectChildren) {
  const UncountedTree root =
      parse("<r><a n='1'/><x:a n='2'/><a n='3'/><b><c/></b><x:y:z/><n a='4'/></r>");
  struct Row {
    const char* wanted;
    std::string_view found;
  };
  for (const auto& [wanted, found] : {
           Row{"a", "a[n='1']"},
           Row{"x:a", "x:a[n='2']"},
           Row{"*:a", "a[n='1']"},
           Row{"*:x:a", "x:a[n='2']"},
           Row{"*:y:z", "x:y:z"},
           Row{"*:z", "no tree"},
           Row{"b", "b(c)"},
           Row{"c", "no tree"},
           Row{"A", "no tree"},
           Row{"r", "no tree"},
           Row{"", "no tree"},
           Row{"*:", "no tree"},
           Row{nullptr, "no tree"},
       }) {
    EXPECT_EQ(outline(root->getChild(wanted, nullptr)), found);
  }
  constexpr StringPair kThird = {"n", "3"};
  constexpr StringPair kNone = {"n", ""};
  EXPECT_EQ(root->getChild("a", &kThird), root->getChild(2));
  EXPECT_EQ(root->getChild("a", &kNone), nullptr);
  EXPECT_EQ(root->getChild("b", &kNone), nullptr);
}

TEST(TreeNode, LooksAttributesUp) {
  const UncountedTree root = parse("<r xx='long' x='1' X='2' e='' x='3'><none/></r>");
  StringBuffer value;
  struct Row {
    const char* name;
    bool found;
    std::string_view value;
  };
  for (const auto& row : {Row{"x", true, "1"}, Row{"X", true, "2"}, Row{"xx", true, "long"},
                          Row{"e", true, ""}, Row{"1", false, ""}, Row{"xxlong", false, ""},
                          Row{"", false, ""}, Row{nullptr, false, ""}}) {
    value.setString("before");
    EXPECT_EQ(root->getAttributeValue(row.name, value), row.found);
    EXPECT_EQ(value.view(), row.value);
  }
  value.setString("before");
  EXPECT_FALSE(root->getFirstChild()->getAttributeValue("x", value));
  EXPECT_TRUE(value.empty());
}

TEST(TreeNode, CountsCursorsPerNodeAndPerTree) {
  const UncountedTree root = parse("<r><a/></r>");
  TreeNode* const child = root->getFirstChild();
  EXPECT_TRUE(root->incTreeRefCount());
  EXPECT_TRUE(child->incTreeRefCount());
  EXPECT_EQ(root->getRefCount(), 1);
  EXPECT_EQ(child->getRefCount(), 1);
  EXPECT_EQ(child->getTreeRefCount(), 2);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(child->decTreeRefCount());
  EXPECT_EQ(child->getRefCount(), 0);
  EXPECT_EQ(root->getRefCount(), 1);
  EXPECT_EQ(root->getTreeRefCount(), 0);
}

TEST(TreeInfo, NumbersTheTreesOfTheProcess) {
  const std::uint32_t first = parse("<a/>")->getTreeInfo()->m_treeId;
  EXPECT_GE(first, 100U);
  EXPECT_EQ(parse("<a/>")->getTreeInfo()->m_treeId, first + 1);
}

}  // namespace
