#include "Numbers.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

constexpr std::size_t kMaxCharacters = 50;

/// Digits gathered for `atof`, which wants them NUL-terminated.
class Digits {
 public:
  void add(char digit) { text_[count_++] = digit; }
  bool empty() const { return count_ == 0; }
  std::size_t count() const { return count_; }
  double value() const { return std::atof(text_.data()); }

 private:
  std::array<char, kMaxCharacters + 1> text_ = {};
  std::size_t count_ = 0;
};

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool isSeparator(char c) { return c == '.' || c == ','; }

template <typename Whole>
Whole cutTo(double value) {
  // Both limits are powers of two and so exact as doubles; the comparison also refuses a NaN.
  constexpr double kLowest = static_cast<double>(std::numeric_limits<Whole>::min());
  if (!(value >= kLowest && value < -kLowest)) return std::numeric_limits<Whole>::min();
  return static_cast<Whole>(value);
}

}  // namespace

double iGatof(std::string_view text) {
  Digits whole;
  Digits fraction;
  bool negative = false;
  bool separated = false;
  for (const char c : text.substr(0, kMaxCharacters)) {
    if (isDigit(c)) {
      (separated ? fraction : whole).add(c);
    } else if (isSeparator(c)) {
      if (separated) break;
      separated = true;
    } else if (!whole.empty()) {
      break;
    } else if (c == '-') {
      negative = true;
    } else if (c != ' ') {
      break;
    }
  }

  double result = whole.empty() ? 0.0 : whole.value();
  if (!fraction.empty()) {
    double power = 1.0;
    for (std::size_t i = 0; i < fraction.count(); ++i) power *= 10.0;
    result += fraction.value() / power;
  }
  return negative ? -result : result;
}

double iGatof(const char* text) {
  if (text == nullptr) return 0.0;
  return iGatof(std::string_view(text, strnlen(text, kMaxCharacters)));
}

std::int64_t cutTo64(double value) { return cutTo<std::int64_t>(value); }
std::int32_t cutTo32(double value) { return cutTo<std::int32_t>(value); }
