#include <algorithm>
#include <cctype>
#include <string>

#include <gtest/gtest.h>

#include "AnsiIs.h"
#include "CharsetNames.h"
#include "CharsetNaming.h"
#include "CkCharset.h"
#include "Psdk.h"

namespace {

TEST(CharsetTest, TheLocaleNamesTheAnsiCodePage) {
  const std::pair<const char*, int> cases[] = {{nullptr, 1252},
                                               {"", 1252},
                                               {"C", 1252},
                                               {"C.UTF-8", 65001},
                                               {"ru_RU.UTF-8", 1251},
                                               {"ru_RU.KOI8-R", 20866},
                                               {"ru_RU.ISO8859-5", 28595},
                                               {"uk_UA.koi8u", 21866},
                                               {"ja_JP.UTF-8", 65001},
                                               {"ja_JP.eucJP", 20932},
                                               {"zh_TW.Big5", 950},
                                               {"zh_CN.GBK", 936},
                                               {"de_DE.ISO-8859-15", 28605},
                                               {"lt_LT.ISO-8859-13", 28603},
                                               {"de_DE@ISO8859-1", 28591},
                                               {"be_BY.CP1251", 1251},
                                               {"el_GR.cp1253", 1253},
                                               {"ro_RO", 1251},
                                               {"hr_HR", 1252},
                                               {"pl_PL.utf8", 1250},
                                               {"tr_TR", 1254},
                                               {"yi_US", 1255},
                                               {"ar_EG", 1256},
                                               {"lv_LV", 1257},
                                               {"vi_VN", 1258},
                                               {"RU_ru.UTF-8", 65001},
                                               {"POSIX", 1252}};
  for (const auto& [locale, codePage] : cases) {
    EXPECT_EQ(Psdk::ansiCodePageOfLocale(locale), codePage) << (locale ? locale : "unset");
  }
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

TEST(CharsetTest, CodePagesHaveOneName) {
  StringBuffer name;
  const std::pair<int, const char*> cases[] = {
      {1251, "windows-1251"}, {65001, "utf-8"}, {1200, "unicode"}, {20127, "us-ascii"},
      {54936, "gb18030"},     {37, "base64"},   {3, "hex"},        {5, "base64"}};
  for (const auto& [codePage, canonical] : cases) {
    EXPECT_TRUE(CharsetNaming::GetCharsetName(codePage, name));
    EXPECT_STREQ(name.getString(), canonical);
  }
  EXPECT_FALSE(CharsetNaming::GetCharsetName(709, name));
  EXPECT_STREQ(name.getString(), "");
  EXPECT_TRUE(std::is_sorted(
      canonicalNames().begin(), canonicalNames().end(),
      [](const CanonicalName& a, const CanonicalName& b) { return a.codePage < b.codePage; }));
  EXPECT_EQ(canonicalNames().size(), 146U);
}

TEST(CharsetTest, ACharsetKnowsItsNameAndTheWishForAMark) {
  const AnsiIs ansi(1251);
  _ckCharset charset;
  EXPECT_TRUE(charset.setByName("bom-UTF8"));
  EXPECT_EQ(charset.getCodePage(), 65001);
  EXPECT_STREQ(charset.getName(), "utf-8");
  EXPECT_EQ(charset.getMark(), _ckCharset::Mark::Wanted);
  EXPECT_TRUE(charset.setByName("no-bom:utf-16"));
  EXPECT_EQ(charset.getMark(), _ckCharset::Mark::NotWanted);
  EXPECT_EQ(charset.getCodePage(), 1200);
  EXPECT_FALSE(charset.setByName("nonsense"));
  EXPECT_EQ(charset.getCodePage(), 0);
  EXPECT_STREQ(charset.getName(), "");
  EXPECT_TRUE(charset.setByName(nullptr));
  EXPECT_EQ(charset.getCodePage(), 1251);
  EXPECT_TRUE(charset.setByName("OEM"));
  EXPECT_EQ(charset.getCodePage(), 65001);
  charset.setByName("x-user-defined");
  EXPECT_EQ(charset.getCodePage(), 0);
  charset.setByName("Default");  // only the exact case is special
  EXPECT_EQ(charset.getCodePage(), 0);
}

}  // namespace
