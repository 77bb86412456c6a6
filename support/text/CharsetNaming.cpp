#include "CharsetNaming.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "CharsetNames.h"
#include "ClsEncode.h"
#include "CodePages.h"
#include "Psdk.h"
#include "StringBuffer.h"

namespace {

constexpr std::size_t kShortestName = 3;

/// How a name of a binary encoding matches.
struct BinaryName {
  std::string_view name;
  int encoding;
  bool asPrefix;
};

/// In the order of the tests. Names with "_" don't match a normalised name.
constexpr std::array<BinaryName, 25> kBinaryNames = {{
    {"base64", 1, false},       {"qp", 2, false},           {"quoted", 2, true},
    {"hexlower", 25, true},     {"hex_lower", 25, true},    {"hex-lower", 25, true},
    {"hex", 3, true},           {"url", 4, false},          {"base32", 7, false},
    {"uu", 8, false},           {"modbase64", 10, false},   {"url_rfc1738", 11, false},
    {"url_rfc2396", 12, false}, {"url_rfc3986", 13, false}, {"url_oauth", 14, false},
    {"base58", 17, false},      {"fingerprint", 18, false}, {"thumbprint", 18, false},
    {"decimal", 19, false},     {"base64url", 20, false},   {"eda", 21, false},
    {"json", 22, false},        {"declist", 23, false},     {"base64_mime", 24, false},
    {"ascii85", 26, false},
}};

int binaryEncodingOf(std::string_view name) {
  const auto place =
      std::find_if(kBinaryNames.begin(), kBinaryNames.end(), [&](const BinaryName& known) {
        return known.asPrefix ? name.starts_with(known.name) : name == known.name;
      });
  return place == kBinaryNames.end() ? 0 : place->encoding;
}

}  // namespace

int CharsetNaming::GetCodePage(StringBuffer& name) {
  name.trim2();
  name.toLowerCase();
  name.replaceCharAnsi('_', '-');
  // In this order, so that nothing is left to find of "no-bom-": such a name is unknown.
  name.replaceFirstOccurance("bom-", "", false);
  name.replaceFirstOccurance("no-bom-", "", false);
  name.removeCharOccurances('"');
  name.removeCharOccurances('\'');
  if (name.getSize() < kShortestName || name.equals("ansi")) return Psdk::getAnsiCodePage();

  const std::span<const CharsetName> names = charsetNames();
  const auto place = std::lower_bound(
      names.begin(), names.end(), name.view(),
      [](const CharsetName& known, std::string_view wanted) { return known.name < wanted; });
  if (place != names.end() && place->name == name.view()) return place->codePage;
  return binaryEncodingOf(name.view());
}

int CharsetNaming::GetCodePage_p(const char* name) {
  StringBuffer copy(name);
  return GetCodePage(copy);
}

bool CharsetNaming::CharsetValid(StringBuffer& name) { return GetCodePage(name) != 0; }

bool CharsetNaming::CharsetValid_p(const char* name) { return GetCodePage_p(name) != 0; }

bool CharsetNaming::GetCharsetName(int codePage, StringBuffer& out) {
  out.weakClear();
  if (codePage >= 1 && codePage <= code_page::kLastBinaryEncoding) {
    return out.append(_clsEncode::encodingIdToName(codePage));
  }
  const std::span<const CanonicalName> names = canonicalNames();
  const auto place = std::lower_bound(
      names.begin(), names.end(), codePage,
      [](const CanonicalName& known, int wanted) { return known.codePage < wanted; });
  return place != names.end() && place->codePage == codePage && out.append(place->name);
}

bool CharsetNaming::GetAnsiCharset(StringBuffer& out) {
  return GetCharsetName(Psdk::getAnsiCodePage(), out);
}
