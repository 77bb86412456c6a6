#include "Frame.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace sim {

namespace {

bool isBinary(Form form) { return form == Form::LowFirst || form == Form::HighFirst; }
bool hasPoint(Form form) { return form == Form::Written || form == Form::Backwards; }

/// The characters of a number that isn't binary, from left to right.
std::string textOf(const Number& number, std::int64_t value, int decimals) {
  std::string text = decimalText(std::abs(value), hasPoint(number.form) ? decimals : 0);
  const bool minus = value < 0 && number.minus != Minus::None;
  const std::size_t width = static_cast<std::size_t>(number.places);
  if (minus && number.minus == Minus::First) {
    text.insert(0, width - std::min(width, text.size() + 1), '0');
  }
  if (minus) text.insert(0, 1, '-');
  return text.insert(0, width - std::min(width, text.size()), number.fill);
}

/// Puts a frame together from left to right.
class Writer {
 public:
  explicit Writer(const Layout& layout, const Display& display)
      : negativeElsewhere_(showsSign(layout)), display_(display) {
    for (const auto& field : layout) std::visit(*this, field);
  }
  Bytes take() { return std::move(frame_); }

  void operator()(const Fixed& field) {
    frame_.insert(frame_.end(), field.bytes.begin(), field.bytes.end());
  }

  void operator()(const Mark& mark) {
    std::string_view text = mark.usual;
    const auto applies = [&](bool is, std::string_view instead) {
      if (is && !instead.empty()) text = instead;
    };
    applies(display_.tare != 0, mark.net);
    applies(!display_.stable, mark.moving);
    applies(display_.negative(), mark.negative);
    applies(display_.overload, mark.overload);
    add(text);
  }

  void operator()(const Status& status) {
    unsigned value = status.always + static_cast<unsigned>(status.decimals ? display_.decimals : 0);
    value |= display_.stable ? status.stable : status.moving;
    if (display_.negative()) value |= status.negative;
    if (display_.overload) value |= status.overload;
    frame_.push_back(static_cast<std::uint8_t>(value));
  }

  void operator()(const Number& number) {
    if (display_.overload && !number.overload.empty()) return add(number.overload);
    const auto limits = number.limits(display_.decimals, negativeElsewhere_);
    std::int64_t value = std::clamp(display_.*number.of, limits.lowest, limits.highest);
    if (isBinary(number.form)) {
      if (number.minus != Minus::Binary) value = std::abs(value);
      return addBinary(static_cast<std::uint64_t>(value), number);
    }
    const std::size_t begin = frame_.size();
    add(textOf(number, value, display_.decimals));
    reshape(number.form, begin);
    if (number.lineFeedBehind > 0) {
      frame_.insert(at(begin + number.lineFeedBehind), static_cast<std::uint8_t>(LF));
    }
  }

  void operator()(const Checksum& checksum) {
    const auto begin = at(checksum.from);
    if (checksum.kind == Checksum::Kind::ModbusCrc) return addModbusCrc(begin);
    const unsigned sum = std::accumulate(begin, frame_.end(), 0U, std::bit_xor<>());
    switch (checksum.kind) {
      case Checksum::Kind::Characters: return add(fmt::format("{:02X}", sum));
      case Checksum::Kind::Nibbles:
        return add(std::string{static_cast<char>(sum >> 4U), static_cast<char>(sum & 0x0FU)});
      default: frame_.push_back(static_cast<std::uint8_t>(sum));
    }
  }

 private:
  Bytes::iterator at(std::size_t offset) {
    return frame_.begin() + static_cast<std::ptrdiff_t>(offset);
  }
  void add(std::string_view text) { frame_.insert(frame_.end(), text.begin(), text.end()); }

