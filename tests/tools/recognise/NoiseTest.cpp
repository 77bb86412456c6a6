#include <vector>

#include <gtest/gtest.h>

#include "Noise.h"

namespace recognise {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes withParity(std::string_view text, bool even) {
  Bytes bytes;
  for (const char c : text) {
    const auto own = static_cast<std::uint8_t>(c);
    const bool odd = __builtin_popcount(own) % 2 != 0;
    bytes.push_back(odd == even ? static_cast<std::uint8_t>(own | 0x80U) : own);
  }
  return bytes;
}

/// What a receiver at `receiver` baud makes of 8N1 bytes sent at `sender` baud without gaps.
Bytes sampled(std::string_view text, double sender, double receiver) {
  std::vector<bool> line(4, true);
  for (const char c : text) {
    line.push_back(false);
    for (unsigned bit = 0; bit < 8; ++bit)
      line.push_back((static_cast<unsigned>(c) >> bit & 1U) != 0);
    line.push_back(true);
  }
  const auto level = [&](double bits) {
    const auto index = static_cast<std::size_t>(bits * sender / receiver);
    return index >= line.size() || line[index];
  };
  Bytes bytes;
  const double end = static_cast<double>(line.size()) * receiver / sender;
  for (double at = 0; at < end;) {
    if (level(at)) {
      at += 0.1;
      continue;
    }
    unsigned byte = 0;
    for (unsigned bit = 0; bit < 8; ++bit) byte |= (level(at + 1.5 + bit) ? 1U : 0U) << bit;
    bytes.push_back(static_cast<std::uint8_t>(byte));
    at += 9.5;
  }
  return bytes;
}

TEST(JudgeNoise, TellsWhatIsWrongWithTheLine) {
  const std::string text = "ST,GS,+  1.250 kg\r\nUS,GS,-  0.455 kg\r\n";
  const std::string twice = text + text;
  EXPECT_EQ(judgeNoise(Bytes(3, 0x30)), Noise::TooFew);
  EXPECT_EQ(judgeNoise(Bytes(text.begin(), text.end())), Noise::CleanText);
  EXPECT_EQ(judgeNoise(withParity(text, true)), Noise::EvenParity);
  EXPECT_EQ(judgeNoise(withParity(text, false)), Noise::OddParity);
  EXPECT_EQ(judgeNoise(Bytes{0, 0, 0, 1, 2, 5, 0, 0, 5, 2, 1, 0, 9, 8, 7, 3, 2, 4}),
            Noise::Unclear);
  for (const double other : {1200.0, 2400.0, 4800.0, 19200.0, 38400.0, 57600.0}) {
    EXPECT_EQ(judgeNoise(sampled(twice, 9600.0, other)), Noise::WrongSpeed) << other;
  }
}

}  // namespace
}  // namespace recognise
