#include <memory>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "CkSettings.h"
#include "CkString.h"
#include "ClsBase.h"
#include "TextTesting.h"

namespace {

class CkStringTest : public testing::Test {
 private:
  AnsiIs ansi_{1251};
};

TEST_F(CkStringTest, ReadsAnsiUnlessToldOtherwise) {
  CkString text("\xC2\xE5\xF1");
  EXPECT_FALSE(text.get_Utf8());
  EXPECT_STREQ(text.getUtf8(), "Вес");
  EXPECT_STREQ(text.getString(), "\xC2\xE5\xF1");
  text.put_Utf8(true);
  text = "Цена";
  text.append(" 1");
  EXPECT_STREQ(text, "Цена 1");
  EXPECT_STREQ(text.getAnsi(), "\xD6\xE5\xED\xE0 1");
  EXPECT_STREQ(CkString("Вес", false).getUtf8(), "Вес");  // UTF-8 either way

  CkSettings::m_utf8 = true;
  EXPECT_TRUE(CkString().get_Utf8());
  CkSettings::m_utf8 = false;
  ClsBase::m_progLang = 15;
  EXPECT_TRUE(CkString().get_Utf8());
  ClsBase::m_progLang = 0;
}

TEST_F(CkStringTest, CopiesTextAndFlag) {
  CkString source;
  source.put_Utf8(true);
  source.setStringU(L"Вес");
  const CkString copy(source);
  EXPECT_TRUE(copy.get_Utf8());
  CkString assigned;
  assigned = source;
  const CkString& itself = assigned;
  assigned = itself;
  EXPECT_FALSE(assigned.get_Utf8());
  EXPECT_STREQ(assigned.getUtf8(), "Вес");
  EXPECT_EQ(assigned.compareStr(copy), 0);
  const std::unique_ptr<CkString> clone(source.clone());
  EXPECT_FALSE(clone->get_Utf8());
  EXPECT_STREQ(clone->getUtf8(), "Вес");
}

TEST_F(CkStringTest, BuildsTexts) {
  CkString text;
  text.appendAnsi("\xC2");
  text.appendInt(-7);
  text.appendChar('\0');
  text.appendChar('x');
  text.appendU(L"ж");
  text.appendStr(CkString("\xE6"));
  text.append(text);
  EXPECT_STREQ(text.getUtf8(), "В-7xжжВ-7xжж");
  text.clear();
  text.appendRandom(5, "hex");
  EXPECT_EQ(std::string(text.getUtf8()).find_first_not_of("0123456789ABCDEF"), std::string::npos);
  EXPECT_EQ(text.getNumChars(), 10);

  EXPECT_EQ(text.getSizeUnicode(), 40);

  text.append(static_cast<const char*>(nullptr));
  text.appendU(nullptr);
  text.appendAnsi(nullptr);
  EXPECT_TRUE(text.endsWith(nullptr));
  EXPECT_EQ(text.getNumChars(), 10);
  text.setStringUtf16(nullptr);
  EXPECT_EQ(text.getNumChars(), 0);
  EXPECT_EQ(text.getUnicode()[0], L'\0');
  EXPECT_EQ(text.getUtf16()[0], 0);
}

TEST_F(CkStringTest, ResultsLiveUntilTheTextIsWritten) {
  CkString text;
  text.setStringU(L"Вес");
  const char* const ansi = text.getAnsi();
  const char* const utf8 = text.getUtf8();
  text.getUnicode();
  text.getNumChars();
  EXPECT_EQ(text.getAnsi(), ansi);
  EXPECT_EQ(text.getUtf8(), utf8);
}

TEST_F(CkStringTest, GivesBytesInNamedEncodings) {
  CkString text;
  text.setStringU(L"Вес\x4E2D");
  EXPECT_STREQ(text.getEnc("windows-1251"), "\xC2\xE5\xF1");
  EXPECT_STREQ(text.getEnc("KOI8-R"), "\xF7\xC5\xD3");
  EXPECT_STREQ(text.getEnc("no-such-charset"), "\x12\x04");  // the wide form as it stands
  text.setStringUtf8("Вес");
  EXPECT_STREQ(text.getEnc("no-such-charset"), "Вес");
  text.setStringUtf8("QUJD");
  EXPECT_STREQ(text.getEnc("base64"), "ABC");
  text.setStringUtf8("QQA=");  // a NUL byte at the end doesn't count
  EXPECT_STREQ(text.getEnc("base64"), "A");
}

TEST_F(CkStringTest, ItsBytesBecomeTextAndBack) {
  using Coder = void (CkString::*)(const char*);
  using Case = std::tuple<Coder, Coder, const char*, const char*>;
  for (const auto& [encode, decode, charset, encoded] : {
           Case{&CkString::hexEncode, &CkString::hexDecode, "windows-1251", "C2E5F1"},
           Case{&CkString::base64Encode, &CkString::base64Decode, "utf-8", "0JLQtdGB"},
           Case{&CkString::qpEncode, &CkString::qpDecode, "windows-1251", "=C2=E5=F1"},
           Case{&CkString::urlEncode, &CkString::urlDecode, "koi8-r", "%F7%C5%D3"},
       }) {
    CkString text;
    text.setStringU(L"Вес");
    (text.*encode)(charset);
    EXPECT_STREQ(text.getUtf8(), encoded);
    (text.*decode)(charset);
    EXPECT_STREQ(text.getUtf8(), "Вес") << encoded;
  }
  // There is no text in a binary encoding's bytes.
  for (const Coder decode : {&CkString::base64Decode, &CkString::hexDecode}) {
    CkString text("4142");
    (text.*decode)("hex");
    EXPECT_STREQ(text.getUtf8(), "");
  }
}

TEST_F(CkStringTest, OrdersByCodePoint) {
  CkString less;
  CkString more;
  less.setStringUtf8("\xEF\xBD\xA1");  // behind the surrogates of the other in UTF-16
  more.setStringUtf8("😀");
  EXPECT_LT(less.compareStr(more), 0);
  EXPECT_GT(more.compareStr(less), 0);
}

TEST_F(CkStringTest, ComparesNamesInTheFormAtHand) {
  for (const auto set : {+[](CkString& text) { text.setStringAnsi("cport"); },
                         +[](CkString& text) { text.setStringUtf8("cport"); },
                         +[](CkString& text) { text.setStringU(L"cport"); },
                         +[](CkString& text) { text.setStringU(L"cport"), text.getUtf16(); }}) {
    CkString text;
    set(text);
    EXPECT_TRUE(text.equalsAscii("cport"));
    for (const char* other : {"cpor", "cporta", "cporT", "", static_cast<const char*>(nullptr)}) {
      EXPECT_FALSE(text.equalsAscii(other));
    }
  }
}

}  // namespace
