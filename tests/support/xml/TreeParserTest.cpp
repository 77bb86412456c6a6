#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "DataBuffer.h"
#include "Outline.h"
#include "ParseEngine.h"
#include "TreeInfo.h"
#include "TreeNode.h"
#include "XmlDocuments.h"

namespace {

using fixture::outline;

UncountedTree parse(std::string_view text, bool autoTrim = true) {
  ParseEngine engine(text);
  return TreeNode::customParse(engine, nullptr, autoTrim, false, false);
}

struct Row {
  std::string_view document;
  std::string_view tree;
};

constexpr Row kElements[] = {
    {"", "empty"},
    {" ", "empty"},
    {"no element", "empty"},
    {"<", "empty"},
    {"<a", "empty"},
    {"<a ", "a"},
    {"text <a/> text", "a"},
    {"<a/><b/>", "a"},
    {"<a></a><b/>", "a"},
    {"<a><b/><c></c></a>", "a(b c)"},
    {"<a><b><c/></b><d/></a>", "a(b(c) d)"},
    {"<a><b></c>", "a(b)"},
    {"<a><b></c><d/></a>", "a(b d)"},
    {"<a><b", "a"},
    {"<a><b/", "a(b)"},
    {"</x><a/>", "a"},
    {"<a><b></b<c/></a>", "a(b c)"},
    {"<\t a>", "a"},
    {"<<a>", "a"},
    {"<a / >", "a"},
    {"<a>< /b></a>", "a([b=''])"},
    {"<>", ""},
    {"<s$o'me~:Tag-1._!\xD1\x8F/>", "some:Tag-1._!\xD1\x8F"},
    {std::string_view("<a><b/>\0<c/></a>", 16), "a(b)"},
};

constexpr Row kAttributes[] = {
    {R"(<a x="1" y='2'/>)", "a[x='1'][y='2']"},
    {"<a\r\nx\t=\n\"1\"\n/>", "a[x='1']"},
    {R"(<a x="1"y="2">)", "a[x='1'][y='2']"},
    {R"(<a x="it's" y='say "x"'/>)", R"(a[x='it's'][y='say "x"'])"},
    {R"(<a x="" y/>)", "a[x=''][y='']"},
    {R"(<a x="a>b/c<d"/>)", "a[x='a>b/c<d']"},
    {R"(<a x="1" x="2"/>)", "a[x='1'][x='2']"},
    {R"(<a b=1 c="2"/>)", "a[b='1 c='][A2='']"},
    {R"(<a b=1 c='2'/>)", "a[b='1 c='][A2='']"},
    {"<a b=1/><c/>", "a[b='1/><c/>']"},
    {R"(<a x="1)", "a[x='1']"},
    {R"(<a x="1"/ y="2"><b/>)", "a[x='1'][y='2']"},
    {R"(<a/x="1">)", "a[x='1']"},
    {R"(<a =="1" x="2"/>)", "a[A1=''][x='2']"},
    {R"(<a 1a="x" -b="y" .c="z" _d="1" !e="2" f$g="3"/>)",
     "a[A1a='x'][A-b='y'][A.c='z'][_d='1'][!e='2'][fg='3']"},
    {R"(<a "x"="1" <y="2" $="3"/>)", "a[x='1'][y='2']"},
    {R"(<a x="&lt;&gt;&quot;&apos;&amp;|&amp;lt;|&#65;&#x41;&nbsp;&"/>)",
     R"(a[x='<>"'&|&lt;|&#65;&#x41;&nbsp;&'])"},
};

constexpr Row kTexts[] = {
    {"<a> \r\n\tx y\t\n</a>", "a\"x y\""},
    {"<a>x</a>tail", "a\"x\""},
    {"<a>x<!-- c -->y</a>", "a\"x y\""},
    {"<a>x<b>inner</b> y <c/></a>", "a\"x y\"(b\"inner\" c)"},
    {"<a>x &amp; &lt;</a>", "a\"x &amp; &lt;\""},
    {"<a>cut", "a\"cut\""},
    {"<a> \n<b/> </a>", "a(b)"},
    {"<a><![CDATA[ <b> &amp; ]]]]>lost</a>", "a\" <b> &amp; ]]\""},
    {"<a>x <![CDATA[y]]></a>", "a\"xy\""},
    {"<a><![CDATA[x]]> lost <![CDATA[y]]><b/></a>", "a\"xy\"(b)"},
    {"<a><![CDATA[x]]", "a\"x]]\""},
    {"<a><![CDATA[", "a"},
    {"<a><![cdata[x]]>y</a>", "a\"y\""},
    {"<![CDATA[<x/>]]><a/>", "a"},
};

