#pragma once

#include <algorithm>
#include <array>
#include <string_view>

/// What is known of code pages by their numbers: the Windows numbering, in which the numbers below
/// 100 are binary encodings. The characters of pages with a table are in CodePageTables.h.
namespace code_page {

inline constexpr int kEbcdicUs = 37;
inline constexpr int kShiftJis = 932;
inline constexpr int kSimplifiedChinese = 936;
inline constexpr int kKorean = 949;
inline constexpr int kTraditionalChinese = 950;
inline constexpr int kUtf16Le = 1200;
inline constexpr int kUtf16Be = 1201;
inline constexpr int kMacArabic = 10004;
inline constexpr int kUtf32Le = 12000;
inline constexpr int kUtf32Be = 12001;
inline constexpr int kUsAscii = 20127;
inline constexpr int kIso2022Kr = 50225;
inline constexpr int kEucJapanese = 51932;
inline constexpr int kEucChinese = 51936;
inline constexpr int kEucKorean = 51949;
inline constexpr int kHz = 52936;
inline constexpr int kGsm = 55000;
inline constexpr int kUtf7 = 65000;
inline constexpr int kUtf8 = 65001;

inline constexpr int kLastBinaryEncoding = 99;

/// One EBCDIC page has a number among the binary encodings.
constexpr bool isBinaryEncoding(int number) {
  return number >= 1 && number <= kLastBinaryEncoding && number != kEbcdicUs;
}

constexpr bool isUtf16(int number) { return number == kUtf16Le || number == kUtf16Be; }
/// 65005 and 65006 are second numbers of UTF-32.
constexpr bool isUtf32Be(int number) { return number == kUtf32Be || number == 65006; }
constexpr bool isUtf32(int number) {
  return number == kUtf32Le || number == 65005 || isUtf32Be(number);
}
constexpr bool isIso2022Jp(int number) { return number >= 50220 && number <= 50222; }

/// A byte order mark and what it stands for.
struct Bom {
  int codePage;
  std::string_view bytes;
};

/// In the order in which a text is held against them: little-endian UTF-32 begins like UTF-16, and
/// where both are possible it counts as that.
inline constexpr std::array<Bom, 5> kBoms = {{{kUtf16Le, {"\xFF\xFE", 2}},
                                              {kUtf16Be, {"\xFE\xFF", 2}},
                                              {kUtf8, {"\xEF\xBB\xBF", 3}},
                                              {kUtf32Be, {"\0\0\xFE\xFF", 4}},
                                              {kUtf32Le, {"\xFF\xFE\0\0", 4}}}};

/// Empty for a page that has none.
constexpr std::string_view bomOf(int number) {
  const auto* const place = std::find_if(kBoms.begin(), kBoms.end(),
                                         [=](const Bom& bom) { return bom.codePage == number; });
  return place == kBoms.end() ? std::string_view() : place->bytes;
}

/// True if a byte order mark of the one page may stand in a text of the other: both are forms of
/// one width.
constexpr bool sharesBom(int a, int b) {
  return a == b || (isUtf16(a) && isUtf16(b)) || (isUtf32(a) && isUtf32(b));
}

/// Targets that take the bytes of ASCII as they are.
constexpr bool extendsAscii(int number) {
  return (number >= 1250 && number <= 1258) || (number >= 28591 && number <= 28605);
}

/// Double-byte pages whose unknown characters take two bytes with them.
constexpr bool skipsPairs(int number) {
  constexpr std::array kPages = {kShiftJis,    kSimplifiedChinese, kKorean,   kTraditionalChinese,
                                 kEucJapanese, kEucChinese,        kEucKorean};
  return std::find(kPages.begin(), kPages.end(), number) != kPages.end();
}

/// HZ is not kept apart from the page behind it.
constexpr int tableNumberOf(int number) { return number == kHz ? kSimplifiedChinese : number; }

}  // namespace code_page
