#include <algorithm>
#include <cstdio>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "CkLogger.h"
#include "CkSettings.h"
#include "CkUtf.h"
#include "DataFile.h"
#include "EncodingConvert.h"
#include "HexBytes.h"
#include "TextTesting.h"

namespace {

using namespace std::string_literals;

constexpr int kUtf8 = 65001;

TEST(EncodingConvertTest, Converts) {
  constexpr std::string_view kLossy = "lossy";
  for (const fixture::DataRow& row : fixture::dataRows("conversions.txt")) {
    SCOPED_TRACE(row.heading + ": " + row.remark);
    int from = -1;
    int to = -1;
    ASSERT_EQ(std::sscanf(row.heading.c_str(), "from %d to %d", &from, &to), 2);
    const bool whole = !row.right.starts_with(kLossy);
    const Conversion result = convert(from, to, fixture::characters(row.left));
    EXPECT_EQ(fixture::hex(fixture::text(result.text)),
              fixture::hex(fixture::bytes(row.right.substr(whole ? 0 : kLossy.size()))));
    EXPECT_EQ(result.whole, whole);
  }
}

TEST(EncodingConvertTest, MarkedBytesPassThePivotOfTables) {
  // U+EFFD looks like the mark: behind it a length below 6 and raw bytes.
  EXPECT_EQ(convert(kUtf8, 1251, "\xEE\xBF\xBD\x02Ж").text, std::string("\0\x16", 2));
  EXPECT_EQ(convert(kUtf8, 1251, "a\xEE\xBF\xBDz"), (Conversion{"az", false, true}));
  EXPECT_EQ(convert(kUtf8, 1251, "\xEE\xBF\xBD"), (Conversion{"", false, true}));
}

TEST(EncodingConvertTest, ErrorActions) {
  const auto withAction = [](int action, int from, int to, std::string_view text) {
    EncodingConvert converter;
    converter.setErrorAction(action);
    converter.setDefBytes("??", 2);
    converter.setAltDestCodepage(932);
    return convert(from, to, text, converter).text;
  };
  using Action = EncodingConvert::ErrorAction;
  EXPECT_EQ(withAction(Action::Drop, kUtf8, 1251, "a中z"), "az");
  EXPECT_EQ(withAction(Action::Replace, kUtf8, 1251, "a中z"), "a??z");
  EXPECT_EQ(withAction(Action::HexReference, kUtf8, 1251, "a中z"), "a&#x2D4E;z");
  EXPECT_EQ(withAction(Action::KeepBytes, kUtf8, 1251, "a中z"), "a\x2D\x4Ez");
  EXPECT_EQ(withAction(Action::AlternativePage, kUtf8, 1251, "a中z"), "az");  // a second stage
  EXPECT_EQ(withAction(Action::AlternativePage, 1200, 1251, asUtf16(u"a中z")), "a\x92\x86z");
  EXPECT_EQ(withAction(Action::HexReference, 1251, 1200, "\x98"), "&#x98;");
  EXPECT_EQ(withAction(Action::WidenByte, 1251, 1200, "\x98"), std::string("\x98\0", 2));
  EXPECT_EQ(withAction(Action::Replace, kUtf8, 1200, "a\xD0\0z"s), "a\0??\0\0z\0"s);
  EXPECT_EQ(withAction(3, kUtf8, 1251, "a中z"), "az");
  // From one page to another, what the first stage writes is marked and passes the second.
  EXPECT_EQ(withAction(Action::Replace, 1251, 866, "a\x98z"), "a??z");
  EXPECT_EQ(withAction(Action::KeepBytes, 1251, 866, "a\x98z"), "a\x98z");
  EXPECT_EQ(withAction(Action::Replace, 932, 51932, "\x81\xADz"), "??z");
}

TEST(EncodingConvertTest, Preamble) {
  DataBuffer out;
  LogNull log;
  EncodingConvert converter;
  converter.EncConvertWithPreamble(1251, 1201, "A", 1, out, log);
  converter.ChConvert3_withPreamble(1251, "no such name", "A", 1, out, log);
  EXPECT_EQ(toString(out), "\xFE\xFF\0A\xEF\xBB\xBF"s + "A");
  EXPECT_FALSE(converter.ChConvert("nonsense", "utf-8", "A", 1, out, log));
  EXPECT_FALSE(converter.ChConvert2("nonsense", kUtf8, "A", 1, out, log));
  out.clear();
  EXPECT_TRUE(converter.ChConvert("koi8-r", "windows-1251", "\xC1", 1, out, log));
  EXPECT_TRUE(converter.ChConvert3(1251, "koi8-r", "\xE0", 1, out, log));
  EXPECT_TRUE(converter.ChConvert3(1251, "no such name", "\xE0", 1, out, log));
  EXPECT_EQ(toString(out), "\xE0\xC1а");
}

TEST(EncodingConvertTest, ThePagesOfThisHost) {
  const AnsiIs ansi(1251);
  CkSettings::setOemCodePage(866);
  DataBuffer out;
  LogNull log;
  EncodingConvert converter;
  converter.AnsiToMultiByte(20866, "\xE0", 1, out, log);
  converter.MultiByteToAnsi(20866, "\xC1", 1, out, log);
  converter.OemToMultiByte(20866, "\xA0", 1, out, log);
  converter.MultiByteToOem(20866, "\xC1", 1, out, log);
  EXPECT_EQ(toString(out), "\xC1\xE0\xC1\xA0");
  CkSettings::setOemCodePage(65001);
}

TEST(EncodingConvertTest, TellsItsWayWhenAsked) {
  _ckLogger log;
  log.m_verboseEncoding = true;
  DataBuffer out;
  EXPECT_TRUE(EncodingConvert().EncConvert(kUtf8, 1200, "\xD0\0", 2, out, log));
  StringBuffer text;
  log.getText(text);
  EXPECT_STREQ(text.getString(),
               "KestrumLog:\n"
               "  EncConvert:\n"
               "    fromCodePage: 65001\n"
               "    toCodePage: 1200\n"
               "    Found invalid utf-8 when trying to convert to utf-16.\n"
               "  --EncConvert\n"
               "--KestrumLog\n");
}

TEST(EncodingConvertTest, SurrogatesStayApartWhile4BytesAreOff) {
  g_allow_4byte_utf8 = false;
  EXPECT_EQ(convert(1200, kUtf8, asUtf16(u"😀")).text, "\xED\xA0\xBD\xED\xB8\x80");
  EXPECT_EQ(convert(12000, kUtf8, asUtf32(U"😀")).text, "\xED\xA0\xBD\xED\xB8\x80");
  g_allow_4byte_utf8 = true;
}

/// Random characters that a page can hold, and random bytes.
class RandomText {
 public:
  std::string bytes(std::size_t n) {
    std::string text(n, '\0');
    std::generate(text.begin(), text.end(), [&] { return static_cast<char>(random_()); });
    return text;
  }

