#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Noise.h"
#include "SerialLine.h"

namespace recognise {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// What a host at `speed` baud, 8N1, makes of a text that a scale sends.
Bytes heard(std::string_view text, const sim::LineEnd& scale, int speed = 9600) {
  return sim::received(Bytes(text.begin(), text.end()), scale, {speed, {}},
                       sim::Receiver::TakesAll);
}

TEST(JudgeNoise, TellsWhatIsWrongWithTheLine) {
  const std::string text = "ST,GS,+  1.250 kg\r\nUS,GS,-  0.455 kg\r\n";
  const std::string twice = text + text;
  EXPECT_EQ(judgeNoise(Bytes(3, 0x30)), Noise::TooFew);
  EXPECT_EQ(judgeNoise(Bytes(text.begin(), text.end())), Noise::CleanText);
  const Bytes even = heard(text, {9600, {.dataBits = 7, .parity = sim::Parity::Even}});
  EXPECT_EQ(judgeNoise(even), Noise::EvenParity);
  // The other parity turns over the one bit that says it.
  Bytes odd = even;
  for (std::uint8_t& byte : odd) byte ^= 0x80U;
  EXPECT_EQ(judgeNoise(odd), Noise::OddParity);
  EXPECT_EQ(judgeNoise(Bytes{0, 0, 0, 1, 2, 5, 0, 0, 5, 2, 1, 0, 9, 8, 7, 3, 2, 4}),
            Noise::Unclear);
  for (const int other : {1200, 2400, 4800, 19200, 38400, 57600}) {
    EXPECT_EQ(judgeNoise(heard(twice, {9600, {}}, other)), Noise::WrongSpeed) << other;
  }
}

}  // namespace
}  // namespace recognise
