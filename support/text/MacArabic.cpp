#include "MacArabic.h"

#include <algorithm>
#include <string_view>

#include "DataBuffer.h"

namespace {

/// The signs of ASCII that stand once more 80 higher, with the direction of Arabic.
constexpr std::string_view kTwins = " !\"#$&'()*+-./:<=>[\\]^_{|}";

constexpr unsigned char kTwinDistance = 0x80;

constexpr bool isArabicDigit(unsigned char c) { return c >= 0xB0 && c <= 0xB9; }

constexpr bool isTwin(unsigned char c) {
  return c >= kTwinDistance &&
         kTwins.find(static_cast<char>(c - kTwinDistance)) != std::string_view::npos;
}

/// Letters, marks and punctuation of Arabic and the twins. Digits run left to right.
constexpr bool isRightToLeft(unsigned char c) {
  constexpr std::string_view kAmongLatin = "\x81\x8B\x8C\x93\x98\x9B";
  if (c < 0xA0) return kAmongLatin.find(static_cast<char>(c)) != std::string_view::npos;
  return !isArabicDigit(c);
}

}  // namespace

bool prepareMacArabic(const unsigned char* p, std::size_t n, DataBuffer& out) {
  const std::size_t start = out.getSize();
  if (!out.append(p, n)) return false;
  unsigned char* const begin = out.getData2() + start;
  unsigned char* const end = begin + n;
  for (unsigned char* run = std::find_if(begin, end, isRightToLeft); run != end;) {
    unsigned char* const runEnd = std::find_if_not(run, end, isRightToLeft);
    std::reverse(run, runEnd);
    run = std::find_if(runEnd, end, isRightToLeft);
  }
  std::transform(begin, end, begin, [](unsigned char c) {
    return isTwin(c) || isArabicDigit(c) ? static_cast<unsigned char>(c - kTwinDistance) : c;
  });
  return true;
}