  std::u32string characters(std::size_t n) {
    std::u32string text;
    while (text.size() < n) {
      static constexpr char32_t kLimits[] = {0x80, 0x100, 0x500, 0xFFFE, 0x10FFFF};
      const char32_t c = 1 + static_cast<char32_t>(random_() % kLimits[random_() % 5]);
      const bool special = (c >= 0xD800 && c < 0xE000) || c == 0xFEFF || c == 0xEFFD;
      if (!special && c <= 0x10FFFF) text += c;
    }
    return text;
  }

 private:
  std::mt19937 random_{20260};
};

TEST(EncodingConvertTest, AllRoadsBetweenTheFormsOfUnicodeAgree) {
  RandomText random;
  // Long texts are converted in pieces: characters of all widths come to lie across their borders.
  for (std::size_t n = 0; n < 50'000; n += n < 100 ? 1 : n / 2) {
    const std::string utf32 = asUtf32(random.characters(n));
    const std::string utf8 = convert(12000, kUtf8, utf32).text;
    const std::string utf16 = convert(kUtf8, 1200, utf8).text;
    EXPECT_EQ(convert(1200, kUtf8, utf16).text, utf8);
    EXPECT_EQ(convert(kUtf8, 12000, utf8).text, utf32);
    EXPECT_EQ(convert(12000, 1200, utf32).text, utf16);
    EXPECT_EQ(
        convert(1201, kUtf8, convert(12001, 1201, convert(12000, 12001, utf32).text).text).text,
        utf8);
    EXPECT_EQ(convert(65000, kUtf8, convert(kUtf8, 65000, utf8).text).text, utf8);
  }
}

TEST(EncodingConvertTest, AllRoadsToAPageAgree) {
  RandomText random;
  for (const int page : {1251, 866, 28595, 37, 932, 936, 949, 950, 1361, 10001, 20261, 51932}) {
    SCOPED_TRACE(page);
    for (int i = 0; i < 60; ++i) {
      const std::string utf32 = asUtf32(random.characters(i == 0 ? 20'000 : 40));
      const Conversion fromUtf8 = convert(kUtf8, page, convert(12000, kUtf8, utf32).text);
      EXPECT_EQ(convert(1200, page, convert(12000, 1200, utf32).text), fromUtf8);
      EXPECT_EQ(convert(12000, page, utf32), fromUtf8);
      // The general road of error actions gives the same where nothing is to be replaced.
      EncodingConvert general;
      general.setErrorAction(EncodingConvert::Replace);
      EXPECT_EQ(convert(kUtf8, page, convert(12000, kUtf8, utf32).text, general), fromUtf8);

      const std::string bytes = random.bytes(40);
      const Conversion toUtf8 = convert(page, kUtf8, bytes);
      EXPECT_EQ(convert(1200, kUtf8, convert(page, 1200, bytes).text).text, toUtf8.text);
      EXPECT_EQ(convert(kUtf8, 12000, toUtf8.text).text, convert(page, 12000, bytes).text);
      if (page == 20261) continue;  // bytes of a combined letter read as two
      const std::string clean = convert(kUtf8, page, toUtf8.text).text;
      EXPECT_EQ(convert(page, kUtf8, clean).text, toUtf8.text);
    }
  }
}

}  // namespace
