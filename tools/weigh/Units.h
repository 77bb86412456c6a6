#pragma once

#include <string>

#include "ProtocolSheet.h"
#include "Session.h"

namespace weigh {

/// What the numbers of a model's driver mean.
struct Units {
  WeightUnit weight = WeightUnit::Kilogram;
  MoneyUnit money = MoneyUnit::Whole;
};

/// Kilograms and money units for the emulator and for a model that isn't in the list.
Units unitsOf(int model);

/// "2.345 kg", "1250 g", "17 (as shown)".
std::string weightText(double weight, Units units);
/// "12.50", "1250/100", "1250"; "-" for a scale without prices.
std::string moneyText(double amount, Units units);
/// "kg", "g"; for digits without their decimal point "(as shown)".
std::string unitText(WeightUnit unit);
std::string stateText(const Reading& reading);
/// The number of milliseconds with one digit behind the point.
std::string milliseconds(Milliseconds time);

/// Names for programs, the same in all languages; null where a scale says nothing.
const char* unitName(WeightUnit unit);
const char* unitName(MoneyUnit unit);

}  // namespace weigh
