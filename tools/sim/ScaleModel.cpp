#include "ScaleModel.h"

#include <algorithm>
#include <cmath>

#include "Kin.h"

namespace sim {

namespace {

/// Far above every field and far below what a 64-bit integer holds.
constexpr double kWidestNumber = 1e15;

std::int64_t rounded(double value) {
  if (std::isnan(value)) return 0;
  return std::llround(std::clamp(value, -kWidestNumber, kWidestNumber));
}

/// The cost in hundredths, half a hundredth rounded up as scales do.
std::int64_t costOf(std::int64_t weight, int decimals, std::int64_t price) {
  if (weight <= 0 || price <= 0) return 0;
  return rounded(static_cast<double>(weight) * static_cast<double>(price) /
                 static_cast<double>(powerOfTen(decimals)));
}

/// The highest that a field for a number holds.
std::int64_t highestOf(const Number* number) {
  return number == nullptr ? 0 : number->limits(0, false).highest;
}

ScaleModel asVariant(ScaleModel model, const Variant& variant) {
  model.variant = &variant;
  if (!variant.layout.empty()) model.layout = variant.layout;
  if (!variant.commands.empty()) model.commands = variant.commands;
  if (variant.streams) model.commands.clear();
  if (variant.decimals) model.decimals = *variant.decimals;
  model.unit = variant.unit;
  return model;
}

}  // namespace

std::string Framing::text() const {
  return std::to_string(dataBits) + (parity == Parity::Even ? "E" : "N") + std::to_string(stopBits);
}

double asWritten(std::int64_t units, int decimals) {
  // The remainder of a negative number is negative, too.
  const std::int64_t power = powerOfTen(decimals);
  return static_cast<double>(units / power) +
         static_cast<double>(units % power) / static_cast<double>(power);
}

bool ScaleModel::streams() const {
  return std::ranges::none_of(
      commands, [](Action action) { return action == Action::Weigh; }, &Command::action);
}

Number::Limits ScaleModel::limits(int of) const {
  const Number* weight = numberIn(layout, &Display::weight);
  if (weight == nullptr) return {-rounded(kWidestNumber), rounded(kWidestNumber)};
  return weight->limits(of, showsSign(layout));
}

std::int64_t ScaleModel::highestPrice() const {
  return highestOf(numberIn(layout, &Display::price));
}

std::int64_t ScaleModel::unitsOf(double kilograms, int of) const {
  return rounded(kilograms * unit.inKilogram * static_cast<double>(powerOfTen(of)));
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
  const std::int64_t net = unitsOf(state.weight - state.zero - state.tare, shown.decimals);
  const Number::Limits range = limits(shown.decimals);
  shown.weight = std::clamp(net, range.lowest, range.highest);
  shown.tare = unitsOf(state.tare, shown.decimals);
  shown.overload = showsOverload() && (state.overload || net != shown.weight);
  shown.stable = state.stable || !showsStability();
  if (hasPrice()) {
    constexpr double kHundredths = 100.0;
    shown.price = std::clamp<std::int64_t>(rounded(state.price * kHundredths), 0, highestPrice());
    shown.cost = std::min(costOf(shown.weight, shown.decimals, shown.price),
                          highestOf(numberIn(layout, &Display::cost)));
  }
  return shown;
}

Reading ScaleModel::expectedReading(const ScaleState& state) const {
  const Display shown = display(state);
  Reading reading;
  reading.weight = reads.read(shown.weight, shown.decimals);
  reading.price = static_cast<double>(shown.price) * hundredth;
  reading.cost = static_cast<double>(shown.cost) * hundredth;
  reading.stable = showsStability() ? shown.stable : alwaysStable;
  if (readSpecial != nullptr) readSpecial(shown, reading);
  return reading;
}

std::span<const ScaleModel> scaleModels() {
  static const std::vector<ScaleModel> models = [] {
    std::vector<ScaleModel> all;
    for (const auto group : kModelGroups) std::ranges::move(group(), std::back_inserter(all));
    std::ranges::sort(all, {}, &ScaleModel::number);
    return all;
  }();
  return models;
}

const ScaleModel* findScaleModel(int number, std::string_view variant) {
  static const std::vector<ScaleModel> variants = [] {
    std::vector<ScaleModel> all;
    for (const ScaleModel& model : scaleModels()) {
      for (const Variant& other : model.variants) all.push_back(asVariant(model, other));
    }
    return all;
  }();
  const std::span<const ScaleModel> all = variant.empty() ? scaleModels() : variants;
  const auto found = std::ranges::find_if(all, [&](const ScaleModel& model) {
    return model.number == number && (variant.empty() || model.variant->name == variant);
  });
  return found == all.end() ? nullptr : &*found;
}

}  // namespace sim
