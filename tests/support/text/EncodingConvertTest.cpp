#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CkUtf.h"
#include "EncodingConvert.h"
#include "TextTesting.h"

namespace {

using namespace std::string_literals;

constexpr int kUtf8 = 65001;

struct Case {
  const char* what;
  int from, to;
  std::string input, output;
  bool whole = true;
};

void PrintTo(const Case& test, std::ostream* os) { *os << test.what; }

class ConversionTest : public testing::TestWithParam<Case> {};

TEST_P(ConversionTest, Converts) {
  const Case& test = GetParam();
  const Conversion result = convert(test.from, test.to, test.input);
  EXPECT_EQ(testing::PrintToString(result.text), testing::PrintToString(test.output));
  EXPECT_EQ(result.whole, test.whole);
}

const Case kWindows1251[] = {
    {"Russian to UTF-8", 1251, kUtf8, "\xC2\xE5\xF1 1", "Вес 1"},
    {"Russian from UTF-8", kUtf8, 1251, "Вес 1", "\xC2\xE5\xF1 1"},
    {"euro", kUtf8, 1251, "€", "\x88"},
    {"undefined byte is dropped without complaint", 1251, kUtf8, "a\x98z", "az"},
    {"foreign character is dropped with one", kUtf8, 1251, "a中z", "az", false},
    {"foreign character beyond the first plane", kUtf8, 1251, "a😀z", "az", false},
    {"no euro in ISO 8859-5", kUtf8, 28595, "€", "", false},
    {"NUL is kept on the way to a table", 1200, 1251, asUtf16(u"a\0b"s), "a\0b"s},
    {"NUL is dropped on the way to UTF-8", 1200, kUtf8, asUtf16(u"a\0b"s), "ab"},
    {"NUL is dropped on the way to UTF-8 from a table, too", 1251, kUtf8, "a\0b"s, "ab"},
    {"NUL in UTF-8", kUtf8, 1251, "a\0b"s, "a\0b"s},
    {"to UTF-32", 1251, 12000, "\xC2\x98\x00z"s, asUtf32(U"Вz")},
    {"to UTF-32, the other order", 1251, 12001, "\xC2", "\0\0\x04\x12"s},
    {"copied without a check", 1251, 1251, "a\x98z", "a\x98z"},
    {"to another page", 1251, 866, "\xC2\xE5\xF1", "\x82\xA5\xE1"},
};
INSTANTIATE_TEST_SUITE_P(Windows1251, ConversionTest, testing::ValuesIn(kWindows1251));

const Case kUnicode[] = {
    {"mark overrides the order", 1200, kUtf8, "\xFE\xFF\0A"s, "A"},
    {"the other way round", 1201, kUtf8, "\xFF\xFE"s + "A\0"s, "A"},
    {"only a mark", 1200, kUtf8, "\xFF\xFE", ""},
    {"mark of UTF-8", kUtf8, 1251, "\xEF\xBB\xBF"s + "A", "A"},
    {"mark of UTF-32", 12000, kUtf8, "\0\0\xFE\xFF\0\0\0A"s, "A"},
    {"big-endian out", kUtf8, 1201, "Aж", "\0A\x04\x36"s},
    {"surrogates to 4 bytes", 1200, kUtf8, asUtf16(u"😀"), "😀"},
    {"4 bytes to surrogates", kUtf8, 1200, "😀", asUtf16(u"😀")},
    {"lone high surrogate takes what follows", 1200, kUtf8, "\x3D\xD8\x41\0"s,
     "\xED\xA0\xBD\xE0\x81\x81"},
    {"lone high surrogate at the end", 1200, kUtf8, "\x3D\xD8", "\xED\xA0\xBD"},
    {"lone low surrogate", 1200, kUtf8, "\x00\xDE\x41\0"s, "\xED\xB8\x80"s + "A"},
    {"odd UTF-16 loses its last byte", 1200, kUtf8, "A\0B"s, "A", false},
    {"one byte of UTF-16", 1200, kUtf8, "A", "", false},
    {"one byte of UTF-16 to a table", 1200, 1251, "A", "", false},
    {"odd UTF-16 to a table", 1200, 1251, "A\0B"s, "A", false},
    {"UTF-16 to UTF-32", 1200, 12000, asUtf16(u"ж😀"), asUtf32(U"ж😀")},
    {"UTF-32 to UTF-16", 12000, 1200, asUtf32(U"ж😀"), asUtf16(u"ж😀")},
    {"cut UTF-32", 12000, kUtf8, asUtf32(U"ж") + "x", "ж", false},
    {"UTF-32 beyond Unicode", 12000, kUtf8, "\xFF\xFF\xFF\x7F", "\uFFFD"},
    {"surrogates are illegal in UTF-32", 1200, 12000, "\x3D\xD8", "", false},
    {"cut sequence ends the text", kUtf8, 1200, "A\xD0", asUtf16(u"A")},
    {"cut long sequence", kUtf8, 1251, "A\xF0\x9F\x98", "A"},
    {"NUL inside a sequence", kUtf8, 1200, "A\xD0\0B"s, asUtf16(u"A\0B"s)},
    {"overlong form becomes what it means", kUtf8, 1200, "\xC1\x81", asUtf16(u"A")},
    {"foreign continuation is masked", kUtf8, 1200, "\xD0Z", asUtf16(u"\u041A")},
    {"continuation without a lead stands for itself", kUtf8, 1200, "\x98", asUtf16(u"\u0098")},
};
INSTANTIATE_TEST_SUITE_P(Unicode, ConversionTest, testing::ValuesIn(kUnicode));

const Case kOthers[] = {
    {"PDF passes", 1251, 1200, "%PDF-1.4 \xFF", "%PDF-1.4 \xFF"},
    {"short PDF doesn't", 1251, 1200, "%PDF-1", asUtf16(u"%PDF-1")},
    {"no source page copies", 0, 1200, "abc", "abc"},
    {"no target page copies", 1251, 0, "abc\x98", "abc\x98"},
    {"binary encodings are no pages", 1, kUtf8, "abc", "", false},
    {"but 37 is one", 37, kUtf8, "\xC1\xC2", "AB"},
    {"no table", 20932, kUtf8, "abc", "", false},
    {"no table for the target", kUtf8, 54936, "abc", "", false},
    {"ASCII to UTF-8 drops 8-bit bytes", 20127, kUtf8, "a\xFFz", "az"},
    {"ASCII to windows-1252 passes them", 20127, 1252, "a\xFFz", "a\xFFz"},
    {"Shift-JIS", kUtf8, 932, "日本A", "\x93\xFA\x96\x7B"s + "A"},
    {"Shift-JIS half-width", 932, kUtf8, "\xB1\x93\xFA", "ｱ日"},
    {"pair without a meaning loses its first byte", 932, kUtf8, "a\x81 z", "a z"},
    {"lead at the end", 936, kUtf8, "a\xB0", "a"},
    {"HZ goes by its table", 52936, kUtf8, "\xB0\xA1", "啊"},
    {"Korean EUC has no extended syllables", kUtf8, 51949, "가각갂", "\xB0\xA1\xB0\xA2", false},
    {"combining letter of T.61", kUtf8, 20261, "à", "\xC1\x61"},
    {"UTF-7", kUtf8, 65000, "Hi + Вес ~", "Hi +- +BBIENQRB +AH4-"},
    {"from UTF-7", 65000, kUtf8, "Hi +- +BBIENQRB-x", "Hi + Весx"},
    {"ISO-2022-JP", kUtf8, 50220, "a日本b", "a\x1B$BF|K\\\x1B(Bb"},
    {"from ISO-2022-JP", 50220, kUtf8, "a\x1B$BF|K\\\x1B(Bb", "a日本b"},
    {"half-width letters become full-width", kUtf8, 50220, "ｶﾞ", "\x1B$B%,\x1B(B"},
    {"half-width letters by escape", kUtf8, 50221, "ｱa", "\x1B(I1\x1B(Ba"},
    {"half-width letters by shift", kUtf8, 50222, "aｱb", "a\x0E\x31\x0F"s + "b"},
    {"shifted half-width letters", 50222, kUtf8, "a\x0E\x31\x0F"s + "b", "aｱb"},
    {"ISO-2022-KR", kUtf8, 50225, "a가b", "\x1B$)Ca\x0E\x30\x21\x0F"s + "b"},
    {"from ISO-2022-KR", 50225, kUtf8, "\x1B$)Ca\x0E\x30\x21\x0F"s + "b", "a가b"},
    {"GSM", kUtf8, 55000, "@€è[", "\0\x1B\x65\x04\x1B\x3C"s},
    {"from GSM", 55000, 1252, "\0\x1B\x65\x04\x1B\x3C"s, "@\x80\xE8["},
    {"not in GSM", kUtf8, 55000, "aЖb", "ab", false},
    {"Mac Arabic runs are reversed", 10004, kUtf8, "a\xC7\xC8 b", "aبا b"},
    {"Mac Arabic digits and signs become ASCII", 10004, kUtf8, "\xB1\xB2\xA1", "12!"},
};
INSTANTIATE_TEST_SUITE_P(Others, ConversionTest, testing::ValuesIn(kOthers));

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
    converter.setAltDestCodepage(0);
    return convert(from, to, text, converter).text;
  };
  using Action = EncodingConvert::ErrorAction;
  EXPECT_EQ(withAction(Action::Drop, kUtf8, 1251, "a中z"), "az");
  EXPECT_EQ(withAction(Action::Replace, kUtf8, 1251, "a中z"), "a??z");
  EXPECT_EQ(withAction(Action::HexReference, kUtf8, 1251, "a中z"), "a&#x4E2D;z");
  EXPECT_EQ(withAction(Action::KeepBytes, kUtf8, 1251, "a中z"), "a\x2D\x4Ez");
  EXPECT_EQ(withAction(Action::AlternativePage, kUtf8, 1251, "a中z"), "az");
  EXPECT_EQ(withAction(Action::WidenByte, 1251, 1200, "\x98"), std::string("\x98\0", 2));
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
  EXPECT_EQ(toString(out), "\xE0");
}

