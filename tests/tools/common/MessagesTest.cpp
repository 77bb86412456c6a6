// What the tools say in each language, and what of it goes to a terminal or into a shell.

#include <array>

#include <gtest/gtest.h>

#include "Messages.h"
#include "Output.h"
#include "Text.h"

namespace {

TEST(Messages, CountInTheFormsOfEachLanguage) {
  const struct {
    int count;
    const char* english;
    const char* russian;
    const char* ukrainian;
  } cases[] = {
      {0, "0 bytes", "0 байт", "0 байтів"},         {1, "1 byte", "1 байт", "1 байт"},
      {2, "2 bytes", "2 байта", "2 байти"},         {5, "5 bytes", "5 байт", "5 байтів"},
      {11, "11 bytes", "11 байт", "11 байтів"},     {14, "14 bytes", "14 байт", "14 байтів"},
      {21, "21 bytes", "21 байт", "21 байт"},       {24, "24 bytes", "24 байта", "24 байти"},
      {111, "111 bytes", "111 байт", "111 байтів"},
  };
  for (const auto& [count, english, russian, ukrainian] : cases) {
    const std::array expected = {english, russian, ukrainian};
    for (const Language language : {Language::English, Language::Russian, Language::Ukrainian}) {
      useLanguage(language);
      EXPECT_EQ(sayCount("{0} byte", "{0} bytes", count),
                expected[static_cast<std::size_t>(language)]);
    }
  }
  useLanguage(Language::English);
}

TEST(Messages, StayEnglishWhereATranslationDoesNotFit) {
  const int value = 5;
  EXPECT_EQ(messages::fill("{1} {0:q}", "five: {0}", fmt::make_format_args(value)), "five: 5");
  useLanguage(Language::Ukrainian);
  EXPECT_EQ(say("{0} that no catalogue has", 7), "7 that no catalogue has");
  useLanguage(Language::English);
}

TEST(Output, ShowsNothingThatSteersATerminal) {
  const std::pair<std::string, const char*> cases[] = {
      {"вес 5\n\t", "вес 5\n\t"},
      {"\x1B]0;x\x07", "\\x1B]0;x\\x07"},
      {std::string("\0\r\x7F", 3), "\\x00\\x0D\\x7F"},
      {"\xC2\x9B"
       "31m \xC2\xA0",
       "\\xC2\\x9B31m \xC2\xA0"},
      {"\xE2\x82", "\\xE2\\x82"},
      {"\xE0\x80\xAF \xED\xA0\x80 \xF4\x90\x80\x80 \xC0\xAF",
       "\\xE0\\x80\\xAF \\xED\\xA0\\x80 \\xF4\\x90\\x80\\x80 \\xC0\\xAF"},
      {"\xF0\x9F\x98\x80\xFF", "\xF0\x9F\x98\x80\\xFF"},
  };
  for (const auto& [text, shown] : cases) EXPECT_EQ(visible(text), shown);
}

TEST(Text, QuotesForTheShellWhatTheShellWouldTake) {
  const std::pair<const char*, const char*> cases[] = {
      {"/dev/ttyUSB0", "/dev/ttyUSB0"}, {"", "''"},     {"a b", "'a b'"},
      {"a'$(b)", "'a'\\''$(b)'"},       {"~x", "'~x'"}, {"a\x1B[0m'\\\n", "$'a\\x1B[0m\\'\\\\\\n'"},
      {"\xE2\x82", "$'\\xE2\\x82'"}};
  for (const auto& [word, quoted] : cases) EXPECT_EQ(shellWord(word), quoted);
}

TEST(Text, WrapsBetweenWordsAndKeepsIndents) {
  using Lines = std::vector<std::string>;
  const struct {
    const char* text;
    std::size_t width;
    std::size_t indent;
    Lines lines;
  } cases[] = {
      {"один два три", 8, 0, {"один два", "три"}},
      {"one two three", 8, 3, {"one two", "   three"}},
      {"  a bb cc\n\nd", 6, 0, {"  a bb", "  cc", "", "d"}},
      {"longerthanthat x", 5, 0, {"longerthanthat", "x"}},
      {"", 5, 0, {""}},
  };
  for (const auto& [text, width, indent, lines] : cases) {
    EXPECT_EQ(wrapped(text, width, indent), lines) << text;
  }
}

}  // namespace
