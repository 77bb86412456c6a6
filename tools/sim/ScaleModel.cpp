#include "ScaleModel.h"

#include <algorithm>
#include <cmath>

#include "FrameBuilder.h"
#include "ModelGroups.h"

namespace sim {

namespace {

/// Far above every field and far below what a 64-bit integer holds.
constexpr double kWidestNumber = 1e15;

std::int64_t rounded(double value) {
  if (std::isnan(value)) return 0;
  return std::llround(std::clamp(value, -kWidestNumber, kWidestNumber));
}

/// The cost in hundredths, half a hundredth rounded up as scales do.
std::int64_t costOf(std::int64_t weight, int decimals, std::int64_t price, std::int64_t highest) {
  if (weight <= 0 || price <= 0) return 0;
  const double cost = static_cast<double>(weight) * static_cast<double>(price) /
                      static_cast<double>(powerOfTen(decimals));
  return std::min(rounded(cost), highest);
}

std::int64_t highestOf(int digits) { return powerOfTen(digits) - 1; }

}  // namespace

std::string LineSettings::text() const {
  return std::to_string(dataBits) + (parity == Parity::Even ? "E" : "N") + std::to_string(stopBits);
}

WeightField::Limits WeightField::limits(int decimals) const {
  if (places == 0) return binary;
  const int digits = places - (pointInside && decimals > 0 ? 1 : 0);
  const std::int64_t highest = highestOf(digits);
  switch (sign) {
    case Sign::None: return {0, highest};
    case Sign::Beside: return {-highest, highest};
    case Sign::Inside: break;
  }
  return {-highestOf(digits - 1), highest};
}

ScaleState ScaleModel::usualState() const {
  constexpr double kUsualPrice = 12.5;
  ScaleState state;
  state.weight = usualWeight;
  state.decimals = decimals.usual;
  if (hasPrice()) state.price = kUsualPrice;
  return state;
}

Display ScaleModel::display(const ScaleState& state) const {
  Display shown;
  shown.decimals = std::clamp(state.decimals, decimals.fewest, decimals.most);
  const auto unitsPerKilogram = static_cast<double>(powerOfTen(shown.decimals));
  const std::int64_t net = rounded((state.weight - state.zero - state.tare) * unitsPerKilogram);
  const WeightField::Limits limits = weight.limits(shown.decimals);
  shown.weight = std::clamp(net, limits.lowest, limits.highest);
  shown.tare = rounded(state.tare * unitsPerKilogram);
  shown.overload = showsOverload && (state.overload || net != shown.weight);
  shown.stable = state.stable || !showsStability;
  if (hasPrice()) {
    constexpr double kHundredths = 100.0;
    shown.price = std::clamp<std::int64_t>(rounded(state.price * kHundredths), 0,
                                           highestOf(price.priceDigits));
    shown.cost = costOf(shown.weight, shown.decimals, shown.price, highestOf(price.costDigits));
  }
  return shown;
}

Reading ScaleModel::expectedReading(const ScaleState& state) const {
  const Display shown = display(state);
  Reading reading;
  reading.weight = readWeight(shown.weight, shown.decimals);
  reading.price = static_cast<double>(shown.price) * price.factor;
  reading.cost = static_cast<double>(shown.cost) * price.factor;
  reading.stable = stableReading == StableReading::AlwaysStable ||
                   (stableReading == StableReading::AsShown && shown.stable);
  if (readSpecial != nullptr) readSpecial(shown, reading);
  return reading;
}

std::span<const ScaleModel> scaleModels() {
  static const std::vector<ScaleModel> models = [] {
    std::vector<ScaleModel> all;
    for (const auto group : kModelGroups) {
      std::vector<ScaleModel> some = group();
      std::move(some.begin(), some.end(), std::back_inserter(all));
    }
    std::sort(all.begin(), all.end(),
              [](const ScaleModel& a, const ScaleModel& b) { return a.number < b.number; });
    return all;
  }();
  return models;
}

const ScaleModel* findScaleModel(int number) {
  const auto models = scaleModels();
  const auto found = std::find_if(models.begin(), models.end(),
                                  [&](const ScaleModel& model) { return model.number == number; });
  return found == models.end() ? nullptr : &*found;
}

}  // namespace sim