constexpr Row kTextsAsTheyStand[] = {
    {"<a> x </a>", "a\" x \""},
    {"<a> </a>", "a\" \""},
    {"<a> <b> </b> </a>", "a(b\" \")"},
    {"<a>x<b/>y</a>", "a\"x y\"(b)"},
    {"<a>x<b/> y</a>", "a\"x y\"(b)"},
    {"<a> x<b/>y </a>", "a\"x y\"(b)"},
    {"<a>x <!-- c --> y</a>", "a\"x  y\""},
    {"<a> <![CDATA[x]]> </a>", "a\"x\""},
};

constexpr Row kAsides[] = {
    {"<!-- <b> --><a/>", "a"},
    {"<!-- - -- -> --><a/>", "a"},
    {"<!--><a/>", "a"},
    {"<!-- <a/>", "empty"},
    {"<a><b/><!-- <c/></a>", "a(b)"},
    {"<!ELEMENT a (b)><a/>", "a"},
    {"<!DOCTYPE a [<!ELEMENT a (b)>]><a/>", "a"},
    {"<!DOCTYPE a [<!ELEMENT a (b)><a/>", "empty"},
    {"<?pi a > b ?><a/>", "a"},
    {"<a><?pi x</a>", "a\"pi x\""},
    {"<a><?pi x?>y</a>", "a\"y\""},
    {"<a><?xml-stylesheet x?></a>", "a\">\""},
    {"<?xml version='1.0'?><a/>", "a"},
    {"<?xml version='1.0", "empty"},
};

TEST(TreeParser, ReadsWhatCanBeRead) {
  for (const auto& [document, tree] : kElements) EXPECT_EQ(outline(parse(document)), tree);
  for (const auto& [document, tree] : kAttributes) EXPECT_EQ(outline(parse(document)), tree);
  for (const auto& [document, tree] : kTexts) EXPECT_EQ(outline(parse(document)), tree);
  for (const auto& [document, tree] : kAsides) EXPECT_EQ(outline(parse(document)), tree);
  for (const auto& [document, tree] : kTextsAsTheyStand) {
    EXPECT_EQ(outline(parse(document, false)), tree) << document;
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

TEST(TreeParser, ReadsTheDeclaration) {
  static constexpr Row kRows[] = {
      {"<?xml version=\"1.0\" encoding='utf-8'?>", "[version='1.0'][encoding='utf-8']"},
      {"<?XML version=1.0 standalone?>", "[version='1.0'][standalone='']"},
      {"<?xml  / a = \"1\"  ?  >", "[a='1']"},
      {"<?xml \"a\"=\"x'y\"?>", "[a='x'][y='']"},
      {"<?xml a=\"&apos;&quot;&amp;lt;\"?>", "[a=''\"&lt;']"},
      {"<?xml a='1\n b='2'?>", "[a='1'][b='2']"},
      {"<?xml a='1", "[a='1']"},
  };
  for (const auto& [document, attributes] : kRows) {
    EXPECT_EQ(outline(parse(document)->getTreeInfo()->m_docAttrs), attributes) << document;
  }
}

TEST(TreeParser, CanMergeAttributesOfOneName) {
  constexpr const char* kDocument = R"(<a X="1" y="2" x="3"/>)";
  const auto parsed = [](bool preventDuplicates, bool lowercaseNames) {
    return outline(
        TreeNode::customParseString(kDocument, nullptr, true, preventDuplicates, lowercaseNames));
  };
  EXPECT_EQ(parsed(false, false), "a[X='1'][y='2'][x='3']");
  EXPECT_EQ(parsed(true, false), "a[X='1'][y='2'][x='3']");
  EXPECT_EQ(parsed(false, true), "a[x='1'][y='2'][x='3']");
  EXPECT_EQ(parsed(true, true), "a[y='2'][x='3']");
}

TEST(TreeParser, NeedsAText) {
  EXPECT_EQ(TreeNode::customParseString(nullptr, nullptr, true, false, false), nullptr);
  const DataBuffer nothing;
  EXPECT_EQ(TreeNode::customParseDb(nothing, nullptr, true, false, false), nullptr);
}

// Each prefix ends with its heap block, so that the address sanitizer sees the first byte too far.
TEST(TreeParser, NeverLooksBehindTheText) {
  std::vector<std::string> samples = {documents::settings(2), documents::catalogue(1)};
  for (const Row& row : kAttributes) samples.emplace_back(row.document);
  for (const Row& row : kTexts) samples.emplace_back(row.document);
  for (const Row& row : kAsides) samples.emplace_back(row.document);
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
