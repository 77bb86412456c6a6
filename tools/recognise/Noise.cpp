#include "Noise.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace recognise {

namespace {

constexpr std::size_t kFewest = 8;
constexpr std::uint8_t kTopBit = 0x80;
/// Of all bytes.
constexpr double kNearlyAll = 0.95;
constexpr double kManySlow = 0.35;
constexpr double kManyStrange = 0.25;
/// A bit pattern that was sampled too fast or too slow changes so seldom.
constexpr int kFewRuns = 3;

template <typename Predicate>
double shareOf(std::span<const std::uint8_t> bytes, Predicate predicate) {
  return static_cast<double>(std::ranges::count_if(bytes, predicate)) /
         static_cast<double>(bytes.size());
}

bool isText(std::uint8_t byte) {
  constexpr std::uint8_t kFirstPrintable = 0x20;
  constexpr std::uint8_t kDelete = 0x7F;
  constexpr std::uint8_t kLastFraming = 0x06;  // STX, ETX, EOT, ENQ, ACK
  const bool control = byte == '\r' || byte == '\n' || (byte > 0 && byte <= kLastFraming);
  return control || (byte >= kFirstPrintable && byte < kDelete);
}

bool isTextBelowTopBit(std::uint8_t byte) {
  return isText(static_cast<std::uint8_t>(byte & ~kTopBit));
}

/// A digit in binary or a flag, as scales send them.
bool isSmall(std::uint8_t byte) { return byte < 0x10; }

bool isEven(std::uint8_t byte) { return std::popcount(byte) % 2 == 0; }

/// Runs of equal bits on the line, from the start bit (0) to the stop bit (1), lowest bit first.
int runsOnLine(std::uint8_t byte) {
  constexpr unsigned kStopBit = 1U << 9U;
  const unsigned line = (static_cast<unsigned>(byte) << 1U) | kStopBit;
  return std::popcount((line ^ (line >> 1U)) & (kStopBit - 1)) + 1;
}

}  // namespace

Noise judgeNoise(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kFewest) return Noise::TooFew;
  if (shareOf(bytes, isText) >= kNearlyAll) return Noise::CleanText;
  if (shareOf(bytes, isTextBelowTopBit) >= kNearlyAll) {
    if (shareOf(bytes, isEven) >= kNearlyAll) return Noise::EvenParity;
    if (shareOf(bytes, std::not_fn(isEven)) >= kNearlyAll) return Noise::OddParity;
  }
  const double slow = shareOf(bytes, [](std::uint8_t b) { return runsOnLine(b) <= kFewRuns; });
  const double strange = shareOf(bytes, [](std::uint8_t b) { return !isText(b) && !isSmall(b); });
  return slow >= kManySlow || strange >= kManyStrange ? Noise::WrongSpeed : Noise::Unclear;
}

}  // namespace recognise
