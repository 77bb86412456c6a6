#include "Psdk.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "AsciiText.h"
#include "CodePages.h"

namespace {

constexpr int kNotAskedYet = -1;
constexpr int kWesternEuropean = 1252;
constexpr std::size_t kLongestLocale = 255;

std::atomic<int> g_ansiCodePage{kNotAskedYet};
std::atomic<int> g_oemCodePage{code_page::kUtf8};

struct SuffixRule {
  std::string_view suffix;
  int codePage;
};

constexpr std::array<SuffixRule, 4> kSuffixes = {
    {{"big5", 950}, {"eucjp", 20932}, {"koi8r", 20866}, {"koi8u", 21866}}};

struct LanguageRule {
  std::string_view prefix;
  int codePage;
};

// The groups follow no alphabet of their own: Romanian stands with the Cyrillic languages,
// Croatian, Hungarian, Slovak and Slovene with the Western ones.
constexpr std::array<LanguageRule, 42> kLanguages = {{
    {"cs_", 1250}, {"pl_", 1250}, {"be_", 1251}, {"bg_", 1251}, {"mk_", 1251}, {"ro_", 1251},
    {"ru_", 1251}, {"uk_", 1251}, {"en_", 1252}, {"af_", 1252}, {"eu_", 1252}, {"ca_", 1252},
    {"da_", 1252}, {"de_", 1252}, {"nl_", 1252}, {"fi_", 1252}, {"fr_", 1252}, {"ga_", 1252},
    {"gd_", 1252}, {"hr_", 1252}, {"hu_", 1252}, {"is_", 1252}, {"it_", 1252}, {"lb_", 1252},
    {"nn_", 1252}, {"no_", 1252}, {"pt_", 1252}, {"sk_", 1252}, {"sl_", 1252}, {"es_", 1252},
    {"sr_", 1252}, {"sv_", 1252}, {"el_", 1253}, {"ku_", 1254}, {"tr_", 1254}, {"he_", 1255},
    {"yi_", 1255}, {"ar_", 1256}, {"et_", 1257}, {"lv_", 1257}, {"lt_", 1257}, {"vi_", 1258},
}};

}  // namespace

int Psdk::ansiCodePageOfLocale(const char* locale) {
  if (locale == nullptr || std::strlen(locale) > kLongestLocale) return kWesternEuropean;
  // Without an allocation, which might fail: callers count on an answer.
  using Name = std::array<char, kLongestLocale>;
  Name given;
  char* const end = std::remove_copy(locale, locale + std::strlen(locale), given.begin(), '-');
  const std::string_view name(given.data(), static_cast<std::size_t>(end - given.data()));
  if (name.empty() || name == "C") return kWesternEuropean;
  Name lowered;
  std::transform(name.begin(), name.end(), lowered.begin(), [](char c) { return asciiLower(c); });
  const std::string_view lower(lowered.data(), name.size());
  const auto contains = [&](std::string_view part) { return lower.find(part) != lower.npos; };
  const int lastCharacter = static_cast<unsigned char>(name.back());

  if (contains("iso8859")) {
    if (contains("885915")) return 28605;
    if (contains("885913")) return 28603;
    return lastCharacter + 28542;  // "1" gives 28591
  }
  if (contains(".cp125")) return lastCharacter + 1202;  // "0" gives 1250
  for (const SuffixRule& rule : kSuffixes) {
    if (lower.ends_with(rule.suffix)) return rule.codePage;
  }
  if (contains("gbk")) return 936;
  // The language comes before ".utf8": ru_RU.UTF-8 is windows-1251 here.
  for (const LanguageRule& rule : kLanguages) {
    if (name.starts_with(rule.prefix)) return rule.codePage;
  }
  return lower.ends_with(".utf8") ? code_page::kUtf8 : kWesternEuropean;
}

int Psdk::getAnsiCodePage() {
  const int known = g_ansiCodePage.load(std::memory_order_relaxed);
  if (known != kNotAskedYet) return known;
  int expected = kNotAskedYet;
  const int found = ansiCodePageOfLocale(std::getenv("LANG"));
  return g_ansiCodePage.compare_exchange_strong(expected, found) ? found : expected;
}

void Psdk::setAnsiCodePage(int codePage) { g_ansiCodePage = codePage; }

int Psdk::getOemCodePage() { return g_oemCodePage; }

void Psdk::setOemCodePage(int codePage) { g_oemCodePage = codePage; }
