#include <cmath>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "HexBytes.h"
#include "ModelsUnderTest.h"
#include "SimulatedScale.h"

// Every driver against its simulated scale, which knows nothing of the drivers: what is on the pan
// must come out at the other end of the line.

namespace {

using Trip = std::tuple<int, sim::Transport>;

class RoundTrip : public testing::TestWithParam<Trip> {
 protected:
  void SetUp() override {
    driver_->SetLeaveConn(1);
    ASSERT_EQ(isTcp_ ? driver_->SetLanPort("127.0.0.1", scale_.port(), nullptr)
                     : driver_->SetComPort(scale_.devicePath().c_str(), 9600, nullptr),
              kSuccess);
  }

  bool reachable() const { return !isTcp_ || scale_.model().worksOverTcp(); }

  /// Polls, and compares with what the scale shows.
  void poll(const char* what) {
    SCOPED_TRACE(what);
    Outputs reading;
    long stable = 0;
    const int code =
        driver_->getScalesInfo(&reading.weight, &reading.price, &reading.cost, &stable);
    const sim::Reading expected = scale_.expectedReading();
    SCOPED_TRACE("frame " + fixture::hex(scale_.frame()));
    if (!reachable()) {
      EXPECT_EQ(code, kNoAnswer);
      return;
    }
    EXPECT_EQ(code, expected.code);
    EXPECT_DOUBLE_EQ(reading.weight, expected.weight);
    EXPECT_DOUBLE_EQ(reading.price, expected.price);
    EXPECT_DOUBLE_EQ(reading.cost, expected.cost);
    EXPECT_EQ(stable != 0, expected.stable);
  }

  void pollAt(const char* what, double weight) {
    scale_.setWeight(weight);
    poll(what);
  }

  /// The heaviest or lightest that the scale's frame can say, in kilograms.
  double limit(bool highest) const {
    const int decimals = scale_.model().usualState().decimals;
    const auto limits = scale_.model().limits(decimals);
    return static_cast<double>(highest ? limits.highest : limits.lowest) / std::pow(10.0, decimals);
  }

  const bool isTcp_ = std::get<sim::Transport>(GetParam()) == sim::Transport::Tcp;
  sim::SimulatedScale scale_{std::get<int>(GetParam()), std::get<sim::Transport>(GetParam())};
  std::unique_ptr<IScalesObject> driver_ = createScales(std::get<int>(GetParam()));
};

TEST_P(RoundTrip, Weights) {
  poll("as it stands there");
  if (!reachable()) return;
  pollAt("zero", 0.0);
  pollAt("negative", -0.75);
  pollAt("the largest", limit(true));
  pollAt("the smallest", limit(false));
  scale_.change([](sim::ScaleState& state) {
    state.weight = 2.5;
    state.stable = false;
  });
  poll("moving");
  if (scale_.model().showsOverload()) {
    scale_.change([](sim::ScaleState& state) { state.overload = true; });
    poll("overload");
    scale_.change([](sim::ScaleState& state) { state.overload = false; });
  }
  if (!scale_.model().hasStartByte()) return;
  scale_.setFaults({.garbage = 3, .frames = 1});
  pollAt("garbage before the frame", 1.5);
}

/// Every command that the scale knows, as the driver sends it.
TEST_P(RoundTrip, Commands) {
  for (const sim::Command& command : scale_.model().commands) {
    int code = kSuccess;
    switch (command.action) {
      case sim::Action::Tare: code = driver_->pressT(0.0); break;
      case sim::Action::Zero: code = driver_->pressNull(); break;
      case sim::Action::Price: code = driver_->setPrice(1375); break;
      case sim::Action::Weigh:
      case sim::Action::Setup: continue;
    }
    EXPECT_EQ(code, kSuccess);
    EXPECT_TRUE(scale_.waitForCount(command.action, 1)) << static_cast<int>(command.action);
    if (command.action == sim::Action::Price) {
      EXPECT_DOUBLE_EQ(scale_.state().price, 13.75);
    }
  }
}

std::string nameOfTrip(const testing::TestParamInfo<Trip>& test) {
  return std::to_string(std::get<int>(test.param)) +
         (std::get<sim::Transport>(test.param) == sim::Transport::Tcp ? "Tcp" : "Pty");
}
INSTANTIATE_TEST_SUITE_P(Model, RoundTrip,
                         testing::Combine(testing::ValuesIn(modelsWithSheet()),
                                          testing::Values(sim::Transport::Pty,
                                                          sim::Transport::Tcp)),
                         nameOfTrip);

}  // namespace
