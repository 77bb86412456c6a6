#include "FrameBuilder.h"

#include <algorithm>

namespace sim {

std::int64_t powerOfTen(int exponent) {
  std::int64_t power = 1;
  for (int i = 0; i < exponent; ++i) power *= 10;
  return power;
}

std::string digitText(std::int64_t magnitude, int places) {
  return rightAligned(std::to_string(magnitude), static_cast<std::size_t>(places), '0');
}

std::string decimalText(std::int64_t magnitude, int decimals) {
  if (decimals == 0) return std::to_string(magnitude);
  const std::int64_t power = powerOfTen(decimals);
  return std::to_string(magnitude / power) + "." + digitText(magnitude % power, decimals);
}

std::string rightAligned(std::string_view text, std::size_t width, char fill) {
  std::string field(width > text.size() ? width - text.size() : 0, fill);
  return field.append(text);
}

std::string minusFirst(const Display& display, std::size_t width) {
  const std::string number = decimalText(display.magnitude(), display.decimals);
  if (!display.negative()) return rightAligned(number, width);
  return "-" + rightAligned(number, width - 1, '0');
}

std::string minusNextToDigits(const Display& display, std::size_t width) {
  const std::string number = decimalText(display.magnitude(), display.decimals);
  return rightAligned(display.negative() ? "-" + number : number, width);
}

FrameBuilder& FrameBuilder::byte(std::uint8_t value) {
  frame_.push_back(value);
  return *this;
}

FrameBuilder& FrameBuilder::text(std::string_view characters) {
  frame_.insert(frame_.end(), characters.begin(), characters.end());
  return *this;
}

FrameBuilder& FrameBuilder::digitsUnitsFirst(std::int64_t magnitude, int places, char zero) {
  for (int i = 0; i < places; ++i, magnitude /= 10) {
    character(static_cast<char>(zero + static_cast<char>(magnitude % 10)));
  }
  return *this;
}

FrameBuilder& FrameBuilder::littleEndian(std::uint64_t value, int width) {
  for (int i = 0; i < width; ++i) byte(static_cast<std::uint8_t>(value >> (8 * i)));
  return *this;
}

FrameBuilder& FrameBuilder::bigEndian(std::uint64_t value, int width) {
  for (int i = width - 1; i >= 0; --i) byte(static_cast<std::uint8_t>(value >> (8 * i)));
  return *this;
}

FrameBuilder& FrameBuilder::modbusCrc() {
  constexpr std::uint32_t kStart = 0xFFFF;
  constexpr std::uint32_t kReflectedPolynomial = 0xA001;
  std::uint32_t crc = kStart;
  for (const std::uint8_t value : frame_) {
    crc ^= value;
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc & 1U) != 0 ? (crc >> 1) ^ kReflectedPolynomial : crc >> 1;
    }
  }
  return littleEndian(crc, 2);
}

std::uint8_t FrameBuilder::xorFrom(std::size_t from) const {
  std::uint8_t sum = 0;
  for (std::size_t i = from; i < frame_.size(); ++i) sum ^= frame_[i];
  return sum;
}

}  // namespace sim
