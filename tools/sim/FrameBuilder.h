#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "ScaleState.h"

namespace sim {

/// Control characters of the frames, by their ASCII names.
enum Control : std::uint8_t {
  NUL = 0x00,
  SOH = 0x01,
  STX = 0x02,
  ETX = 0x03,
  EOT = 0x04,
  ENQ = 0x05,
  ACK = 0x06,
  LF = 0x0A,
  CR = 0x0D,
  DC1 = 0x11,
};

/// 10 raised to `exponent`.
std::int64_t powerOfTen(int exponent);

/// "1.250" for 1250 with three decimals; at least one digit stands before the point. The number
/// must not be negative.
std::string decimalText(std::int64_t magnitude, int decimals);
/// Digits without a point, zeros in front.
std::string digitText(std::int64_t magnitude, int places);
/// Fills up on the left to `width`.
std::string rightAligned(std::string_view text, std::size_t width, char fill = ' ');

/// A signed number with the minus in the field's first place and zeros behind it, and blanks
/// before a positive one: the one form that reads well where blanks count as zeros.
std::string minusFirst(const Display& display, std::size_t width);
/// A signed number with its minus next to the first digit, blanks in front.
std::string minusNextToDigits(const Display& display, std::size_t width);

/// Puts a frame together from left to right.
class FrameBuilder {
 public:
  FrameBuilder& byte(std::uint8_t value);
  FrameBuilder& character(char value) { return byte(static_cast<std::uint8_t>(value)); }
  FrameBuilder& text(std::string_view characters);
  /// Decimal digits, the units first, each with `zero` added: '0' for characters, 0 for numbers.
  FrameBuilder& digitsUnitsFirst(std::int64_t magnitude, int places, char zero);
  FrameBuilder& littleEndian(std::uint64_t value, int width);
  FrameBuilder& bigEndian(std::uint64_t value, int width);
  /// CRC-16 of Modbus RTU over all that was put in, low byte first.
  FrameBuilder& modbusCrc();

  /// Exclusive or of all bytes from offset `from` on.
  std::uint8_t xorFrom(std::size_t from) const;
  Bytes take() { return std::move(frame_); }

 private:
  Bytes frame_;
};

}  // namespace sim
