#include <string>

#include <gtest/gtest.h>

#include "HexBytes.h"
#include "Scale.h"

namespace sim {
namespace {

using namespace std::string_literals;

/// How many answers a scale gives to each piece of what it hears.
struct Hearing {
  const char* what;
  int model;
  std::vector<std::string> pieces;
  std::vector<std::size_t> answers;
};

TEST(Scale, FindsItsCommandsInWhateverComes) {
  const Hearing rows[] = {
      {"in pieces", 13, {"\5", "\x11"}, {0, 1}},
      {"behind stray bytes", 13, {"xyz\x11\5\5\x11"}, {1}},
      {"broken, then whole", 13, {"\5q\x11", "\5\x11\5\x11"}, {0, 2}},
      {"behind its own beginning", 0, {"\0\0\0\0\3"s}, {1}},
      {"with a payload that comes late", 8, {"R0", "1", "2"}, {0, 0, 1}},
      // The end of another scale's request is no line of its own.
      {"a line begins where a line does", 35, {"SI\r\n", "I\r\n"}, {0, 1}},
  };
  for (const Hearing& row : rows) {
    Scale scale(*findScaleModel(row.model));
    for (std::size_t i = 0; i < row.pieces.size(); ++i) {
      EXPECT_EQ(scale.receive(fixture::text(row.pieces[i])).size(), row.answers[i])
          << row.what << ", piece " << i;
    }
  }
  Scale scale(*findScaleModel(13));
  scale.receive(fixture::text("\5"));
  scale.forgetPartOfRequest();
  EXPECT_TRUE(scale.receive(fixture::text("\x11")).empty());
}

TEST(Scale, TaresAndZeroesWhatLiesOnThePan) {
  Scale scale(*findScaleModel(8));
  const auto after = [&](double weight, const char* key) {
    scale.state().weight = weight;
    scale.receive(fixture::text(key));
    return scale.expectedReading().weight;
  };
  EXPECT_DOUBLE_EQ(after(2.0, "Z"), 0);
  EXPECT_DOUBLE_EQ(after(2.5, "T"), 0);
  EXPECT_DOUBLE_EQ(after(3.75, ""), 1250);
  EXPECT_DOUBLE_EQ(after(2.0, ""), -500);
  EXPECT_DOUBLE_EQ(after(2.0, "Z"), 0);
}

}  // namespace
}  // namespace sim
