#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "CharsetNaming.h"
#include "CkCharset.h"
#include "CkSettings.h"
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
    EXPECT_EQ(CharsetNaming::CharsetValid_p(name), codePage != 0) << name;
  }
}

TEST(CharsetTest, ACharsetIsSetByNameWithTheWishForAMark) {
  const AnsiIs ansi(1251);
  using Mark = _ckCharset::Mark;
  using Case = std::tuple<const char*, bool, int, const char*, Mark>;
  for (const auto& [name, isKnown, codePage, canonical, mark] :
       {Case{nullptr, true, 1251, "windows-1251", Mark::Unset},
        Case{"ANSI", true, 1251, "windows-1251", Mark::Unset},
        Case{"Oem", true, CkSettings::getOemCodePage(), "utf-8", Mark::Unset},
        Case{"bom-utf-8", true, 65001, "utf-8", Mark::Wanted},
        Case{"no-bom:utf16", true, 1200, "unicode", Mark::NotWanted},
        Case{"BOM-none", false, 0, "", Mark::Unset}, Case{"default", true, 0, "", Mark::Unset}}) {
    _ckCharset named;
    EXPECT_EQ(named.setByName(name), isKnown) << canonical;
    EXPECT_EQ(named.getCodePage(), codePage);
    EXPECT_STREQ(named.getName(), canonical);
    EXPECT_EQ(named.getMark(), mark) << canonical;
  }
}

}  // namespace
