#include "Notation.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "Numbers.h"

namespace {

/// A number gathered from a frame character by character, forwards through the field or backwards.
class NumberText {
 public:
  explicit NumberText(const TextNotation& notation) : notation_(notation) {}

  void gather(Frame field) {
    if (notation_.backwards) {
      std::for_each(field.rbegin(), field.rend(), [&](std::uint8_t byte) { take(byte); });
    } else {
      std::ranges::for_each(field, [&](std::uint8_t byte) { take(byte); });
    }
  }

  NumberField::Value value() const {
    const double number = size_ < notation_.fewest ? 0.0
                          : notation_.whole        ? std::atoi(text_.data())
                                                   : iGatof(std::string_view(text_.data(), size_));
    return {negated_ ? -number : number, size_ == 0};
  }

 private:
  void take(std::uint8_t sent) {
    if (ended_) return;
    const auto byte = static_cast<std::uint8_t>(sent + '0' - notation_.zero);
    if (const std::uint8_t digit = notation_.beforePoint ? notation_.beforePoint(byte) : 0) {
      add(digit);
      add('.');
      return;
    }
    switch (howToTake(byte)) {
      case TextNotation::Take::AsItIs: add(byte); return;
      case TextNotation::Take::Drop: return;
      case TextNotation::Take::Zero: add('0'); return;
      case TextNotation::Take::End: ended_ = true; return;
      case TextNotation::Take::Lead: ended_ = size_ > 0; return;
      case TextNotation::Take::Restart:
        size_ = 0;
        add(byte);
        return;
      case TextNotation::Take::ZeroAndNegate:
        negated_ = true;
        add('0');
        return;
    }
  }

  TextNotation::Take howToTake(std::uint8_t byte) const {
    if (isDigit(byte)) return TextNotation::Take::AsItIs;
    switch (byte) {
      case '-': return notation_.minus;
      case '.': return notation_.point;
      case ' ': return notation_.blank;
      default: return notation_.other;
    }
  }

  /// No number is read from more than the first 50 characters.
  void add(std::uint8_t character) {
    if (size_ < text_.size() - 1) text_[size_++] = static_cast<char>(character);
  }

  const TextNotation& notation_;
  std::array<char, 64> text_ = {};
  std::size_t size_ = 0;
  bool ended_ = false;
  bool negated_ = false;
};

/// Reads a field of which a second part may stand apart.
struct FieldReader {
  Frame field;
  Frame then;

  NumberField::Value operator()(const TextNotation& notation) const {
    NumberText text(notation);
    text.gather(field);
    text.gather(then);
    return text.value();
  }

  NumberField::Value operator()(const BinaryNotation& notation) const {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < field.size(); ++i) {
      const bool high = notation.order == std::endian::big;
      value = value << 8U | field[high ? i : field.size() - 1 - i];
    }
    if (!notation.isSigned) return {static_cast<double>(value), false};
    const bool isShort = field.size() == sizeof(std::int16_t);
    return {static_cast<double>(isShort ? static_cast<std::int16_t>(value)
                                        : static_cast<std::int32_t>(value)),
            false};
  }

  NumberField::Value operator()(PackedNotation /*notation*/) const {
    double number = 0.0;
    for (const std::uint8_t byte : field) {
      for (const unsigned nibble : {unsigned{byte} >> 4U, byte & 0x0FU}) {
        number = 10.0 * number + (nibble <= 9 ? nibble : 0);
      }
    }
    return {number, false};
  }
};

double cut(double number, NumberField::Cut to) {
  switch (to) {
    case NumberField::Cut::No: break;
    case NumberField::Cut::To32Bits: return cutTo32(number);
    case NumberField::Cut::To64Bits: return static_cast<double>(cutTo64(number));
  }
  return number;
}

}  // namespace

double DecimalCode::factorIn(Frame frame) const {
  if (factors.empty()) return 1.0;
  const auto code = static_cast<std::uint8_t>((frame[at] & mask) - zero);
  return code < factors.size() ? factors[code] : 1.0;
}

NumberField::Value NumberField::in(Frame frame) const {
  const Frame field = size == kToTheEnd ? frame.subspan(at) : frame.subspan(at, size);
  Value value = std::visit(FieldReader{field, frame.subspan(thenAt, thenSize)}, written);
  value.number = ::cut(value.number * decimals.factorIn(frame) * step, cut);
  if (negative.isIn(frame)) value.number = -value.number;
  return value;
}

ByteRow priceFrame(ByteRow head, long price, std::uint8_t zero) {
  constexpr int kPriceDigits = 5;
  for (int i = 0; i < kPriceDigits; ++i) {
    head.add(static_cast<std::uint8_t>(price % 10 + zero));
    price /= 10;
  }
  head.add(zero);
  return head;
}
