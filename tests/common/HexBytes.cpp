#include "HexBytes.h"

#include <charconv>
#include <stdexcept>

namespace fixture {

Bytes bytes(std::string_view text) {
  Bytes result;
  while (!text.empty()) {
    const auto refuse = [&] { throw std::invalid_argument("no bytes: " + std::string(text)); };
    if (text.front() == ' ' || text.front() == '|') {
      text.remove_prefix(1);
    } else if (text.front() == '\'' || text.front() == '"') {
      const std::size_t end = text.find(text.front(), 1);
      if (end == text.npos) refuse();
      result.insert(result.end(), text.begin() + 1, text.begin() + end);
      text.remove_prefix(end + 1);
    } else {
      std::uint8_t value = 0;
      const std::string_view digits = text.substr(0, 2);
      const auto [end, error] = std::from_chars(digits.begin(), digits.end(), value, 16);
      if (error != std::errc{} || end != digits.begin() + 2) refuse();
      result.push_back(value);
      text.remove_prefix(2);
    }
  }
  return result;
}

std::string characters(std::string_view text) {
  const Bytes all = bytes(text);
  return {all.begin(), all.end()};
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
