#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Numbers.h"
#include "ProtocolSheet.h"

// Ways in which scales write numbers. All work on any bytes and read none outside the field.

constexpr bool isDigit(std::uint8_t byte) { return byte >= '0' && byte <= '9'; }

/// The field as text.
std::string_view textOf(Frame field);

/// The number that the text of a field begins with.
double numberIn(Frame field);

/// Digits with the units first, as characters '0' to '9'; what is no digit ends the number.
double backwardsNumberIn(Frame field);
/// Digits with the units first, as binary values 0 to 9.
double backwardsBinaryNumberIn(Frame field);

std::uint16_t littleEndian16(Frame field);
std::uint32_t littleEndian32(Frame field);
std::uint32_t bigEndian32(Frame field);

/// Blanks in front, then digits and points; the first other byte ends the number, a sign or a
/// blank behind a digit among them.
double unsignedNumberIn(Frame field);

/// Moves the decimal point `decimals` places to the left, by multiplication with the power that
/// the scale's table gives. Unchanged if `decimals` isn't between 1 and `most`.
double withDecimals(double number, int decimals, int most);

/// A number gathered from a frame character by character.
class NumberText {
 public:
  /// Adds a character; a text of 64 takes no more.
  void add(std::uint8_t character);
  void clear() { size_ = 0; }
  bool empty() const { return size_ == 0; }
  std::size_t size() const { return size_; }
  double value() const { return iGatof(std::string_view(text_.data(), size_)); }

 private:
  std::array<char, 64> text_ = {};
  std::size_t size_ = 0;
};

/// The five lowest decimal digits of `price`, units first, each plus `base`: 0 for binary digits,
/// '0' for characters. Higher digits are lost.
Bytes priceDigits(long price, std::uint8_t base = 0);
