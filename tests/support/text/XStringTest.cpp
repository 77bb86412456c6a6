#include <random>
#include <string>

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
  EXPECT_EQ(x.heapUsage(), 0);
  EXPECT_EQ(forms(x), "8");
  EXPECT_STREQ(x.getAnsi(), kRussian);
  EXPECT_EQ(forms(x), "8a");
  EXPECT_EQ(std::wstring(x.getWideStr()), L"Вес");
  EXPECT_EQ(forms(x), "8aw32");
  EXPECT_EQ(x.getUtf16_xe()[2], u'с');
  EXPECT_EQ(forms(x), "8aw16");
  x.setFromAnsi(kRussian);
  EXPECT_EQ(forms(x), "a");
  EXPECT_STREQ(x.getUtf8(), "Вес");
  x.setFromUtf16_xe(reinterpret_cast<const std::uint16_t*>(u"Вес"));
  EXPECT_EQ(forms(x), "w16");
  EXPECT_STREQ(x.getAnsi(), kRussian);
  EXPECT_STREQ(x.getUtf8(), "Вес");
  x.setFromWideStr(L"Вес");
  EXPECT_EQ(forms(x), "w32");
  EXPECT_STREQ(x.getUtf8(), "Вес");
  EXPECT_STREQ(x.getAnsi(), kRussian);
  x.setFromUtf32_xe(U"В");
  x.appendUtf32_xe(U"ес");
  EXPECT_EQ(forms(x), "w32");
  EXPECT_STREQ(x.getUtf8(), "Вес");
  DataBuffer bytes;
  bytes.appendStr(kRussian);
  x.takeFromAnsiDb(bytes);
  EXPECT_EQ(forms(x), "a");
  EXPECT_STREQ(x.getUtf8(), "Вес");
  x.setFromUtf8("");
  EXPECT_EQ(forms(x), "8a");
  x.setFromUtf8("x");
  x.setFromAnsi(nullptr);
  EXPECT_EQ(forms(x), "8a");
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
}

TEST_F(XStringTest, TakesItsOwnText) {
  XString x;
  x.setFromAnsi(kRussian);
  x.setFromUtf8(x.getUtf8());
  x.setFromAnsi(x.getAnsi() + 1);
  EXPECT_STREQ(x.getUtf8(), "ес");
  x.setFromUtf16_xe(x.getUtf16_xe() + 1);
  EXPECT_STREQ(x.getUtf8(), "с");
  x.appendUtf16_xe(x.getUtf16_xe());
  x.appendWideStr(x.getWideStr());
  EXPECT_STREQ(x.getUtf8(), "сссс");
  x.setFromWideStr(x.getWideStr() + 4);
  EXPECT_STREQ(x.getUtf8(), "");
  x.setFromUtf8("ж");
  x.appendX(x);
  x.getWideStr();
  x.appendUtf8(x.getUtf8());
  x.setFromUtf16_xe(x.getUtf16_xe());
  for (int i = 0; i < 12; ++i) x.appendX(x);
  EXPECT_EQ(x.getNumChars(), 4 << 12);
  EXPECT_TRUE(x.copyFromX(x));
  EXPECT_EQ(x.getNumChars(), 4 << 12);
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

TEST_F(XStringTest, ComparesThroughUtf8) {
  XString x;
  x.setFromAnsi("Net: \xC2\xE5\xF1");
  EXPECT_TRUE(x.equalsUtf8("Net: Вес"));
  EXPECT_FALSE(x.equalsUtf8("Net: вес"));
  EXPECT_TRUE(x.equalsIgnoreCaseUtf8("nEt: Вес"));  // of ASCII alone
  EXPECT_FALSE(x.equalsIgnoreCaseUtf8("net: вес"));
  EXPECT_TRUE(x.beginsWithUtf8("Net"));
  EXPECT_FALSE(x.beginsWithUtf8("et"));
  EXPECT_TRUE(x.containsSubstringUtf8("ес"));
  EXPECT_FALSE(x.containsSubstringUtf8("нет"));
  EXPECT_EQ(x.indexOfUtf8("ес"), 7);
  EXPECT_EQ(x.indexOfUtf8("нет"), -1);
  EXPECT_FALSE(x.is7bit());
  EXPECT_TRUE(x.isValidUtf8());
  XString other;
  other.setFromSbUtf8(StringBuffer("Net: Вес"));
  EXPECT_TRUE(other.equalsX(x));
  other.setFromUtf8("Net\xD0");
  EXPECT_FALSE(other.equalsX(x));
  EXPECT_FALSE(other.isValidUtf8());
}

TEST_F(XStringTest, RandomTextsSurviveEveryRoad) {
  std::mt19937 random(51);
  for (int i = 0; i < 300; ++i) {
    std::wstring text;
    for (auto n = random() % 60; n != 0; --n) {
      text += static_cast<wchar_t>(random() % 3 == 0 ? 0x20 + random() % 0x5F
                                                     : 0x410 + random() % 0x40);
    }
    XString x;
    x.setFromWideStr(text.c_str());
    for (int step = 0; step < 12; ++step) {
      switch (random() % 8) {
        case 0: x.setFromUtf8(std::string(x.getUtf8()).c_str()); break;
        case 1: x.setFromAnsi(std::string(x.getAnsi()).c_str()); break;
        case 2: x.getUtf16_xe(); break;
        case 3: x.getWideStr(); break;
        case 4: x.getAnsi(); break;
        case 5: x.minimizeMemory(); break;
        case 6: {
          XString copy;
          copy.appendX(x);
          x.copyFromX(copy);
          break;
        }
        default: {
          DataBuffer bytes;
          x.getConverted_cp(1201, bytes);
          x.setFromDb_cp(1201, bytes);
        }
      }
    }
    EXPECT_EQ(x.getWideStr(), text);
  }
}

}  // namespace
