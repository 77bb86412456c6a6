#include "HexBytes.h"

#include <charconv>
#include <stdexcept>

namespace fixture {

Bytes bytes(std::string_view hex) {
  Bytes result;
  while (!hex.empty()) {
    if (hex.front() == ' ') {
      hex.remove_prefix(1);
      continue;
    }
    std::uint8_t value = 0;
    const std::string_view digits = hex.substr(0, 2);
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), value, 16);
    if (error != std::errc{} || end != digits.begin() + 2) {
      throw std::invalid_argument("two hexadecimal digits wanted at: " + std::string(hex));
    }
    result.push_back(value);
    hex.remove_prefix(2);
  }
  return result;
}

Bytes text(std::string_view characters) { return {characters.begin(), characters.end()}; }

std::string hex(std::span<const std::uint8_t> data) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string result;
  for (const std::uint8_t byte : data) {
    if (!result.empty()) result += ' ';
    result += kDigits[byte >> 4];
    result += kDigits[byte & 0x0F];
  }
  return result;
}

}  // namespace fixture
