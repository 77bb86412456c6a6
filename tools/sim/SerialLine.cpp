#include "SerialLine.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <vector>

namespace sim {

namespace {

bool alike(const LineEnd& a, const LineEnd& b) {
  return a.bitsPerSecond == b.bitsPerSecond && a.settings.dataBits == b.settings.dataBits &&
         a.settings.parity == b.settings.parity;
}

bool evenParityOf(std::uint8_t byte) { return std::popcount(byte) % 2 != 0; }

/// The levels of the line, one for each bit of the sender; the line rests high.
class Levels {
 public:
  Levels(std::span<const std::uint8_t> bytes, const Framing& settings) {
    for (const std::uint8_t byte : bytes) {
      levels_.push_back(false);
      for (int bit = 0; bit < settings.dataBits; ++bit) levels_.push_back((byte >> bit & 1) != 0);
      if (settings.parity == Parity::Even) levels_.push_back(evenParityOf(byte));
      for (int bit = 0; bit < settings.stopBits; ++bit) levels_.push_back(true);
    }
  }

  /// At a time counted in the sender's bits.
  bool at(double time) const {
    const auto index = static_cast<std::size_t>(time);
    return index >= levels_.size() || levels_[index];
  }
  double length() const { return static_cast<double>(levels_.size()); }
  /// When the line next has that level, or its end.
  double next(bool high, double time) const {
    auto index = static_cast<std::size_t>(time);
    while (index < levels_.size() && levels_[index] != high) ++index;
    return std::max(time, static_cast<double>(index));
  }

 private:
  std::vector<bool> levels_;
};

}  // namespace

Bytes received(std::span<const std::uint8_t> bytes, const LineEnd& sender, const LineEnd& receiver,
               Receiver manner) {
  if (alike(sender, receiver)) return {bytes.begin(), bytes.end()};
  const Levels line(bytes, sender.settings);
  const double bit = static_cast<double>(sender.bitsPerSecond) / receiver.bitsPerSecond;
  constexpr double kMiddleOfFirst = 1.5;
  Bytes heard;
  for (double start = line.next(false, 0); start < line.length();) {
    double sample = start + kMiddleOfFirst * bit;
    unsigned byte = 0;
    for (int i = 0; i < receiver.settings.dataBits; ++i) {
      byte |= (line.at(sample) ? 1U : 0U) << static_cast<unsigned>(i);
      sample += bit;
    }
    bool good = true;
    if (receiver.settings.parity == Parity::Even) {
      good = line.at(sample) == evenParityOf(static_cast<std::uint8_t>(byte));
      sample += bit;
    }
    good = good && line.at(sample);
    if (good || manner == Receiver::TakesAll) heard.push_back(static_cast<std::uint8_t>(byte));
    // A line that is low where it should rest ends no byte before it is high again.
    start = line.next(false, line.next(true, sample));
  }
  return heard;
}

}  // namespace sim
