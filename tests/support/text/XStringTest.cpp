#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "TextTesting.h"
#include "XString.h"

namespace {

constexpr const char* kRussian = "\xC2\xE5\xF1";  // windows-1251

/// Which forms are valid, as letters.
std::string forms(const XString& x) {
  std::string text;
  if (x.getUtf8Ready()) text += '8';
  if (x.getAnsiReady()) text += 'a';
  if (x.getUtf16Ready()) text += x.isWideUtf16() ? "w16" : "w32";
  return text;
}

class XStringTest : public testing::Test {
 private:
  AnsiIs ansi_{1251};
};

TEST_F(XStringTest, WritersKeepOneFormAndReadersAddTheirs) {
  XString x;
  EXPECT_EQ(forms(x), "8a");
  x.setFromUtf8("Вес");
  EXPECT_EQ(forms(x), "8");
  EXPECT_STREQ(x.getAnsi(), kRussian);
  EXPECT_EQ(forms(x), "8a");
  EXPECT_EQ(std::wstring(x.getWideStr()), L"Вес");
  EXPECT_EQ(forms(x), "8aw32");
  EXPECT_EQ(x.getUtf16_xe()[2], u'с');
  EXPECT_EQ(forms(x), "8aw16");
  x.setFromAnsi(kRussian);
  EXPECT_EQ(forms(x), "a");
  x.setFromUtf16_xe(reinterpret_cast<const std::uint16_t*>(u"Вес"));
  EXPECT_EQ(forms(x), "w16");
  EXPECT_STREQ(x.getAnsi(), kRussian);
  x.setFromWideStr(L"Вес");
  EXPECT_EQ(forms(x), "w32");
  DataBuffer bytes;
  bytes.appendStr(kRussian);
  x.takeFromAnsiDb(bytes);
  EXPECT_EQ(forms(x), "a");
  EXPECT_STREQ(x.getUtf8(), "Вес");
  x.setFromUtf8("");
  EXPECT_EQ(forms(x), "8a");
  x.setFromUtf8("x");
  EXPECT_TRUE(x.setFromWideStr(L""));
  EXPECT_EQ(forms(x), "8a");
  x.setFromUtf8("x");
  x.setFromAnsi(nullptr);
  EXPECT_EQ(forms(x), "8a");
}

TEST_F(XStringTest, AnEmptyPieceTouchesTheFormsAsAnyOtherButForAnsi) {
  using Case = std::pair<bool (XString::*)(const char*), const char*>;
  for (const auto& [append, expected] :
       {Case{&XString::appendUtf8, "8"}, Case{&XString::appendUsAscii, "8"},
        Case{&XString::appendAnsi, "8a"}}) {
    XString x;
    EXPECT_TRUE((x.*append)(""));
    EXPECT_EQ(forms(x), expected);
  }
}

TEST_F(XStringTest, AppendsToTheFormAtHand) {
  XString x;
  x.appendAnsi(kRussian);
  x.appendUsAscii(":");
  EXPECT_EQ(forms(x), "a");
  x.appendInt(-12);
  EXPECT_EQ(forms(x), "8");
  x.appendAnsi(kRussian);
  EXPECT_EQ(forms(x), "8");
  x.appendAnsi("");
  x.appendUtf8("\xEF\xBB\xBF!");
  x.appendUsAscii("?");
  EXPECT_STREQ(x.getUtf8(), "Вес:-12Вес!?");
  x.appendWideStr(L"\xFEFF\x416");
  EXPECT_EQ(forms(x), "w32");
  x.appendUtf16_xe(reinterpret_cast<const std::uint16_t*>(u"ъ"));
  EXPECT_EQ(forms(x), "w16");
  EXPECT_STREQ(x.getUtf8(), "Вес:-12Вес!?Жъ");
  EXPECT_EQ(forms(x), "8w16");
  x.appendWideStr(L"\xFEFF");  // nothing but a mark changes nothing
  EXPECT_EQ(forms(x), "8w16");
  // UTF-8 takes a mark at the start for one; the text has it all the same.
  x.setFromWideStr(L"\xFEFF\xFEFF");
  EXPECT_STREQ(x.getUtf8(), "");
  x.appendWideStr(L"x");
  EXPECT_EQ(std::wstring(x.getWideStr()), L"\xFEFFx");
}

TEST_F(XStringTest, ADocumentThatPassesUnconvertedStaysTerminated) {
  XString x;
  x.setFromUtf8("%PDF-1.45");  // nine bytes as they are: no whole number of characters
  EXPECT_EQ(x.getWideStr()[3], L'\0');
  EXPECT_EQ(x.getUtf16_xe()[x.getNumChars()], 0);
  x.setFromUtf8("%PDF-1.45");
  EXPECT_EQ(x.getUtf16_xe()[5], 0);
}

TEST_F(XStringTest, TakesBytesInAnyEncoding) {
  const auto from = [](const char* charset, std::string_view text) {
    DataBuffer bytes;
    bytes.append(text.data(), text.size());
    XString x;
    x.setFromDb(charset, bytes);
    return std::string(x.getUtf8());
  };
  EXPECT_EQ(from("utf-8", "\xEF\xBB\xBFж"), "ж");
  EXPECT_EQ(from("utf-8", asUtf16(u"Вес")), asUtf16(u"Вес"));
  EXPECT_EQ(from("utf-8", asUtf16(u"abcd")), "abcd");  // NUL bytes give UTF-16 away
  EXPECT_EQ(from("utf-8", "\xFF\xFE" + asUtf16(u"Вес")), "Вес");
  EXPECT_EQ(from("cp866", "\x82\xA5\xE1"), "Вес");
  EXPECT_EQ(from("no such charset", kRussian), "Вес");
  EXPECT_EQ(from("hex", "AB"), "");  // no character set
  EXPECT_EQ(from("utf-8", ""), "");
}

TEST_F(XStringTest, EndsWithTakesTheStartOfAMarkForOne) {
  XString x;
  x.setFromUtf8("ab");
  for (const char* end : {"\xEF\xBB\xBF\x62", "\xEF\xBB\x62", "\xEF\x62", ""}) {
    EXPECT_TRUE(x.endsWithUtf8(end)) << end;
  }
  for (const char* end : {"\xBB\x62", "cab", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(x.endsWithUtf8(end));
  }
}

}  // namespace
