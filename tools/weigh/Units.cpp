#include "Units.h"

#include <array>
#include <cstdio>

#include "Models.h"
#include "Texts.h"

namespace weigh {

namespace {

constexpr int kWeightDigits = 6;

std::string fixed(double number, int digits) {
  std::array<char, 512> text = {};
  std::snprintf(text.data(), text.size(), "%.*f", digits, number);
  return text.data();
}

/// Without the zeros behind the first `fewest` digits after the point.
std::string trimmed(std::string number, std::size_t fewest) {
  const std::size_t shortest = number.find('.') + fewest + 1;
  while (number.size() > shortest && number.back() == '0') number.pop_back();
  if (number.back() == '.') number.pop_back();
  return number;
}

}  // namespace

Units unitsOf(int model) {
  const ScalesModel* row = findScalesModel(model);
  if (row == nullptr || row->sheet == nullptr) return {};
  return {.weight = row->sheet->weightUnit, .money = row->sheet->moneyUnit};
}

std::string weightText(double weight, Units units) {
  const std::size_t fewest = units.weight == WeightUnit::Kilogram ? 3 : 0;
  return trimmed(fixed(weight, kWeightDigits), fewest) + " " + unitText(units.weight);
}

std::string moneyText(double amount, Units units) {
  switch (units.money) {
    case MoneyUnit::Whole: return fixed(amount, 2);
    case MoneyUnit::Hundredth: return fill(text::kHundredths, {trimmed(fixed(amount, 2), 0)});
    case MoneyUnit::AsCounted: return trimmed(fixed(amount, 2), 0);
    case MoneyUnit::None: break;
  }
  return "-";
}

std::string unitText(WeightUnit unit) {
  switch (unit) {
    case WeightUnit::Kilogram: return say(text::kKilogram);
    case WeightUnit::Gram: return say(text::kGram);
    case WeightUnit::AsShown: break;
  }
  return say(text::kAsShown);
}

std::string stateText(const Reading& reading) {
  if (!reading.details) return {};
  return say(reading.details->stable ? text::kStable : text::kMoving);
}

std::string milliseconds(Milliseconds time) { return fixed(time.count(), 1); }

const char* unitName(WeightUnit unit) {
  switch (unit) {
    case WeightUnit::Kilogram: return "kg";
    case WeightUnit::Gram: return "g";
    case WeightUnit::AsShown: break;
  }
  return nullptr;
}

const char* unitName(MoneyUnit unit) {
  switch (unit) {
    case MoneyUnit::Whole: return "whole";
    case MoneyUnit::Hundredth: return "hundredth";
    case MoneyUnit::AsCounted: return "counted";
    case MoneyUnit::None: break;
  }
  return nullptr;
}

}  // namespace weigh
