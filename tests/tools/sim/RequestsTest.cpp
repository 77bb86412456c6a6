#include <string>

#include <gtest/gtest.h>

#include "Scale.h"

namespace sim {
namespace {

using namespace std::string_literals;

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

std::vector<Scale::Answer> feed(Scale& scale, const std::string& text) {
  return scale.receive(bytesOf(text));
}

struct RequestCase {
  int model;
  Action action;
  std::string bytes;
  double weight;
  double price;
  std::string reply;
};

/// What the component sends to a scale with 1.25 kg on it, what then stands on the display, and
/// what the scale says to it.
const RequestCase kRequests[] = {
    {0, Action::Tare, "\0\0\1"s, 0, 12.5, ""},
    {0, Action::Price, "\0\0\2\6\5\4\3\2\0"s, 1.25, 234.56, ""},
    {1, Action::Tare, "<\0T>"s, 0, 0, ""},
    {2, Action::Tare, "ST\r\n", 0, 0, ""},
    {3, Action::Tare, "S01T\r\n", 0, 0, ""},
    {4, Action::Tare, "<\0T>"s, 0, 0, ""},
    {8, Action::Tare, "T", 0, 0, ""},
    {8, Action::Zero, "Z", 0, 0, ""},
    {9, Action::Tare, "ST\r\n", 0, 0, ""},
    {16, Action::Zero, "\2E\3", 0, 0, ""},
    {21, Action::Tare, "\0\0\1"s, 0, 12.5, ""},
    {21, Action::Price, "\0\0\2\0\5\2\1\0\0\0\0\2\0\5\2\1\0\0"s, 1.25, 12.5, ""},
    {24, Action::Tare, "KTARE\r\n", 0, 0, ""},
    {24, Action::Setup, "STREAM=OFF\r\n", 1.25, 0, ""},
    {26, Action::Tare, "S1;TAR;", 0, 0, ""},
    {28, Action::Tare, "\x2A\1", 0, 12.5, ""},
    {28, Action::Price, "\x2A\2\7\6\5\4\3\0"s, 1.25, 345.67, ""},
    {30, Action::Tare, "\0\0\1"s, 0, 12.5, ""},
    {30, Action::Price,
     "\0\0\2"
     "765430"s,
     1.25, 345.67, ""},
    {35, Action::Tare, "I\r\n", 0, 0, "I A\r\n"},
    {37, Action::Tare, "T\r", 0, 0, ""},
    {40, Action::Zero, "\1\6\0\1\0\x17\x98\4"s, 0, 0, "\1\6\0\1\0\x17\x98\4"s},
    {41, Action::Tare, "\1\6\0\7\xA5\x0B\2\x9C"s, 0, 0, "\1\6\0\7\xA5\x0B\2\x9C"s},
};

TEST(Commands, ChangeWhatTheScaleShows) {
  for (const RequestCase& c : kRequests) {
    SCOPED_TRACE("model " + std::to_string(c.model));
    const ScaleModel& model = *findScaleModel(c.model);
    ScaleState state = model.usualState();
    state.weight = 1.25;
    Scale scale(model, state);
    const auto answers = feed(scale, c.bytes);
    EXPECT_GE(scale.count(c.action), 1);
    const ScaleState& after = scale.state();
    EXPECT_DOUBLE_EQ(after.weight - after.zero - after.tare, c.weight);
    EXPECT_DOUBLE_EQ(after.price, c.price);
    EXPECT_EQ(answers.empty() ? Bytes() : answers.front().bytes, bytesOf(c.reply));
  }
}

struct WeighCase {
  int model;
  std::string bytes;
};

const WeighCase kWeighs[] = {
    {0, "\0\0\3"s},
    {1, "<\0!>"s},
    {2, "G1\r\n"},
    {3, "G01W\r\n"},
    {4, "<\0!>"s},
    {7, "\x02@D\0\4\3"s},
    {8, "Rw0 "},
    {9, "SI\r\n"},
    {10, "E"},
    {11, "20050027:\r\n"},
    {12,
     "\x02"
     "AD05\3"},
    {13, "\5\x11"},
    {14, "\1\x89"},
    {16, "\2B\3"},
    {17, "\0\0\3\0\0\0\0\0"s},
    {21, "\0\0\3\0\0\0\0\0"s},
    {23, "\5"},
    {24, "XN\r\n"},
    {26, "S1;MSV?;"},
    {27, "\5\x11"},
    {28, "\x2A\3"},
    {30, "\0\0\3"s},
    {35, "SUI\r\n"},
    {37, "W\r"},
    {38,
     "\x02"
     "AD05\3"},
    {40, "\1\3\0\3\0\4\xB4\x09"s},
    {41, "\1\3\0\2\0\3\xA4\x0B"s},
};

TEST(Requests, AreAnsweredOnceWhole) {
  for (const WeighCase& c : kWeighs) {
    SCOPED_TRACE("model " + std::to_string(c.model));
    Scale scale(*findScaleModel(c.model));
    for (std::size_t i = 0; i + 1 < c.bytes.size(); ++i) {
      EXPECT_TRUE(feed(scale, c.bytes.substr(i, 1)).empty()) << "after byte " << i;
    }
    const auto answers = feed(scale, c.bytes.substr(c.bytes.size() - 1));
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers.front().bytes, scale.frame());
  }
}

TEST(Requests, AreFoundBehindStrayBytesAndBehindABrokenRequest) {
  Scale scale(*findScaleModel(13));
  EXPECT_EQ(feed(scale, "xyz\x11\5\5\x11").size(), 1U);
  EXPECT_EQ(feed(scale, "\5q\x11").size(), 0U);
  EXPECT_EQ(feed(scale, "\5\x11\5\x11").size(), 2U);
  EXPECT_EQ(scale.count(Action::Weigh), 3);

  Scale zeros(*findScaleModel(0));
  EXPECT_EQ(feed(zeros, "\0\0\0\0\3"s).size(), 1U);
}

/// The end of another scale's request is no line of its own.
TEST(Requests, ThatAreLinesBeginWhereALineDoes) {
  Scale scale(*findScaleModel(35));
  feed(scale, "SI\r\n");
  EXPECT_EQ(scale.count(Action::Tare), 0);
  feed(scale, "I\r\n");
  EXPECT_EQ(scale.count(Action::Tare), 1);
}

TEST(Requests, AreForgottenInPartOnDemand) {
  Scale scale(*findScaleModel(13));
  feed(scale, "\5");
  scale.forgetPartOfRequest();
  EXPECT_TRUE(feed(scale, "\x11").empty());
}

TEST(Keys, TareAndZeroTakeWhatLiesOnThePan) {
  Scale scale(*findScaleModel(8));
  scale.state().weight = 2.0;
  feed(scale, "Z");
  scale.state().weight = 2.5;
  feed(scale, "T");
  scale.state().weight = 3.75;
  EXPECT_DOUBLE_EQ(scale.expectedReading().weight, 1250);
  scale.state().weight = 2.0;
  EXPECT_DOUBLE_EQ(scale.expectedReading().weight, -500);
  feed(scale, "Z");
  EXPECT_DOUBLE_EQ(scale.expectedReading().weight, 0);
}

}  // namespace
}  // namespace sim
