#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CkString.h"
#include "CkXml.h"
#include "ClsXml.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"
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
  EXPECT_FALSE(xml_.FindChild2("root"));
  EXPECT_FALSE(xml_.FindChild2("x|y"));
  EXPECT_FALSE(xml_.FindChild2("x[0]"));
  EXPECT_FALSE(xml_.FindChild2(""));
  EXPECT_FALSE(xml_.FindChild2(nullptr));
  EXPECT_TRUE(xml_.FindChild2("y"));
  EXPECT_EQ(attribute("n"), " 12x");
}

TEST_F(Xml, ReadsAttributes) {
  ASSERT_TRUE(xml_.FindChild2("y"));
  EXPECT_EQ(attribute(" t "), "x");
  EXPECT_EQ(attribute("e"), "");
  EXPECT_EQ(attribute("T"), "none");
  EXPECT_EQ(attribute("d"), "1");
  EXPECT_EQ(attribute(nullptr), "none");
  struct Row {
    const char* name;
    int value;
  };
  for (const auto& [name, value] : {Row{"n", 12}, Row{" m ", -7}, Row{"t", 0}, Row{"e", 0},
                                    Row{"missing", 0}, Row{"big", 1}, Row{nullptr, 0}}) {
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

TEST_F(Xml, LoadsAnyFileThatHasBytes) {
  for (const char* const text : {" ", "no document", "\xEF\xBB\xBF"}) {
    EXPECT_TRUE(xml_.LoadXmlFile(folder_.write("b.xml", text).c_str()));
    EXPECT_FALSE(xml_.FindChild2("x"));
  }
  // A path as a text field may deliver it.
  EXPECT_TRUE(xml_.LoadXmlFile((" " + folder_.file("a.xml") + "\r\n").c_str()));
  EXPECT_TRUE(xml_.get_LastMethodSuccess());
  EXPECT_TRUE(xml_.FindChild2("x"));
}

TEST_F(Xml, TellsWhatItDid) {
  xml_.LoadXmlFile(folder_.file("missing.xml").c_str());
  const std::string log = xml_.lastErrorText();
  EXPECT_THAT(log, HasSubstr("LoadXmlFile:\n"));
  EXPECT_THAT(log, HasSubstr("path: " + folder_.file("missing.xml")));
  EXPECT_THAT(log, HasSubstr("Failed to open for read."));
  xml_.GetRoot2();
  EXPECT_THAT(xml_.lastErrorText(), testing::Not(HasSubstr("LoadXmlFile")));
}

TEST_F(Xml, ReadsArgumentsByItsFlag) {
  folder_.write("c.xml", "<r><\xD1\x8F a='\xD1\x8F'/></r>");
  ASSERT_TRUE(xml_.LoadXmlFile(folder_.file("c.xml").c_str()));
  EXPECT_FALSE(xml_.FindChild2("\xD1\x8F"));
  EXPECT_TRUE(xml_.FindChild2("\xFF"));
  EXPECT_EQ(attribute("\xFF"), "none");
  xml_.GetRoot2();
  xml_.put_Utf8(true);
  EXPECT_TRUE(xml_.FindChild2("\xD1\x8F"));
  EXPECT_EQ(attribute("a"), "\xD1\x8F");
}

// As editors on other systems leave a file.
TEST_F(Xml, LoadsTheEncodingsOfEditors) {
  constexpr int kUtf8 = 65001;
  struct Row {
    std::string declared;
    int codePage;
    bool marked;
  };
  xml_.put_Utf8(true);
  for (const auto& [declared, codePage, marked] :
       {Row{"", kUtf8, false}, Row{"UTF-8", kUtf8, false}, Row{"UTF-8", kUtf8, true},
        Row{"UTF-16", kUtf8, false}, Row{"UTF-16", 1200, true}, Row{"UTF-16", 1201, true},
        Row{"windows-1251", 1251, false}, Row{"cp866", 866, false}, Row{"koi8-r", 20866, false}}) {
    const std::string text =
        (declared.empty() ? "" : "<?xml version='1.0' encoding='" + declared + "'?>") +
        "\r\n<НАСТРОЙКИ хост='весы &quot;2&quot;'/>\r\n";
    LogNull log;
    DataBuffer file;
    const auto convert =
        marked ? &EncodingConvert::EncConvertWithPreamble : &EncodingConvert::EncConvert;
    EncodingConvert converter;
    ASSERT_TRUE((converter.*convert)(kUtf8, codePage, text.data(), text.size(), file, log));
    folder_.write("d.xml", {reinterpret_cast<const char*>(file.getData2()), file.getSize()});
    ASSERT_TRUE(xml_.LoadXmlFile(folder_.file("d.xml").c_str()));
    EXPECT_EQ(attribute("хост"), "весы \"2\"") << declared << " " << codePage;
  }
}

// Behind a handle that has ended there may still be a caller.
TEST(CkXml, AnswersWhenItIsGone) {
  alignas(CkXml) std::byte memory[sizeof(CkXml)];
  auto* const xml = new (memory) CkXml;
  xml->~CkXml();
  CkString value;
  EXPECT_FALSE(xml->LoadXmlFile("/etc/passwd"));
  xml->GetRoot2();
  EXPECT_FALSE(xml->FindChild2("a"));
  EXPECT_FALSE(xml->GetAttrValue("a", value));
  EXPECT_EQ(xml->GetAttrValueInt("a"), -1);
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
