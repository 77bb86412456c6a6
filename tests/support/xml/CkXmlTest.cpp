#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CkString.h"
#include "CkXml.h"
#include "ClsXml.h"
#include "Psdk.h"
#include "StringBuffer.h"
#include "TempFolder.h"
#include "TreeInfo.h"
#include "TreeNode.h"
#include "XString.h"

namespace {

using testing::HasSubstr;

struct Release {
  void operator()(ClsXml* xml) const { xml->deleteSelf(); }
};
using Cursor = std::unique_ptr<ClsXml, Release>;

constexpr std::string_view kDocument =
    "<root><x n='1'><x n='2'/><y/></x><y n=' 12x' e='' t='x' m='-7' big='4294967297' d='1' "
    "d='2'/></root>";

class Xml : public testing::Test {
 protected:
  Xml() {
    // A Russian system's code page.
    Psdk::setAnsiCodePage(1251);
    EXPECT_TRUE(xml_.LoadXmlFile(folder_.write("a.xml", kDocument).c_str()));
  }

  std::string attribute(const char* name) {
    CkString value;
    value.setString("before");
    const bool found = xml_.GetAttrValue(name, value);
    return found ? value.getUtf8() : std::string("none") + value.getUtf8();
  }

  fixture::TempFolder folder_;
  CkXml xml_;
};

TEST_F(Xml, MovesBetweenNodes) {
  EXPECT_TRUE(xml_.FindChild2("x"));
  EXPECT_EQ(attribute("n"), "1");
  EXPECT_TRUE(xml_.FindChild2(" \tx\r\n"));
  EXPECT_EQ(attribute("n"), "2");
  EXPECT_FALSE(xml_.FindChild2("x"));
  EXPECT_EQ(attribute("n"), "2");
  xml_.GetRoot2();
  EXPECT_EQ(attribute("n"), "none");
  for (const char* const tag : {"root", "x|y", "x[0]", "", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(xml_.FindChild2(tag));
  }
  EXPECT_TRUE(xml_.FindChild2("y"));
}

TEST_F(Xml, ReadsAttributes) {
  ASSERT_TRUE(xml_.FindChild2("y"));
  using Row = std::tuple<const char*, const char*, int>;
  for (const auto& [name, text, value] :
       {Row{"n", " 12x", 12}, Row{" m ", "-7", -7}, Row{" t ", "x", 0}, Row{"e", "", 0},
        Row{"T", "none", 0}, Row{"big", "4294967297", 1}, Row{"d", "1", 1},
        Row{nullptr, "none", 0}}) {
    EXPECT_EQ(attribute(name), text);
    EXPECT_EQ(xml_.GetAttrValueInt(name), value);
  }
}

TEST_F(Xml, KeepsItsTreeWhenALoadFails) {
  ASSERT_TRUE(xml_.FindChild2("x"));
  for (const std::string& path : {folder_.file("missing.xml"), folder_.write("empty.xml", ""),
                                  folder_.path(), std::string("/dev/zero"), std::string()}) {
    EXPECT_FALSE(xml_.LoadXmlFile(path.c_str())) << path;
    EXPECT_FALSE(xml_.get_LastMethodSuccess());
    EXPECT_THAT(xml_.lastErrorText(), HasSubstr("Failed."));
  }
  EXPECT_FALSE(xml_.LoadXmlFile(nullptr));
  EXPECT_EQ(attribute("n"), "1");
}

// Only what can't be read, or has no byte, isn't loaded.
TEST_F(Xml, LoadsAnyFileThatHasBytes) {
  for (const char* const text : {" ", "no document", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF",
                                 "<?xml encoding='json'?><a/>", "<?xml encoding=\"hex\"?><a/>"}) {
    const std::string path = folder_.write("b.xml", text);
    EXPECT_TRUE(xml_.LoadXmlFile(path.c_str())) << text;
    EXPECT_FALSE(xml_.FindChild2("x"));
    const UncountedTree tree = TreeNode::customParseFile(path.c_str(), nullptr, true, false, false);
    ASSERT_NE(tree, nullptr) << text;
    EXPECT_STREQ(tree->getTag(), "empty");
    EXPECT_EQ(tree->getNumChildren(), 0);
  }
  // A path as a text field may deliver it.
  EXPECT_TRUE(xml_.LoadXmlFile((" " + folder_.file("a.xml") + "\r\n").c_str()));
  EXPECT_TRUE(xml_.get_LastMethodSuccess());
  EXPECT_TRUE(xml_.FindChild2("x"));
}

TEST_F(Xml, ReadsArgumentsByItsFlag) {
  folder_.write("c.xml", "<?xml encoding='windows-1251'?><r><\xFF a='\xFF'/></r>");
  ASSERT_TRUE(xml_.LoadXmlFile(folder_.file("c.xml").c_str()));
  EXPECT_FALSE(xml_.FindChild2("\xD1\x8F"));
  EXPECT_TRUE(xml_.FindChild2("\xFF"));
  EXPECT_EQ(attribute("\xFF"), "none");
  xml_.GetRoot2();
  xml_.put_Utf8(true);
  EXPECT_TRUE(xml_.FindChild2("\xD1\x8F"));
  EXPECT_EQ(attribute("a"), "\xD1\x8F");
}

TEST(ClsXml, SharesItsTreeWithCopies) {
  const fixture::TempFolder folder;
  XString path;
  path.setFromUtf8(folder.write("a.xml", kDocument).c_str());
  Cursor first(ClsXml::createNewCls());
  ASSERT_TRUE(first->LoadXmlFile(path));
  TreeNode* const root = first->getTree();
  first->GetRoot2();
  EXPECT_EQ(root->getRefCount(), 1);

  ASSERT_TRUE(first->findChild2("x"));
  EXPECT_EQ(root->getRefCount(), 0);
  EXPECT_EQ(first->getTree()->getRefCount(), 1);
  const Cursor second(new ClsXml(*first));
  EXPECT_EQ(second->getTree(), first->getTree());
  EXPECT_EQ(root->getTreeRefCount(), 2);

  // The first goes on to another tree, and the second keeps this one alive.
  root->getTreeInfo()->m_emitCompact = 1;
  ASSERT_TRUE(first->LoadXmlFile(path));
  EXPECT_NE(first->getTree(), root);
  EXPECT_EQ(first->getTree()->getTreeInfo()->m_emitCompact, 1);
  EXPECT_EQ(root->getTreeRefCount(), 1);
  first.reset();
  StringBuffer value;
  EXPECT_TRUE(second->getAttrValue("n", value));
  EXPECT_EQ(value.view(), "1");
}

// Only the hook is called for an object whose mark was overwritten, and it ends as any other.
TEST(ClsXml, EndsWithItsMarkOverwritten) {
  constexpr std::uint32_t kAlive = 0x11BBDCE9;
  const Cursor first(ClsXml::createNewCls());
  Cursor second(new ClsXml(*first));
  EXPECT_EQ(first->getTree()->getTreeRefCount(), 2);
  auto* mark = reinterpret_cast<std::uint32_t*>(second.get());
  while (*mark != kAlive) ++mark;
  *mark = 0;
  second.reset();
  EXPECT_EQ(first->getTree()->getTreeRefCount(), 1);
}

// For the thread sanitizer: cursors of one tree come, move and go in two threads.
TEST(ClsXml, LetsThreadsWorkOnOneTree) {
  constexpr int kRounds = 200;
  const fixture::TempFolder folder;
  XString path;
  path.setFromUtf8(folder.write("a.xml", kDocument).c_str());
  const Cursor shared(ClsXml::createNewCls());
  ASSERT_TRUE(shared->LoadXmlFile(path));
  std::atomic<int> found = 0;
  const auto work = [&shared, &found, file = std::string(path.getUtf8())] {
    XString tag;
    XString name;
    XString value;
    XString ownPath;
    tag.setFromUtf8("x");
    name.setFromUtf8("n");
    ownPath.setFromUtf8(file.c_str());
    for (int i = 0; i < kRounds; ++i) {
      const Cursor cursor(new ClsXml(*shared));
      cursor->GetRoot2();
      if (cursor->FindChild2(tag) && cursor->GetAttrValue(name, value) && value.equalsUtf8("1") &&
          cursor->GetAttrValueInt(name) == 1) {
        ++found;
      }
      if (i % 10 == 0) cursor->LoadXmlFile(ownPath);
    }
  };
  std::thread other(work);
  work();
  other.join();
  EXPECT_EQ(found, 2 * kRounds);
  EXPECT_EQ(shared->getTree()->getTreeRefCount(), 1);
}

}  // namespace
