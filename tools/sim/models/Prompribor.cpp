// Models 0, 1, 4: scales of the maker Промприбор.

#include <cmath>

#include "Kin.h"

namespace sim {

namespace {

constexpr char kDeviceAddress = 0x00;

/// A cost that equals the weight in grams is worked out again by the component, and a poll whose
/// numbers don't agree ends with code 1.
void costIsWorkedOutAgain(const Display& display, Reading& reading) {
  if (display.weight != display.cost) return;
  const double kilograms = static_cast<double>(display.weight) / 1000.0;
  const double price = static_cast<double>(display.price) / 100.0;
  if (std::trunc(kilograms * price * 100.0) != reading.cost) reading.code = 1;
}

}  // namespace

std::vector<ScaleModel> prompriborModels() {
  const std::vector<Command> vnCommands = {{Action::Weigh, is('<', kDeviceAddress, "!>")},
                                           {Action::Tare, is('<', kDeviceAddress, "T>")}};
  return {
      {// ВТА-60 (Промприбор)
       .number = 0,
       .line = {.parity = Parity::Even},
       .commands = {{Action::Weigh, is(0, 0, 3)},
                    {Action::Tare, is(0, 0, 1)},
                    {.action = Action::Price, .fixed = is(0, 0, 2), .payload = 6}},
       .layout = unitsFirst(Form::UnitsFirstNumbers, 6),
       .decimals = kFixedPoint,
       .checkedByte = {},
       .reads = {WeightUnit::Grams, kRawCount.read},
       .alwaysStable = true,
       .hundredth = 1.0,
       .readSpecial = costIsWorkedOutAgain,
       .remark =
           message("a cost whose hundredths equal the weight's grams (any weight at the price "
                   "10.00) is worked out again by the component, and some such readings end with "
                   "code 1")},
      {// ВН-..-а-СI (блок ІЕ04, Промприбор)
       .number = 1,
       .commands = vnCommands,
       .layout = {is('<', kDeviceAddress),
                  Number{.form = Form::Digits, .places = 6, .minus = Minus::Beside},
                  Status{.stable = 0x04, .decimals = true}, is('>')},
       .decimals = kUpToThree,
       .reads = kGramsByDecimalCode},
      {// ВН-..- 220В (Блок ІЕ03, v1100, по запросу, Промприбор)
       .number = 4,
       .commands = vnCommands,
       .layout = {is('<', kDeviceAddress), Number{.form = Form::Packed, .places = 6, .fill = '0'},
                  Status{.stable = 0x04, .negative = 0x20, .decimals = true}, is('>')},
       .decimals = kUpToThree,
       .reads = kGramsByDecimalCode},
  };
}

}  // namespace sim
