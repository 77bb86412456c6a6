#include "FrameFields.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int kPriceDigits = 5;
/// The longest field of digits that any frame has.
constexpr std::size_t kMaxDigits = 6;

double backwards(Frame field, std::uint8_t add) {
  std::array<char, kMaxDigits + 1> text = {};
  std::size_t length = std::min(field.size(), kMaxDigits);
  for (std::size_t i = 0; i < length; ++i) {
    text[i] = static_cast<char>(static_cast<std::uint8_t>(field[length - 1 - i] + add));
  }
  return std::atoi(text.data());
}

constexpr std::array<double, 6> kDecimalFactors = {1.0, 0.1, 0.01, 0.001, 0.0001, 0.00001};

}  // namespace

std::string_view textOf(Frame field) {
  // Bytes are looked at as characters; no text of a scale is more than that.
  return {reinterpret_cast<const char*>(field.data()), field.size()};
}

double numberIn(Frame field) { return iGatof(textOf(field)); }

double backwardsNumberIn(Frame field) { return backwards(field, 0); }

double backwardsBinaryNumberIn(Frame field) { return backwards(field, '0'); }

std::uint16_t littleEndian16(Frame field) {
  return static_cast<std::uint16_t>(field[0] | (field[1] << 8));
}

std::uint32_t littleEndian32(Frame field) {
  return static_cast<std::uint32_t>(littleEndian16(field)) |
         static_cast<std::uint32_t>(littleEndian16(field.subspan(2))) << 16;
}

std::uint32_t bigEndian32(Frame field) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : field.first(4)) value = value << 8 | byte;
  return value;
}

double withSign(double number, std::uint8_t sign) { return sign == '-' ? -number : number; }

double zeroFilledNumberIn(Frame field, std::string_view kept) {
  NumberText text;
  for (const std::uint8_t byte : field) {
    const bool minus = byte == '-';
    if (minus) text.clear();
    const bool stays = minus || isDigit(byte) || kept.find(static_cast<char>(byte)) != kept.npos;
    text.add(stays ? byte : '0');
  }
  return text.value();
}

double unsignedNumberIn(Frame field) {
  NumberText text;
  for (const std::uint8_t byte : field) {
    if (isDigit(byte) || byte == '.') {
      text.add(byte);
    } else if (byte != ' ' || !text.empty()) {
      break;
    }
  }
  return text.value();
}

double withDecimals(double number, int decimals, int most) {
  if (decimals < 1 || decimals > most) return number;
  return number * kDecimalFactors.at(static_cast<std::size_t>(decimals));
}

void NumberText::add(std::uint8_t character) {
  if (size_ < text_.size()) text_[size_++] = static_cast<char>(character);
}

Bytes priceFrame(Bytes head, long price, std::uint8_t zero) {
  auto rest = static_cast<unsigned long>(price);
  for (int i = 0; i < kPriceDigits; ++i) {
    head.add(static_cast<std::uint8_t>(rest % 10 + zero));
    rest /= 10;
  }
  head.add(zero);
  return head;
}
