#include <map>
#include <string>

#include <gtest/gtest.h>

#include "DataFile.h"
#include "HexBytes.h"
#include "Scale.h"

namespace sim {
namespace {

using namespace std::string_literals;

std::vector<Scale::Answer> feed(Scale& scale, const std::string& text) {
  return scale.receive(fixture::text(text));
}

/// To a request for the weight the frame comes once the last byte is there, and not before.
void expectFrameFor(Scale& scale, const std::string& request) {
  EXPECT_TRUE(feed(scale, request.substr(0, request.size() - 1)).empty());
  const auto answers = feed(scale, request.substr(request.size() - 1));
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers.front().bytes, scale.frame());
}

void expectDeed(Scale& scale, const std::string& command, Action action,
                std::map<std::string, std::string> after) {
  const auto answers = feed(scale, command);
  EXPECT_GE(scale.count(action), 1);
  const ScaleState& state = scale.state();
  EXPECT_DOUBLE_EQ(state.weight - state.zero - state.tare, std::stod(after["weight"]));
  EXPECT_DOUBLE_EQ(state.price, std::stod("0" + after["price"]));
  EXPECT_EQ(answers.empty() ? Bytes() : answers.front().bytes, fixture::bytes(after["reply"]));
}

TEST(Requests, AreAnsweredOrChangeWhatTheScaleShows) {
  static const std::map<std::string, Action> kDeeds = {{"tare", Action::Tare},
                                                       {"zero", Action::Zero},
                                                       {"price", Action::Price},
                                                       {"setup", Action::Setup}};
  for (const fixture::DataRow& row : fixture::dataRows("sim_requests.txt")) {
    SCOPED_TRACE(row.heading + ", " + row.left);
    const ScaleModel& model = *findScaleModel(std::stoi(row.heading.substr(row.heading.find(' '))));
    ScaleState state = model.usualState();
    state.weight = 1.25;
    Scale scale(model, state);
    const std::string bytes = fixture::characters(row.left);
    if (row.right == "weigh") {
      expectFrameFor(scale, bytes);
    } else {
      const std::size_t colon = row.right.find(": ");
      expectDeed(scale, bytes, kDeeds.at(row.right.substr(0, colon)),
                 fixture::dataFields(row.right.substr(colon + 2)));
    }
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
