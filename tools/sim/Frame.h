#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "ScaleState.h"

namespace sim {

/// Control characters of the frames, by their ASCII names.
enum Control : char {
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
/// "1.250" for 1250 with three decimals; at least one digit stands before the point.
std::string decimalText(std::int64_t number, int decimals);

/// Bytes that are always the same.
struct Fixed {
  Bytes bytes;
};
/// Of texts, characters and numbers, in their order.
template <typename... Parts>
Fixed is(const Parts&... parts) {
  std::string text;
  const auto add = [&](const auto& part) {
    if constexpr (std::is_convertible_v<decltype(part), std::string_view>) {
      text += part;
    } else {
      text += static_cast<char>(part);
    }
  };
  (add(parts), ...);
  return {{text.begin(), text.end()}};
}

/// Text that tells how the scale is: `usual` but where one of the others applies and isn't empty,
/// the last of them first.
struct Mark {
  std::string_view usual;
  std::string_view net = {};
  std::string_view moving = {};
  std::string_view negative = {};
  std::string_view overload = {};
};

/// A byte of bits, beside those that are `always` set.
struct Status {
  unsigned always = 0;
  unsigned stable = 0;
  unsigned moving = 0;
  unsigned negative = 0;
  unsigned overload = 0;
  /// The number of decimals is added.
  bool decimals = false;
};

/// How a number fills its places.
enum class Form {
  Written,            ///< characters, with the point
  Digits,             ///< characters, the point left out
  MarkedDigits,       ///< as Digits, the top bit of the one before the point set
  Backwards,          ///< as Written, the last character first
  ShiftedBackwards,   ///< as Digits, the last one first, the one before the point as with the shift
                      ///< key
  UnitsFirst,         ///< as Digits, the last one first
  UnitsFirstNumbers,  ///< the same, as numbers 0 to 9 instead of characters
  Packed,             ///< two digits a byte, the highest first
  LowFirst,           ///< binary
  HighFirst,          ///< binary
};

/// Where the minus of a number stands.
enum class Minus {
  None,    ///< nowhere in the field
  First,   ///< in its first place, zeros behind
  Beside,  ///< next to the first digit
  Binary,  ///< two's complement
};

/// One of the numbers on the display.
using Quantity = std::int64_t Display::*;

struct Number {
  Quantity of = &Display::weight;
  Form form = Form::Written;
  /// Characters or bytes.
  int places = 0;
  Minus minus = Minus::None;
  /// In front of a positive number.
  char fill = ' ';
  /// A line feed stands behind so many places, as one more; 0 for none.
  std::size_t lineFeedBehind = 0;
  /// What stands there instead; empty for the number.
  std::string_view overload = {};

  struct Limits {
    std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    std::int64_t highest = std::numeric_limits<std::int64_t>::max();
  };
  /// What the field can hold, in units of the last digit; `negative` tells that the frame has a
  /// sign elsewhere.
  Limits limits(int decimals, bool negative) const;
};

/// Over all bytes from offset `from` up to here.
struct Checksum {
  enum class Kind {
    ExclusiveOr,  ///< one byte
    Characters,   ///< the same in two hexadecimal characters
    Nibbles,      ///< the same in two numbers 0 to 15
    ModbusCrc,    ///< CRC-16 of Modbus RTU, low byte first
  };
  std::size_t from = 0;
  Kind kind = Kind::ExclusiveOr;
};

/// A frame from left to right, as the maker's paper draws it.
using Layout = std::vector<std::variant<Fixed, Mark, Status, Number, Checksum>>;

Bytes frameOf(const Layout& layout, const Display& display);

/// The number of that kind in a layout; null where it has none.
const Number* numberIn(const Layout& layout, Quantity quantity);
bool showsSign(const Layout& layout);
bool showsStability(const Layout& layout);
bool showsOverload(const Layout& layout);

}  // namespace sim
