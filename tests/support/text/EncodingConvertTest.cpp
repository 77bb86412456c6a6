#include <array>
#include <cstdio>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "CkLogger.h"
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

TEST(EncodingConvertTest, NothingToConvertIsNoFailure) {
  EXPECT_EQ(convert(99999, 1, ""), (Conversion{"", true, false}));
  DataBuffer out;
  LogNull log;
  EXPECT_TRUE(EncodingConvert().EncConvert(99999, 1, nullptr, 5, out, log));
}

TEST(EncodingConvertTest, HalfWidthKanaTakeTheirMarks) {
  EXPECT_EQ(convert(kUtf8, 50220,
                    "ｳﾞｶﾞｷﾞｸﾞｹﾞｺﾞｻﾞｼﾞｽﾞｾﾞｿﾞﾀﾞﾁﾞﾂﾞﾃﾞﾄﾞﾊﾞﾋﾞﾌﾞﾍﾞﾎﾞﾊﾟﾋﾟﾌﾟﾍﾟﾎﾟ"
                    "ｵﾞﾅﾞﾉﾞﾏﾞﾜﾞｦﾞｶﾟﾄﾟﾉﾟﾏﾟｳﾟ"),
            convert(kUtf8, 50220,
                    "ヴガギグゲゴザジズゼゾダヂヅデドバビブベボパピプペポ"
                    "オ゛ナ゛ノ゛マ゛ワ゛ヲ゛カ゜ト゜ノ゜マ゜ウ゜"));
}

TEST(EncodingConvertTest, ErrorActions) {
  using Action = EncodingConvert::ErrorAction;
  using Case = std::tuple<int, int, int, std::string, std::string>;
  const Case cases[] = {
      {Action::Drop, kUtf8, 1251, "a中z", "az"},
      {Action::Replace, kUtf8, 1251, "a中z", "a??z"},
      {Action::HexReference, kUtf8, 1251, "a中z", "a&#x2D4E;z"},
      {Action::KeepBytes, kUtf8, 1251, "a中z", "a\x2D\x4Ez"},
      {Action::AlternativePage, kUtf8, 1251, "a中z", "az"},  // a second stage
      {Action::AlternativePage, 1200, 1251, asUtf16(u"a中z"), "a\x92\x86z"},
      {Action::HexReference, 1251, 1200, "\x98", "&#x98;"},
      {Action::WidenByte, 1251, 1200, "\x98", "\x98\0"s},
      {Action::WidenByte, 932, 1200, "\x81", ""},  // has bytes without a meaning of their own
      {Action::WidenByte, kUtf8, 1200, "\xD0", ""},
      {Action::Replace, kUtf8, 1200, "a\xD0\0z"s, "a\0??\0\0z\0"s},
      {3, kUtf8, 1251, "a中z", "az"},
      // From one page to another, what the first stage writes is marked and passes the second.
      {Action::Replace, 1251, 866, "a\x98z", "a??z"},
      {Action::KeepBytes, 1251, 866, "a\x98z", "a\x98z"},
      {Action::Replace, 932, 51932, "\x81\xADz", "??z"}};
  for (const auto& [action, from, to, text, result] : cases) {
    EncodingConvert converter;
    converter.setErrorAction(action);
    converter.setDefBytes("??", 2);
    converter.setAltDestCodepage(932);
    EXPECT_EQ(convert(from, to, text, converter).text, result)
        << "action " << action << " from " << from;
  }
}

TEST(EncodingConvertTest, SurrogatesStayApartWhile4BytesAreOff) {
  g_allow_4byte_utf8 = false;
  EXPECT_EQ(convert(1200, kUtf8, asUtf16(u"😀")).text, "\xED\xA0\xBD\xED\xB8\x80");
  EXPECT_EQ(convert(12000, kUtf8, asUtf32(U"😀")).text, "\xED\xA0\xBD\xED\xB8\x80");
  g_allow_4byte_utf8 = true;
}

TEST(EncodingConvertTest, TellsOfEachIllegalCharacterOnEitherWay) {
  for (const int to : {1200, 1251}) {
    _ckLogger log;
    log.m_verboseEncoding = true;
    DataBuffer out;
    EncodingConvert().EncConvert(kUtf8, to, "\xD0\0\xD0", 3, out, log);
    StringBuffer told;
    log.getText(told);
    EXPECT_EQ(told.replaceAllOccurances("Found invalid utf-8", ""), 2) << to;
  }
}

// Random texts go both ways in a fuzz target.
TEST(EncodingConvertTest, ShortWaysGiveWhatTheLongWayGives) {
  std::vector<std::string> texts = {"a\0b"s, "a\x98z",       "\xD0", "a\xE2\x82\0z"s,
                                    "a中😀z", "\xF0\x9F\x98", ""};
  while (texts.back().size() < 50'000) texts.back() += "Вес: 1,250 кг\x98中ä😀";
  using Way = std::array<int, 3>;
  for (const auto& [from, middle, to] :
       {Way{kUtf8, 1200, 1251}, Way{kUtf8, 1200, 37}, Way{kUtf8, 1200, 932}, Way{kUtf8, 1200, 949},
        Way{kUtf8, 1200, 20261}, Way{1251, 1200, kUtf8}, Way{37, 1200, kUtf8},
        Way{874, 1200, kUtf8}, Way{1251, kUtf8, 12000}, Way{20127, kUtf8, 12000}}) {
    for (const std::string& text : texts) {
      const Conversion first = convert(from, middle, text);
      const Conversion second = convert(middle, to, first.text);
      EXPECT_EQ(convert(from, to, text), (Conversion{second.text, first.whole && second.whole,
                                                     first.hadError || second.hadError}))
          << from << " to " << to << ", " << text.size() << " bytes";
    }
  }
  // U+EFFD looks like the mark of the pivot: behind it a length below 6 and raw bytes.
  EXPECT_EQ(convert(kUtf8, 1251, "\xD0\0\xEE\xBF\xBD\x02Ж"s),
            (Conversion{"\0\0\x16"s, true, true}));
  EXPECT_EQ(convert(kUtf8, 1251, "a\xEE\xBF\xBDz"), (Conversion{"az", false, true}));
  EXPECT_EQ(convert(kUtf8, 1251, "\xEE\xBF\xBD"), (Conversion{"", false, true}));
}

TEST(EncodingConvertTest, ACharacterAcrossTheEndOfAPieceHasRoom) {
  // Just the room of the filling: a sanitizer sees what is written behind it.
  for (const int from : {kUtf8, 1200, 12000}) {
    for (const int to : {kUtf8, 1200, 12000, 1251}) {
      const std::string text = convert(kUtf8, from, std::string(32'767, 'a') + "😀zz").text;
      DataBuffer out;
      LogNull log;
      EXPECT_TRUE(out.ensureBuffer(65'536));
      EncodingConvert().EncConvert(from, to, text.data(), text.size(), out, log);
      EXPECT_EQ(toString(out), convert(from, to, text).text) << from << " to " << to;
    }
  }
}

}  // namespace
