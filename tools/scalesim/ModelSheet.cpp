#include "ModelSheet.h"

#include <vector>

#include "Messages.h"
#include "Models.h"
#include "Options.h"
#include "Text.h"

namespace {

using sim::Action;
using sim::ScaleModel;

/// As the parameter page shows it, with its number in front.
std::string nameOf(const ScaleModel& model) { return findScalesModel(model.number)->pageText(); }

std::string yesOrNo(bool yes) { return yes ? say("yes") : say("no"); }

std::string lineText(const sim::Framing& line) {
  const bool even = line.parity == sim::Parity::Even;
  return say("{0}: {1} data bits, {2}, stop bits: {3}; the speed as set in the component",
             line.text(), line.dataBits, even ? say("even parity") : say("no parity"),
             line.stopBits);
}

std::string commandText(const sim::Command& command) {
  const std::string bytes = hexText(command.fixed.bytes);
  if (command.payload == 0) return bytes;
  return sayCount("{1} and {0} byte", "{1} and {0} bytes", command.payload, bytes);
}

std::string actionText(Action action) {
  switch (action) {
    case Action::Tare: return say("tare");
    case Action::Zero: return say("zero");
    case Action::Price: return say("price");
    default: return say("setup");
  }
}

std::string exchangeText(const ScaleModel& model) {
  for (const sim::Command& command : model.commands) {
    if (command.action == Action::Weigh) return say("answers to {0}", commandText(command));
  }
  return say("sends frame after frame without being asked");
}

std::string obeysText(const ScaleModel& model) {
  std::vector<std::string> obeys;
  for (const sim::Command& command : model.commands) {
    if (command.action != Action::Weigh)
      obeys.push_back(actionText(command.action) + ": " + commandText(command));
  }
  return obeys.empty() ? say("no commands") : joined(obeys, "; ");
}

std::string decimalsText(const ScaleModel& model) {
  const sim::Decimals& decimals = model.decimals;
  if (!model.hasDecimals()) return say("always {0}", decimals.usual);
  return say("{0} to {1}, usually {2}", decimals.fewest, decimals.most, decimals.usual);
}

std::string readingText(const ScaleModel& model) {
  const sim::ScaleState state = model.usualState();
  std::string unit;
  switch (model.reads.unit) {
    case sim::WeightUnit::Kilograms: unit = say("kilograms"); break;
    case sim::WeightUnit::Grams: unit = say("grams"); break;
    case sim::WeightUnit::Count: unit = say("the scale's raw count"); break;
  }
  return say("the component reads {0} as {1} ({2})", displayText(model, model.display(state)),
             model.expectedReading(state).weight, unit);
}

std::string stabilityText(const ScaleModel& model) {
  if (model.showsStability()) return say("in the frame");
  return model.alwaysStable ? say("not in the frame; the component always reports stable")
                            : say("not in the frame; the component always reports moving");
}

std::string overloadText(const ScaleModel& model) {
  if (!model.showsOverload()) return say("not in the frame");
  sim::ScaleState state = model.usualState();
  state.overload = true;
  return say("in the frame; the component returns code {0}", model.expectedReading(state).code);
}

std::string priceText(const ScaleModel& model) {
  if (!model.hasPrice()) return say("not in the frame");
  return say("from 0 to {0}, with the cost in the frame",
             sim::decimalText(model.highestPrice(), 2));
}

}  // namespace

std::string displayText(const ScaleModel& model, const sim::Display& display) {
  return sim::decimalText(display.weight, display.decimals) + ' ' + model.unit.name;
}

std::string modelSheet(const ScaleModel& model) {
  const sim::ScaleState state = model.usualState();
  const int decimals = model.decimals.usual;
  const auto limits = model.limits(decimals);
  std::string text = nameOf(model) + "\n";
  std::vector<std::pair<std::string, std::string>> rows;
  if (model.variant != nullptr)
    rows.emplace_back(say("Variant"), std::string(model.variant->name) + ": " +
                                          std::string(translated(model.variant->about)));
  rows.emplace_back(say("Line"), lineText(model.line));
  rows.emplace_back(say("Exchange"), exchangeText(model));
  rows.emplace_back(say("Obeys"), obeysText(model));
  rows.emplace_back(say("Frame"), say("{0} (for {1})", hexText(model.frame(state)),
                                      displayText(model, model.display(state))));
  if (sim::numberIn(model.layout, &sim::Display::weight) != nullptr)
    rows.emplace_back(say("Weight"),
                      say("from {0} to {1} {2}", sim::decimalText(limits.lowest, decimals),
                          sim::decimalText(limits.highest, decimals), model.unit.name));
  rows.emplace_back(say("Decimals"), decimalsText(model));
  if (model.variant == nullptr) {
    rows.emplace_back(say("Reading"), readingText(model));
    rows.emplace_back(say("Stability"), stabilityText(model));
    rows.emplace_back(say("Overload"), overloadText(model));
    rows.emplace_back(say("Price"), priceText(model));
    rows.emplace_back(
        "TCP", model.worksOverTcp() ? yesOrNo(true) : say("no: {0}", translated(model.noTcp)));
    if (model.remark != nullptr)
      rows.emplace_back(say("Remark"), std::string(translated(model.remark)));
  }
  rows.emplace_back(say("Options"), knownOptions(model));
  for (const sim::Variant& variant : model.variants) {
    if (model.variant == nullptr)
      rows.emplace_back(std::string("--variant ").append(variant.name),
                        std::string(translated(variant.about)));
  }
  constexpr std::size_t kWidth = 80;
  constexpr std::size_t kColumn = 15;
  for (const auto& [name, value] : rows) {
    const std::size_t used = displayWidth(name) + 2;
    text += "  " + name + std::string(used < kColumn ? kColumn - used : 1, ' ') +
            joined(wrapped(value, kWidth - kColumn), "\n" + std::string(kColumn, ' ')) + "\n";
  }
  return text;
}

std::string modelList() {
  Table list({say("Model"), say("Exchange"), "TCP", say("Name"), say("Variants")});
  for (const ScaleModel& model : sim::scaleModels()) {
    std::vector<std::string_view> variants;
    for (const sim::Variant& variant : model.variants) variants.push_back(variant.name);
    list.add({std::to_string(model.number), model.streams() ? say("streams") : say("answers"),
              yesOrNo(model.worksOverTcp()), nameOf(model), joined(variants)});
  }
  return list.text();
}
