#include <algorithm>
#include <cctype>
#include <string>

#include <gtest/gtest.h>

#include "CharsetNames.h"
#include "CharsetNaming.h"
#include "DataFile.h"
#include "Psdk.h"
#include "TextTesting.h"

namespace {

TEST(CharsetTest, TheLocaleNamesTheAnsiCodePage) {
  for (const fixture::DataRow& row : fixture::dataRows("locales.txt")) {
    EXPECT_EQ(Psdk::ansiCodePageOfLocale(row.left.c_str()), std::stoi(row.right)) << row.left;
  }
  EXPECT_EQ(Psdk::ansiCodePageOfLocale(nullptr), 1252);
  EXPECT_EQ(Psdk::ansiCodePageOfLocale(("ru_" + std::string(252, 'x')).c_str()), 1251);
  EXPECT_EQ(Psdk::ansiCodePageOfLocale(("ru_" + std::string(253, 'x')).c_str()), 1252);
}

TEST(CharsetTest, EveryNameLeadsToItsCodePage) {
  const AnsiIs ansi(1251);
  EXPECT_EQ(charsetNames().size(), 439U);
  for (const CharsetName& known : charsetNames()) {
    // Asked names are normalised: "_" never arrives, nor do names of two letters.
    const bool reachable = known.name.size() >= 3 && known.name.find('_') == std::string::npos;
    const int expected = reachable ? known.codePage : known.name.size() < 3 ? 1251 : 932;
    std::string asked(known.name);
    EXPECT_EQ(CharsetNaming::GetCodePage_p(asked.c_str()), expected) << asked;
    std::replace(asked.begin(), asked.end(), '-', '_');
    std::transform(asked.begin(), asked.end(), asked.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    EXPECT_EQ(CharsetNaming::GetCodePage_p(("\t\"" + asked + "' \r\n").c_str()), expected) << asked;
  }
  const auto names = charsetNames();
  const auto twice = std::adjacent_find(
      names.begin(), names.end(),
      [](const CharsetName& a, const CharsetName& b) { return a.name == b.name; });
  EXPECT_EQ(twice, names.end());
}

TEST(CharsetTest, SpecialNames) {
  const AnsiIs ansi(1251);
  const std::pair<const char*, int> cases[] = {
      {" UTF_8 ", 65001},  {"ansi", 1251},     {"l1", 1251},
      {"latin1", 28591},   {"", 1251},         {"bom-utf-8", 65001},
      {"no-bom-utf-8", 0}, {"shift_jis", 932}, {"no-such-name", 0},
      {"base64", 1},       {"qp", 1251},       {"quoted-printable", 2},
      {"HEX", 3},          {"hex_lower", 25},  {"hexadecimal", 3},
      {"url_rfc1738", 0},  {"base64_mime", 0}, {"ascii85", 26},
      {"thumbprint", 18},  {"gb18030", 936},   {"iso-8859-8 visual", 28598}};
  for (const auto& [name, codePage] : cases) {
    EXPECT_EQ(CharsetNaming::GetCodePage_p(name), codePage) << name;
  }
}

}  // namespace
