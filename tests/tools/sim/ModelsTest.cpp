// What must hold for the description of every model and variant.

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ScaleModel.h"

namespace sim {
namespace {

std::vector<ScaleModel> modelsAndVariants() {
  std::vector<ScaleModel> all;
  for (const ScaleModel& model : scaleModels()) {
    all.push_back(model);
    for (const Variant& variant : model.variants)
      all.push_back(*findScaleModel(model.number, variant.name));
  }
  return all;
}

std::string nameOf(const ScaleModel& model) {
  return "model " + std::to_string(model.number) +
         (model.variant == nullptr ? "" : " " + std::string(model.variant->name));
}

/// Up to its limits a field holds what it is told, and beyond them the frame keeps its length.
TEST(Models, KeepTheLengthOfTheirFrameWhateverTheLoad) {
  for (const ScaleModel& model : modelsAndVariants()) {
    SCOPED_TRACE(nameOf(model));
    const std::size_t length = model.frame(model.usualState()).size();
    ScaleState state = model.usualState();
    for (int decimals = model.decimals.fewest; decimals <= model.decimals.most; ++decimals) {
      state.decimals = decimals;
      const Number::Limits limits = model.limits(decimals);
      for (const std::int64_t units : {limits.lowest, std::int64_t{0}, limits.highest}) {
        state.weight =
            static_cast<double>(units) / std::pow(10.0, decimals) / model.unit.inKilogram;
        EXPECT_EQ(model.display(state).weight, units);
        EXPECT_EQ(model.frame(state).size(), length);
      }
      for (const double load : {1e300, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
        ScaleState wild = state;
        wild.weight = load;
        wild.price = load;
        wild.tare = -load;
        EXPECT_EQ(model.frame(wild).size(), length) << load;
      }
    }
    if (model.checkedByte) {
      EXPECT_LT(*model.checkedByte, static_cast<int>(length));
    }
  }
}

TEST(Models, HaveNoCommandThatBeginsAnother) {
  for (const ScaleModel& model : modelsAndVariants()) {
    for (const Command& a : model.commands) {
      for (const Command& b : model.commands) {
        const Bytes& first = a.fixed.bytes;
        const auto end = std::ranges::mismatch(first, b.fixed.bytes).in1;
        EXPECT_TRUE(&a == &b || end != first.end()) << nameOf(model);
      }
    }
  }
}

}  // namespace
}  // namespace sim
