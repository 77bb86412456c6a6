#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeScale.h"
#include "ScalesWrapper.h"

namespace {

using fixture::FakeScale;
using fixture::makeFake;
using testing::ElementsAre;

class ScalesWrapper : public testing::Test {
 protected:
  ScalesWrapper() { world_ = {}; }

  int add(const char* id, const char* port = "port", int model = 1) {
    return scales_.AddScalesObject(port, 9600, model, 0, id, 0, 1.0);
  }
  bool knows(const std::string& id) { return scales_.GetScalesObject(id.c_str()) != nullptr; }
  std::vector<std::string> takeNotes() { return std::exchange(world_.notes, {}); }

  fixture::FakeWorld& world_ = FakeScale::world;
  CScalesWrapper scales_{makeFake};
};

TEST_F(ScalesWrapper, SetsAScaleUpInAFixedOrder) {
  EXPECT_EQ(scales_.AddScalesObject("/dev/x", 9600, 1, 0, "7", 1, 0.5), 0);
  EXPECT_THAT(takeNotes(), ElementsAre("folder ", "id 7", "coeff 0.500000", "leave 1",
                                       "serial /dev/x 9600", "close"));
  EXPECT_EQ(scales_.AddScalesObject("host", 20108, 1, 2, "8", 0, 1.0), 0);
  EXPECT_THAT(takeNotes(), ElementsAre("folder ", "id 8", "coeff 1.000000", "leave 0",
                                       "network host 20108", "close", "close"));
}

TEST_F(ScalesWrapper, KeepsAScaleWhoseTestFailedAndNothingOfOneThatItCantMake) {
  EXPECT_EQ(scales_.AddScalesObject(nullptr, 9600, 1, 0, "7", 0, 1.0), 1);
  for (const int model : {-1, 0, 5, 42}) EXPECT_EQ(add("7", "port", model), 5);
  EXPECT_EQ(scales_.GetLastError(), 5);
  EXPECT_FALSE(knows("7"));
  EXPECT_EQ(world_.alive, 0);
  world_.openCode = 1;
  EXPECT_EQ(add("7"), 1);
  EXPECT_EQ(scales_.GetLastError(), 1);
  EXPECT_TRUE(knows("7"));
  EXPECT_TRUE(knows("port"));
}

TEST_F(ScalesWrapper, ReplacesAKnownId) {
  add("7", "one");
  add("8", "7");  // answers to "7" by its port
  add("9", "nine");
  takeNotes();
  EXPECT_EQ(add("7", "new"), 0);
  EXPECT_EQ(world_.alive, 2);
  EXPECT_FALSE(knows("8"));
  EXPECT_TRUE(knows("new"));
  EXPECT_TRUE(knows("9"));
  // A known id goes also when nothing takes its place.
  EXPECT_EQ(add("7", "port", 5), 5);
  EXPECT_FALSE(knows("7"));
}

TEST_F(ScalesWrapper, WithoutAnIdThePortTakesItsPart) {
  add("7", "port");
  EXPECT_EQ(scales_.OpenComPort("port", 9600, 1, 0), 0);
  EXPECT_EQ(world_.alive, 1);
  EXPECT_FALSE(knows("7"));
  EXPECT_TRUE(knows("port"));
  EXPECT_TRUE(knows(""));
  EXPECT_EQ(scales_.GetScalesObject(nullptr), nullptr);
}

TEST_F(ScalesWrapper, HoldsAHundredScales) {
  scales_.Set_param_mp_model(1);
  std::vector<std::string> ids;
  for (int i = 0; i < 101; ++i) {
    CkString id;
    EXPECT_EQ(scales_.CreateScalesObject(id), 0);
    ids.emplace_back(id.getUtf8());
    EXPECT_THAT(ids.back(), testing::MatchesRegex("[0-9A-Fa-f]*"));
    EXPECT_EQ(ids.back().size(), 20U);
    EXPECT_EQ(scales_.GetLastError(), i < 100 ? 0 : 1099);
  }
  EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), 101U);
  EXPECT_FALSE(knows(ids.back()));
  EXPECT_EQ(world_.alive, 100);
  // A full table refuses before it looks at the model, and still replaces.
  EXPECT_EQ(add("new", "port", 5), 1099);
  EXPECT_EQ(add(ids.front().c_str()), 0);
  EXPECT_EQ(scales_.CloseComPort(ids[50].c_str()), 0);
  EXPECT_EQ(add("new"), 0);
  EXPECT_EQ(world_.alive, 100);
  scales_.CloseAllComPorts();
  EXPECT_EQ(scales_.GetLastError(), 1099);
  EXPECT_EQ(world_.alive, 0);
}

