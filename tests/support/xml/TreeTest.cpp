#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "AttributeSet.h"
#include "DataFile.h"
#include "HexBytes.h"
#include "ParseEngine.h"
#include "TreeInfo.h"
#include "TreeNode.h"
#include "XmlDocuments.h"

namespace {

/// Attributes as [name='value'], in document order.
std::string outline(const AttributeSet& attributes) {
  std::string result;
  for (std::size_t i = 0; i < attributes.getNumAttributes(); ++i) {
    const auto [name, value] = attributes.getAttribute(i);
    result.append("[").append(name).append("='").append(value).append("']");
  }
  return result;
}

/// A tree on one line: tag[name='value']"text"(child child).
std::string outline(const TreeNode* node) {
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

std::string outline(const UncountedTree& tree) { return outline(tree.get()); }

UncountedTree parse(std::string_view text, bool autoTrim = true) {
  ParseEngine engine(text);
  return TreeNode::customParse(engine, nullptr, autoTrim, false, false);
}

TEST(TreeNode, WithoutAParentIsARoot) {
  const UncountedTree root(TreeNode::createNode(nullptr, "a"));
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->getRoot(), root.get());
  EXPECT_TRUE(root->tagEquals("a"));
  EXPECT_FALSE(root->tagEquals("aa"));
}

// An invalid node answers nothing, and its siblings are found all the same.
TEST(TreeNode, ThatIsInvalidHidesNoSibling) {
  constexpr unsigned char kAlive = 0xCE;
  const UncountedTree root = parse("<r><a/><b/></r>");
  TreeNode* const a = root->getChild(0);
  auto* mark = reinterpret_cast<unsigned char*>(a) + sizeof *a;
  do {
    while (*--mark != kAlive) {
    }
    *mark = 0x31;
    if (a->checkTreeNodeValidity()) *mark = kAlive;  // some other byte
  } while (a->checkTreeNodeValidity());
  EXPECT_EQ(a->getTag(), nullptr);
  EXPECT_EQ(root->getChild("a", nullptr), nullptr);
  EXPECT_EQ(root->getChild("b", nullptr), root->getChild(1));
  *mark = kAlive;
}

TEST(TreeNode, FindsDirectChildren) {
  const UncountedTree root =
      parse("<r><a n='1'/><x:a n='2'/><a n='3'/><b><c/></b><x:y:z/><n a='4'/></r>");
  using Row = std::pair<const char*, std::string_view>;
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

TEST(TreeParser, ReadsWhatCanBeRead) {
  for (const fixture::DataRow& row : fixture::dataRows("xml_documents.txt")) {
    const UncountedTree tree =
        parse(fixture::characters(row.left), row.heading != "texts as they stand");
    EXPECT_EQ(
        row.heading == "declarations" ? outline(tree->getTreeInfo()->m_docAttrs) : outline(tree),
        row.right)
        << row.left;
  }
}

TEST(TreeParser, MarksTextOfCdataSections) {
  EXPECT_TRUE(parse("<a>x<![CDATA[y]]></a>")->isCdata());
  EXPECT_TRUE(parse("<a><![CDATA[]]></a>")->isCdata());
  EXPECT_FALSE(parse("<a>x</a>")->isCdata());
}

TEST(TreeParser, KeepsWhatStandsOutsideTheRoot) {
  const UncountedTree tree = parse(
      "<?xml version=\"1.0\"?>\n<?xml-stylesheet href=\"x\"?>\n<?XML-StyleSheet 2?><?one 1?>\n"
      "<!doctype a [<!x>]><?two\n2?><a><!DOCTYPE b></a>");
  const TreeInfo& info = *tree->getTreeInfo();
  EXPECT_EQ(outline(info.m_docAttrs), "[version='1.0']");
  ASSERT_EQ(info.m_styleSheets.size(), 2U);
  EXPECT_EQ(info.m_styleSheets[0]->view(), "<?xml-stylesheet href=\"x\"?>");
  EXPECT_EQ(info.m_styleSheets[1]->view(), "<?XML-StyleSheet 2?>");
  EXPECT_EQ(info.m_prologPIs.view(), "<?one 1?>\n<?two\n2?>\n");
  EXPECT_EQ(info.m_docType.view(), "<!doctype a [<!x>]>\n<!DOCTYPE b>\n");
}

// Each prefix ends with its heap block, so that the address sanitizer sees the first byte too far.
TEST(TreeParser, NeverLooksBehindTheText) {
  std::vector<std::string> samples = {documents::settings(2), documents::catalogue(1)};
  for (const fixture::DataRow& row : fixture::dataRows("xml_documents.txt")) {
    samples.push_back(fixture::characters(row.left));
  }
  for (const std::string& sample : samples) {
    for (std::size_t n = 0; n <= sample.size(); ++n) {
      const auto block = std::make_unique<char[]>(n);
      sample.copy(block.get(), n);
      for (const bool autoTrim : {true, false}) {
        EXPECT_NE(parse(std::string_view(block.get(), n), autoTrim), nullptr);
      }
    }
  }
}

TEST(TreeParser, GoesAsDeepAsTheDocument) {
  constexpr std::size_t kDepth = 1'000'000;
  const std::string text = documents::nested(kDepth);
  const UncountedTree tree = parse(text);
  std::size_t depth = 0;
  for (const TreeNode* node = tree.get(); node != nullptr; node = node->getFirstChild()) ++depth;
  EXPECT_EQ(depth, kDepth);
}

// What a parser that searches to the end again and again would take minutes for.
TEST(TreeParser, TakesBrokenDocumentsInOnePass) {
  constexpr std::size_t kRepeats = 500'000;
  for (const std::string_view piece :
       {"<?", "<?xml ", "<?xml-stylesheet ", "<!", "<!--", "<!DOCTYPE", "<![CDATA[", "<a ",
        "<a x=", "<a x=\"", "</", "]]", "&", "<a>&"}) {
    std::string text = "<r>";
    for (std::size_t i = 0; i < kRepeats; ++i) text += piece;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_NE(parse(text), nullptr);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << piece;
  }
}

}  // namespace
