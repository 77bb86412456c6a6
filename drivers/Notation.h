#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <variant>

#include "ByteRow.h"

// Ways in which scales write numbers, and where in a frame they do. All work on any bytes and read
// none outside the frame.

/// The bytes received in one attempt.
using Frame = std::span<const std::uint8_t>;

constexpr bool isDigit(std::uint8_t byte) { return byte >= '0' && byte <= '9'; }

/// A number in characters. Each byte of the field is taken for what it is, and what is gathered so
/// is read as a person writes numbers.
struct TextNotation {
  enum class Take : std::uint8_t {
    AsItIs,
    /// Stepped over.
    Drop,
    /// Counts as a zero.
    Zero,
    /// Ends the number.
    End,
    /// Stepped over in front of the number, and ends it behind its first character.
    Lead,
    /// Throws away what was gathered before it.
    Restart,
    /// Counts as a zero, and makes the whole number negative.
    ZeroAndNegate,
  };

  Take minus = Take::AsItIs;
  Take point = Take::AsItIs;
  Take blank = Take::AsItIs;
  /// All that is neither of these nor a digit.
  Take other = Take::AsItIs;
  /// The units stand first.
  bool backwards = false;
  /// How a zero is sent. Where digits are binary values, '0' is added to all bytes.
  std::uint8_t zero = '0';
  /// The whole number up to the first byte that is no digit; otherwise with a fraction behind a
  /// point or a comma.
  bool whole = false;
  /// With fewer characters the number is 0.
  std::size_t fewest = 0;
  /// The character that a byte stands for with the decimal point behind it; 0 for a byte that
  /// doesn't bring the point.
  std::uint8_t (*beforePoint)(std::uint8_t byte) = nullptr;
};

/// Two's complement or without sign, of two or four bytes.
struct BinaryNotation {
  std::endian order;
  bool isSigned;
};

/// Two decimal digits in a byte; D and F are dark places, zeros.
struct PackedNotation {};

using Notation = std::variant<TextNotation, BinaryNotation, PackedNotation>;

/// Blanks and minuses in front, digits with a point or a comma; the first other byte ends it.
inline constexpr TextNotation kNumberText = {};
/// Blanks in front, then digits and points; a sign, a comma or a blank behind a digit ends it.
inline constexpr TextNotation kUnsignedText = {.minus = TextNotation::Take::End,
                                               .blank = TextNotation::Take::Lead,
                                               .other = TextNotation::Take::End};
/// Whole numbers of digits with the units first, as characters or as values 0 to 9.
inline constexpr TextNotation kDigitsUnitsFirst = {.backwards = true, .whole = true};
inline constexpr TextNotation kValuesUnitsFirst = {.backwards = true, .zero = 0, .whole = true};

/// Something that the bits of a byte say.
struct Mark {
  std::size_t at;
  std::uint8_t mask;
  std::uint8_t value;

  constexpr bool isIn(Frame frame) const { return (frame[at] & mask) == value; }
};
consteval Mark byteIs(std::size_t at, std::uint8_t value) { return {at, 0xFF, value}; }
consteval Mark bitOf(std::size_t at, std::uint8_t bit) { return {at, bit, bit}; }
inline constexpr Mark kAlways = {0, 0, 0};
inline constexpr Mark kNever = {0, 0, 1};

/// Where the scale says how many decimals there are: the number is multiplied by the factor of that
/// code, or left alone if there is none.
struct DecimalCode {
  std::size_t at = 0;
  std::uint8_t mask = 0xFF;
  /// The code of the first factor.
  std::uint8_t zero = '0';
  std::span<const double> factors = {};

  double factorIn(Frame frame) const;
};
inline constexpr std::array<double, 6> kDecimals = {1.0, 0.1, 0.01, 0.001, 0.0001, 0.00001};
constexpr std::span<const double> decimalsUpTo(std::size_t most) {
  return std::span(kDecimals).first(most + 1);
}
/// Grams in the last digit shown, by the number of decimals of a weight in kilograms.
inline constexpr std::array<double, 4> kGramsOfDecimals = {1000.0, 100.0, 10.0, 1.0};

/// Where a number stands in a frame, and how it is written there.
struct NumberField {
  /// A field that ends with the frame, which then has no fixed length.
  static constexpr std::size_t kToTheEnd = std::numeric_limits<std::size_t>::max();
  enum class Cut { No, To32Bits, To64Bits };

  std::size_t at = 0;
  /// 0 for a number that the frame doesn't have.
  std::size_t size = 0;
  /// A second part of it, behind bytes of another meaning.
  std::size_t thenAt = 0;
  std::size_t thenSize = 0;
  Notation written = kNumberText;
  /// Turns the sign round.
  Mark negative = kNever;
  DecimalCode decimals = {};
  /// What one in the last place is of the driver's unit.
  double step = 1.0;
  /// Towards zero, before the sign.
  Cut cut = Cut::No;

  constexpr bool exists() const { return size != 0; }
  struct Value {
    double number;
    /// Nothing was there to be read; the number is 0.
    bool none;
  };
  /// For good frames only.
  Value in(Frame frame) const;
};

/// The frame that gives a price-computing scale its price: `head`, the five lowest decimal digits
/// with the units first, and a zero. `zero` is 0 for binary digits and '0' for characters. Higher
/// digits are lost. A negative price divides as the signed number it is, so each digit stands below
/// `zero`, modulo 256.
ByteRow priceFrame(ByteRow head, long price, std::uint8_t zero);