TEST_F(ScalesWrapper, ForgetsEveryScaleThatAnswers) {
  add("1", "port");
  add("2", "port");
  add("3", "other");
  takeNotes();
  EXPECT_EQ(scales_.CloseComPort("port"), 0);
  EXPECT_THAT(takeNotes(), ElementsAre("close", "close"));
  EXPECT_EQ(world_.alive, 1);
  EXPECT_EQ(scales_.pressT("1", 0.0), 8);
  EXPECT_EQ(scales_.CloseComPort("unknown"), 0);
  EXPECT_EQ(scales_.CloseComPort(nullptr), 0);
  EXPECT_EQ(scales_.GetLastError(), 0);
  EXPECT_EQ(world_.alive, 1);
}

TEST_F(ScalesWrapper, MultipliesTheWeightWhateverTheCode) {
  scales_.AddScalesObject("port", 9600, 1, 0, "7", 0, 0.5);
  using Values = std::tuple<double, double, double, long>;
  constexpr Values kBefore = {9.0, 8.0, 7.0, 6};
  constexpr Values kRead = {1.25, 10.0, 25.0, 1};
  const struct {
    const char* id;
    int code;
    Values expected;
  } rows[] = {{"7", 0, kRead}, {"7", 3, kRead}, {"7", 7, kRead}, {"8", 8, kBefore}};
  for (const auto& row : rows) {
    world_.code = row.code;
    auto [weight, price, cost, stable] = kBefore;
    EXPECT_EQ(scales_.getScalesInfo(row.id, weight, price, cost, stable), row.code);
    EXPECT_EQ(scales_.GetLastError(), row.code);
    EXPECT_EQ(Values(weight, price, cost, stable), row.expected);
  }
}

TEST_F(ScalesWrapper, HandsCommandsOn) {
  add("7");
  takeNotes();
  EXPECT_EQ(scales_.setPrice("7", 1250), 0);
  EXPECT_EQ(scales_.pressT("7", 1.5), 0);
  EXPECT_THAT(takeNotes(), ElementsAre("price 1250", "tare 1.500000"));
  world_.code = 5;
  EXPECT_EQ(scales_.setPrice("7", 0), 5);
  EXPECT_EQ(scales_.pressT("7", 0.0), 5);
  EXPECT_EQ(scales_.GetLastError(), 5);
  // A negative price is refused before anybody looks for the scale.
  EXPECT_EQ(scales_.setPrice("unknown", -1), 4);
  EXPECT_EQ(scales_.setPrice("unknown", 1), 8);
  EXPECT_EQ(scales_.pressT("unknown", 0.0), 8);
}

TEST_F(ScalesWrapper, MakesScalesFromItsParameters) {
  const auto opened = [&] {
    CkString id;
    scales_.CreateScalesObject(id);
    std::vector<std::string> notes = takeNotes();
    return notes.size() < 5 ? "code " + std::to_string(scales_.GetLastError())
                            : notes[2] + ", " + notes[3] + ", " + notes[4];
  };
  EXPECT_EQ(opened(), "code 5");  // model 0 until another is set
  EXPECT_EQ(scales_.Set_param_mp_model(1), 0);
  EXPECT_EQ(opened(), "coeff 1.000000, leave 0, serial  0");
  EXPECT_EQ(scales_.Set_param_mp_cport(CkString("/dev/x")), 0);
  EXPECT_EQ(scales_.Set_param_mp_cbaudrate(9600), 0);
  EXPECT_EQ(scales_.Set_param_mp_ehost(CkString("host")), 0);
  EXPECT_EQ(scales_.Set_param_mp_eport(20108), 0);
  EXPECT_EQ(scales_.Set_param_mp_coeff(CkString("0,5")), 0);
  EXPECT_EQ(scales_.Set_param_mp_conleave(3), 0);
  EXPECT_EQ(opened(), "coeff 0.500000, leave 3, serial /dev/x 9600");
  EXPECT_EQ(scales_.Set_param_mp_conntypel(-1), 0);
  EXPECT_EQ(opened(), "coeff 0.500000, leave 3, network host 20108");
  EXPECT_EQ(scales_.GetLastError(), 0);
}

}  // namespace