  void addBinary(std::uint64_t value, const Number& number) {
    const std::size_t begin = frame_.size();
    for (int i = 0; i < number.places; ++i) {
      frame_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    if (number.form == Form::HighFirst) std::reverse(at(begin), frame_.end());
  }

  /// Turns the characters from `begin` on into what the form makes of them.
  void reshape(Form form, std::size_t begin) {
    const std::size_t point = frame_.size() - 1 - static_cast<std::size_t>(display_.decimals);
    constexpr std::uint8_t kTopBit = 0x80;
    constexpr std::string_view kShifted = ")!@#$%^&*(";
    switch (form) {
      case Form::MarkedDigits:
        if (display_.decimals > 0) frame_[point] |= kTopBit;
        break;
      case Form::ShiftedBackwards:
        if (display_.decimals > 0) {
          frame_[point] = static_cast<std::uint8_t>(kShifted[frame_[point] - std::size_t{'0'}]);
        }
        [[fallthrough]];
      case Form::Backwards:
      case Form::UnitsFirst: std::reverse(at(begin), frame_.end()); break;
      case Form::UnitsFirstNumbers:
        std::reverse(at(begin), frame_.end());
        std::for_each(at(begin), frame_.end(), [](std::uint8_t& digit) { digit &= 0x0FU; });
        break;
      case Form::Packed:
        for (std::size_t i = begin; i < frame_.size(); ++i) {
          frame_[i] =
              static_cast<std::uint8_t>((frame_[i] & 0x0FU) << 4U | (frame_[i + 1] & 0x0FU));
          frame_.erase(at(i + 1));
        }
        break;
      default: break;
    }
  }

  void addModbusCrc(Bytes::const_iterator begin) {
    constexpr unsigned kStart = 0xFFFF;
    constexpr unsigned kReflectedPolynomial = 0xA001;
    unsigned crc = kStart;
    for (auto byte = begin; byte != frame_.end(); ++byte) {
      crc ^= *byte;
      for (int bit = 0; bit < 8; ++bit) {
        crc = (crc & 1U) != 0 ? (crc >> 1U) ^ kReflectedPolynomial : crc >> 1U;
      }
    }
    for (const unsigned byte : {crc & 0xFFU, crc >> 8U}) {
      frame_.push_back(static_cast<std::uint8_t>(byte));
    }
  }

  bool negativeElsewhere_;
  Display display_;
  Bytes frame_;
};

/// Whether a field of the layout tells something by one of the members of marks or statuses.
bool tells(const Layout& layout, std::string_view Mark::*text,
           std::initializer_list<unsigned Status::*> bits) {
  return std::ranges::any_of(layout, [&](const auto& field) {
    if (const auto* mark = std::get_if<Mark>(&field)) return !(mark->*text).empty();
    const auto* status = std::get_if<Status>(&field);
    return status != nullptr &&
           std::ranges::any_of(bits, [&](unsigned Status::*bit) { return (status->*bit) != 0; });
  });
}

}  // namespace

std::int64_t powerOfTen(int exponent) {
  std::int64_t power = 1;
  for (int i = 0; i < exponent; ++i) power *= 10;
  return power;
}

std::string decimalText(std::int64_t number, int decimals) {
  if (decimals == 0) return std::to_string(number);
  const std::int64_t one = powerOfTen(decimals);
  const std::int64_t magnitude = std::abs(number);
  return fmt::format("{}{}.{:0{}}", number < 0 ? "-" : "", magnitude / one, magnitude % one,
                     decimals);
}

Number::Limits Number::limits(int decimals, bool negative) const {
  if (isBinary(form)) {
    const std::int64_t range = std::int64_t{1} << (8 * places - (minus == Minus::Binary ? 1 : 0));
    if (minus == Minus::Binary) return {-range, range - 1};
    return {negative ? 1 - range : 0, range - 1};
  }
  const int digits = places - (hasPoint(form) && decimals > 0 ? 1 : 0);
  const std::int64_t highest = powerOfTen(digits) - 1;
  if (negative) return {-highest, highest};
  return {minus == Minus::None ? 0 : 1 - powerOfTen(digits - 1), highest};
}

Bytes frameOf(const Layout& layout, const Display& display) {
  return Writer(layout, display).take();
}

const Number* numberIn(const Layout& layout, Quantity quantity) {
  for (const auto& field : layout) {
    const auto* number = std::get_if<Number>(&field);
    if (number != nullptr && number->of == quantity) return number;
  }
  return nullptr;
}

bool showsSign(const Layout& layout) { return tells(layout, &Mark::negative, {&Status::negative}); }

bool showsStability(const Layout& layout) {
  return tells(layout, &Mark::moving, {&Status::stable, &Status::moving});
}

bool showsOverload(const Layout& layout) {
  const Number* weight = numberIn(layout, &Display::weight);
  return (weight != nullptr && !weight->overload.empty()) ||
         tells(layout, &Mark::overload, {&Status::overload});
}

}  // namespace sim