TEST(EncodingConvertTest, SurrogatesStayApartWhile4BytesAreOff) {
  g_allow_4byte_utf8 = false;
  EXPECT_EQ(convert(1200, kUtf8, asUtf16(u"😀")).text, "\xED\xA0\xBD\xED\xB8\x80");
  EXPECT_EQ(convert(12000, kUtf8, asUtf32(U"😀")).text, "\xED\xA0\xBD\xED\xB8\x80");
  g_allow_4byte_utf8 = true;
}

/// Long texts are converted in pieces: characters of all widths across every border.
TEST(EncodingConvertTest, PiecesFitTogether) {
  std::u32string text;
  for (int i = 0; i < 30'000; ++i) text += U"aжあ😀"s.substr(static_cast<std::size_t>(i * 7 % 4), 1);
  const std::string utf32 = asUtf32(text);
  for (std::size_t shift = 0; shift < 4; ++shift) {
    const std::string wanted = std::string(shift, 'x') + convert(12000, kUtf8, utf32).text;
    const std::string utf16 = convert(kUtf8, 1200, wanted).text;
    EXPECT_EQ(convert(1200, kUtf8, utf16).text, wanted);
    EXPECT_EQ(convert(12000, kUtf8, convert(kUtf8, 12000, wanted).text).text, wanted);
    EXPECT_EQ(convert(kUtf8, 932, wanted).text, convert(1200, 932, utf16).text);
  }
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
  for (std::size_t n = 0; n < 300; ++n) {
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
      const std::string utf32 = asUtf32(random.characters(40));
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
