// What must hold for the description of every model.

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "ScaleModel.h"

namespace sim {

static void PrintTo(const ScaleModel& model, std::ostream* out) {
  *out << "model " << model.number;
}

namespace {

class Models : public testing::TestWithParam<ScaleModel> {};

std::vector<Bytes> framesAtTheLimits(const ScaleModel& model) {
  std::vector<Bytes> frames;
  for (int decimals = model.decimals.fewest; decimals <= model.decimals.most; ++decimals) {
    const auto limits = model.limits(decimals);
    const auto power = static_cast<double>(powerOfTen(decimals));
    ScaleState state = model.usualState();
    state.decimals = decimals;
    for (const std::int64_t units : {limits.lowest, std::int64_t{0}, limits.highest}) {
      state.weight = static_cast<double>(units) / power;
      EXPECT_EQ(model.display(state).weight, units);
      frames.push_back(model.frame(state));
    }
  }
  return frames;
}

TEST_P(Models, KeepTheLengthOfTheirFrameUpToTheLimits) {
  const ScaleModel& model = GetParam();
  const std::size_t length = model.frame(model.usualState()).size();
  for (const Bytes& frame : framesAtTheLimits(model)) EXPECT_EQ(frame.size(), length);
}

TEST_P(Models, StayWithinTheFieldWhateverTheLoad) {
  const ScaleModel& model = GetParam();
  const std::size_t length = model.frame(model.usualState()).size();
  for (const double load : {1e300, -1e300, 1e6, std::numeric_limits<double>::quiet_NaN()}) {
    ScaleState state = model.usualState();
    state.weight = load;
    state.price = load;
    state.tare = -load;
    EXPECT_EQ(model.frame(state).size(), length) << load;
  }
}

TEST_P(Models, EitherStreamOrAnswerOneRequest) {
  const ScaleModel& model = GetParam();
  const auto requests = std::count_if(model.commands.begin(), model.commands.end(),
                                      [](const Command& c) { return c.action == Action::Weigh; });
  EXPECT_EQ(requests, model.streams() ? 0 : 1);
}

TEST_P(Models, HaveNoCommandThatBeginsAnother) {
  const std::vector<Command>& commands = GetParam().commands;
  for (const Command& a : commands) {
    for (const Command& b : commands) {
      if (&a == &b) continue;
      EXPECT_FALSE(a.fixed.bytes.size() <= b.fixed.bytes.size() &&
                   std::equal(a.fixed.bytes.begin(), a.fixed.bytes.end(), b.fixed.bytes.begin()));
    }
  }
}

TEST_P(Models, NameACheckedByteInsideTheFrame) {
  const ScaleModel& model = GetParam();
  if (!model.checkedByte) return;
  const auto length = static_cast<int>(model.frame(model.usualState()).size());
  EXPECT_LT(*model.checkedByte, length);
  EXPECT_GE(*model.checkedByte, -length);
}

INSTANTIATE_TEST_SUITE_P(OfAllNumbers, Models,
                         testing::ValuesIn(scaleModels().begin(), scaleModels().end()),
                         [](const auto& tested) {
                           return "model" + std::to_string(tested.param.number);
                         });

TEST(ModelTable, HoldsNoNumberWithoutAScale) {
  for (const int absent : {-1, 5, 20, 42}) EXPECT_EQ(findScaleModel(absent), nullptr);
}

TEST(ModelTable, LeavesOutOfTcpWhatAsksForMoreThanComes) {
  std::vector<int> numbers;
  for (const ScaleModel& model : scaleModels()) {
    if (!model.worksOverTcp()) numbers.push_back(model.number);
  }
  EXPECT_EQ(numbers, (std::vector<int>{11, 16, 23, 26}));
}

TEST(ModelTable, KnowsTheLineSettingsThatDiffer) {
  for (const ScaleModel& model : scaleModels()) {
    const bool even = model.number == 0 || model.number == 10 || model.number == 30;
    EXPECT_EQ(model.line.text(), model.number == 17 ? "8E2" : even ? "8E1" : "8N1") << model.number;
  }
}

}  // namespace
}  // namespace sim
