#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

/// Case and spacing of ASCII, whatever the locale of the process.

constexpr char asciiLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr char asciiUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr bool asciiEqualNoCase(char a, char b) { return asciiLower(a) == asciiLower(b); }

constexpr bool isTabOrSpace(char c) { return c == ' ' || c == '\t'; }

constexpr bool isAsciiSpace(char c) { return isTabOrSpace(c) || c == '\r' || c == '\n'; }

constexpr bool isAsciiDigit(char c) { return c >= '0' && c <= '9'; }

/// The number that a text begins with, behind tabs and blanks; 0 without one. What 32 bits can't
/// hold wraps.
constexpr int asciiIntValue(std::string_view text) {
  while (!text.empty() && isTabOrSpace(text.front())) text.remove_prefix(1);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  std::uint32_t value = 0;
  for (; !text.empty() && isAsciiDigit(text.front()); text.remove_prefix(1)) {
    value = value * 10 + static_cast<std::uint32_t>(text.front() - '0');
  }
  return static_cast<int>(negative ? 0U - value : value);
}

inline std::string asciiLower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return asciiLower(c); });
  return lower;
}

inline bool equalsNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), asciiEqualNoCase);
}
