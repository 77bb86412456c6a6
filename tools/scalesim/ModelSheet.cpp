#include "ModelSheet.h"

#include <array>
#include <cstdio>
#include <vector>

#include "Models.h"
#include "Options.h"
#include "Texts.h"

namespace {

using sim::Action;
using sim::ScaleModel;

/// As the parameter page shows it, with its number in front.
std::string nameOf(const ScaleModel& model) { return findScalesModel(model.number)->pageText(); }

std::string plainNumber(double value) {
  std::array<char, 32> text = {};
  std::snprintf(text.data(), text.size(), "%.10g", value);
  return text.data();
}

std::string lineText(const sim::LineSettings& line) {
  const Text& parity = line.parity == sim::Parity::Even ? texts::kParityEven : texts::kParityNone;
  return fill(texts::kLineText, {line.text(), std::to_string(line.dataBits), say(parity),
                                 std::to_string(line.stopBits)});
}

std::string commandText(const sim::Command& command) {
  std::string bytes = hexText(command.fixed.bytes);
  if (command.payload == 0) return bytes;
  return fill(texts::kAndBytes, {bytes, std::to_string(command.payload)});
}

std::string exchangeText(const ScaleModel& model) {
  for (const sim::Command& command : model.commands) {
    if (command.action == Action::Weigh) return fill(texts::kAnswersTo, {commandText(command)});
  }
  return say(texts::kStreams);
}

const Text& actionText(Action action) {
  switch (action) {
    case Action::Tare: return texts::kTare;
    case Action::Zero: return texts::kZero;
    case Action::Price: return texts::kPrice;
    case Action::Weigh:
    case Action::Setup: break;
  }
  return texts::kSetup;
}

std::string obeysText(const ScaleModel& model) {
  std::string obeys;
  for (const sim::Command& command : model.commands) {
    if (command.action == Action::Weigh) continue;
    obeys += (obeys.empty() ? "" : "; ") + std::string(say(actionText(command.action))) + ": " +
             commandText(command);
  }
  return obeys.empty() ? say(texts::kNothing) : obeys;
}

std::string weightText(const ScaleModel& model) {
  const int decimals = model.decimals.usual;
  const auto limits = model.limits(decimals);
  sim::Display lowest;
  lowest.weight = limits.lowest;
  lowest.decimals = decimals;
  return fill(texts::kWeightLimits, {sim::decimalText(lowest.weight, decimals),
                                     sim::decimalText(limits.highest, decimals)});
}

std::string decimalsText(const ScaleModel& model) {
  const std::string usual = std::to_string(model.decimals.usual);
  if (!model.hasDecimals()) return fill(texts::kDecimalsFixed, {usual});
  return fill(texts::kDecimalsChoice,
              {std::to_string(model.decimals.fewest), std::to_string(model.decimals.most), usual});
}

const Text& unitText(sim::WeightUnit unit) {
  switch (unit) {
    case sim::WeightUnit::Kilograms: return texts::kKilograms;
    case sim::WeightUnit::Grams: return texts::kGrams;
    case sim::WeightUnit::Count: break;
  }
  return texts::kCount;
}

std::string readingText(const ScaleModel& model) {
  const sim::ScaleState state = model.usualState();
  return fill(texts::kReadingOf,
              {displayText(model.display(state)), plainNumber(model.expectedReading(state).weight),
               say(unitText(model.reads.unit))});
}

std::string stabilityText(const ScaleModel& model) {
  switch (model.stableReading) {
    case sim::StableReading::AlwaysStable: return say(texts::kStabilityAlways);
    case sim::StableReading::AlwaysMoving: return say(texts::kStabilityNever);
    case sim::StableReading::AsShown: break;
  }
  return say(texts::kStabilityShown);
}

std::string overloadText(const ScaleModel& model) {
  if (!model.showsOverload()) return say(texts::kOverloadNever);
  sim::ScaleState state = model.usualState();
  state.overload = true;
  return fill(texts::kOverloadCode, {std::to_string(model.expectedReading(state).code)});
}

std::string priceText(const ScaleModel& model) {
  if (!model.hasPrice()) return say(texts::kPriceNever);
  constexpr int kPriceDecimals = 2;
  return fill(texts::kPriceShown, {sim::decimalText(model.highestPrice(), kPriceDecimals)});
}

/// Characters, not bytes, of UTF-8 text.
std::size_t widthOf(const std::string& text) {
  std::size_t width = 0;
  for (const char c : text) width += (static_cast<unsigned char>(c) & 0xC0U) == 0x80U ? 0U : 1U;
  return width;
}

void addRow(std::string& sheet, const Text& name, const std::string& value) {
  constexpr std::size_t kNameWidth = 13;
  const std::string head = say(name);
  const std::size_t width = widthOf(head);
  sheet +=
      "  " + head + std::string(width < kNameWidth ? kNameWidth - width : 1, ' ') + value + "\n";
}

}  // namespace

std::string hexText(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0x0FU];
  }
  return text;
}

std::string displayText(const sim::Display& display) {
  return sim::decimalText(display.weight, display.decimals) + " kg";
}

std::string modelSheet(const ScaleModel& model) {
  const sim::ScaleState state = model.usualState();
  std::string sheet = nameOf(model) + "\n";
  addRow(sheet, texts::kRowLine, lineText(model.line));
  addRow(sheet, texts::kRowExchange, exchangeText(model));
  addRow(sheet, texts::kRowObeys, obeysText(model));
  addRow(sheet, texts::kRowFrame,
         fill(texts::kFrameOf, {hexText(model.frame(state)), displayText(model.display(state))}));
  addRow(sheet, texts::kRowWeight, weightText(model));
  addRow(sheet, texts::kRowDecimals, decimalsText(model));
  addRow(sheet, texts::kRowReading, readingText(model));
  addRow(sheet, texts::kRowStability, stabilityText(model));
  addRow(sheet, texts::kRowOverload, overloadText(model));
  addRow(sheet, texts::kRowPrice, priceText(model));
  addRow(sheet, texts::kRowTcp,
         model.worksOverTcp() ? say(texts::kYes) : fill(texts::kNoBecause, {model.noTcp}));
  if (model.remark != nullptr) addRow(sheet, texts::kRowRemark, model.remark);
  addRow(sheet, texts::kRowOptions, knownOptions(model));
  return sheet;
}

std::string modelList() {
  std::string list = std::string(say(texts::kListHead)) + "\n";
  for (const ScaleModel& model : sim::scaleModels()) {
    list += std::to_string(model.number) + "\t" +
            say(model.streams() ? texts::kListStreams : texts::kListAnswers) + "\t\t" +
            say(model.worksOverTcp() ? texts::kYes : texts::kNo) + "\t" + nameOf(model) + "\n";
  }
  return list;
}
