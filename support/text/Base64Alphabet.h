#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

constexpr std::string_view kBase64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::int8_t kNotBase64 = -1;

constexpr std::array<std::int8_t, 256> kBase64Values = [] {
  std::array<std::int8_t, 256> values{};
  values.fill(kNotBase64);
  for (std::size_t i = 0; i < kBase64Alphabet.size(); ++i) {
    values[static_cast<unsigned char>(kBase64Alphabet[i])] = static_cast<std::int8_t>(i);
  }
  return values;
}();

/// The 6 bits of a character, -1 if it is not of the alphabet.
constexpr int base64Value(unsigned char c) { return kBase64Values[c]; }
