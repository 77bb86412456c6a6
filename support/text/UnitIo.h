#pragma once

#include <cstdint>
#include <cstring>

/// UTF-16 and UTF-32 as bytes, which need not be aligned.

inline std::uint16_t loadUnit(const unsigned char* p) {
  std::uint16_t unit;
  std::memcpy(&unit, p, sizeof unit);
  return unit;
}

inline unsigned char* storeUnit(unsigned char* p, std::uint32_t unit) {
  const std::uint16_t value = static_cast<std::uint16_t>(unit);
  std::memcpy(p, &value, sizeof value);
  return p + sizeof value;
}

inline unsigned char* storeUtf32(unsigned char* p, std::uint32_t codePoint) {
  std::memcpy(p, &codePoint, sizeof codePoint);
  return p + sizeof codePoint;
}

constexpr bool isHighSurrogate(std::uint32_t unit) { return (unit & 0xFFFFFC00) == 0xD800; }
constexpr bool isLowSurrogate(std::uint32_t unit) { return (unit & 0xFFFFFC00) == 0xDC00; }

constexpr std::uint32_t codePointOf(std::uint32_t high, std::uint32_t low) {
  return 0x10000 + ((high & 0x3FF) << 10) + (low & 0x3FF);
}

constexpr std::uint32_t highSurrogateOf(std::uint32_t codePoint) {
  return 0xD800 | (((codePoint - 0x10000) >> 10) & 0x3FF);
}

constexpr std::uint32_t lowSurrogateOf(std::uint32_t codePoint) {
  return 0xDC00 | (codePoint & 0x3FF);
}

/// Three bytes of UTF-8, for a surrogate or a short code point too.
inline unsigned char* storeUtf8Of3(unsigned char* p, std::uint32_t unit) {
  p[0] = static_cast<unsigned char>(0xE0 | (unit >> 12));
  p[1] = static_cast<unsigned char>(0x80 | ((unit >> 6) & 0x3F));
  p[2] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
  return p + 3;
}

/// One or two bytes of UTF-8 for a code point below 800, without a branch: the byte behind a
/// short one is overwritten by the next character.
inline unsigned char* storeUtf8Below800(unsigned char* p, std::uint32_t unit) {
  const bool two = unit >= 0x80;
  p[0] = static_cast<unsigned char>(two ? 0xC0 | (unit >> 6) : unit);
  p[1] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
  return p + 1 + two;
}
