#pragma once

#include <algorithm>
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

inline std::string asciiLower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return asciiLower(c); });
  return lower;
}

inline bool equalsNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), asciiEqualNoCase);
}
