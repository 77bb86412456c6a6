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

/// The number with the sign that stands apart from it: a minus negates, all else means nothing.
double withSign(double number, std::uint8_t sign);

/// A text in which each character counts as a zero but digits, those of `kept` and minuses. A
/// minus throws away what is before it.
double zeroFilledNumberIn(Frame field, std::string_view kept = {});

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

// Frames that price-computing scales of several makers share.

/// Weight, price and cost one behind the other, in digits with the units first, without start, end
/// or checksum. `number` reads a field of digits: `backwardsNumberIn`, `backwardsBinaryNumberIn`.
template <std::size_t priceDigits, double (*number)(Frame)>
struct DigitFrame {
  enum Offset : std::size_t {
    kWeight = 0,
    kPrice = kWeight + 6,
    kCost = kPrice + priceDigits,
    kSize = kCost + 6,
  };

  static bool isGood(Frame frame) { return frame.size() == kSize; }

  /// One in the last digit is `weightStep` of weight and `moneyStep` of price and cost.
  static void read(Frame frame, double weightStep, double moneyStep, Reading& reading) {
    reading.weight = number(frame.subspan(kWeight, kPrice - kWeight)) * weightStep;
    reading.price = number(frame.subspan(kPrice, kCost - kPrice)) * moneyStep;
    reading.cost = number(frame.subspan(kCost, kSize - kCost)) * moneyStep;
  }
};

/// The frame that gives such a scale a price: `head`, the five lowest decimal digits with the units
/// first, and a zero. `zero` is 0 for binary digits and '0' for characters. Higher digits are lost.
Bytes priceFrame(Bytes head, long price, std::uint8_t zero = 0);

/// The frame between STX and ETX in which indicators answer the letter D. They differ in how they
/// write the weight's seven characters.
struct IndicatorFrame {
  /// Asks the indicator with address A.
  static constexpr Bytes kAsk = {0x02, 'A', 'D', '0', '5', 0x03};

  enum Offset : std::size_t {
    kStx = 0,
    kAddress = kStx + 1,
    kCommand = kAddress + 1,
    kSign = kCommand + 1,
    kWeight = kSign + 1,
    kCheck = kWeight + 7,
    kEtx = kCheck + 2,
    kSize = kEtx + 1,
  };
  static_assert(kSize == 14);

  static bool isGood(Frame frame) {
    return frame.size() == kSize && frame[kEtx] == 0x03 && frame[kCommand] == 'D';
  }
  static std::uint8_t signOf(Frame frame) { return frame[kSign]; }
  static Frame weightOf(Frame frame) { return frame.subspan(kWeight, kCheck - kWeight); }
};
