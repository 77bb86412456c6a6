// Models 0, 1, 4: scales of the maker Промприбор.

#include <cmath>

#include "FrameBuilder.h"
#include "ModelGroups.h"
#include "Readings.h"
#include "SharedFrames.h"

namespace sim {

namespace {

constexpr std::uint8_t kDeviceAddress = 0x00;

/// Weight, price and cost in six digits each, as numbers, the units first.
Bytes vtaFrame(const Display& display) { return unitsFirstFrame(display, 6, 0); }

/// A cost that equals the weight in grams is worked out again by the component, and a poll whose
/// numbers don't agree ends with code 1.
void costIsWorkedOutAgain(const Display& display, Reading& reading) {
  if (display.weight != display.cost) return;
  const double kilograms = static_cast<double>(display.weight) / 1000.0;
  const double price = static_cast<double>(display.price) / 100.0;
  if (std::trunc(kilograms * price * 100.0) != reading.cost) reading.code = 1;
}

enum VnStatus : std::uint8_t { kVnStable = 0x04, kVnNegative = 0x20 };

/// < addr _ _ 1 2 5 0 status >
///
/// Six places of digits; a minus stands next to them. The status holds the number of decimals.
Bytes vnTextFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 6;
  const int status = display.decimals | (display.stable ? kVnStable : 0);
  const std::string digits = std::to_string(display.magnitude());
  return FrameBuilder()
      .character('<')
      .byte(kDeviceAddress)
      .text(rightAligned(display.negative() ? "-" + digits : digits, kWeightPlaces))
      .byte(static_cast<std::uint8_t>(status))
      .character('>')
      .take();
}

/// < addr 00 12 50 status >
///
/// Six digits of packed decimal, the highest first.
Bytes vnPackedFrame(const Display& display) {
  const int status =
      display.decimals | (display.stable ? kVnStable : 0) | (display.negative() ? kVnNegative : 0);
  const std::string digits = digitText(display.magnitude(), 6);
  FrameBuilder frame;
  frame.character('<').byte(kDeviceAddress);
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    frame.byte(static_cast<std::uint8_t>((digits[i] - '0') * 16 + (digits[i + 1] - '0')));
  }
  return frame.byte(static_cast<std::uint8_t>(status)).character('>').take();
}

std::vector<Command> vnCommands() {
  return {{Action::Weigh, {'<', kDeviceAddress, '!', '>'}},
          {Action::Tare, {'<', kDeviceAddress, 'T', '>'}}};
}

constexpr Text kVtaRemark = {
    "a cost whose hundredths equal the weight's grams (any weight at the price 10.00) is worked "
    "out again by the component, and some such readings end with code 1",
    "стоимость, которая в сотых равна весу в граммах (любой вес при цене 10.00), компонента "
    "пересчитывает, и часть таких чтений кончается кодом 1"};

}  // namespace

std::vector<ScaleModel> prompriborModels() {
  return {
      {// ВТА-60 (Промприбор)
       .number = 0,
       .line = {.parity = Parity::Even},
       .commands = {{Action::Weigh, {0x00, 0x00, 0x03}},
                    {Action::Tare, {0x00, 0x00, 0x01}},
                    {.action = Action::Price, .bytes = {0x00, 0x00, 0x02}, .payload = 6}},
       .weight = {.places = 6},
       .decimals = {.fewest = 3, .most = 3, .usual = 3},
       .price = {.priceDigits = 6, .costDigits = 6, .factor = 1.0},
       .build = vtaFrame,
       .unit = WeightUnit::Grams,
       .readWeight = rawCount,
       .stableReading = StableReading::AlwaysStable,
       .readSpecial = costIsWorkedOutAgain,
       .remark = &kVtaRemark},
      {// ВН-..-а-СI (блок ІЕ04, Промприбор)
       .number = 1,
       .commands = vnCommands(),
       .weight = {.places = 6, .sign = Sign::Inside},
       .decimals = {.fewest = 0, .most = 3, .usual = 3},
       .showsStability = true,
       .build = vnTextFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Grams,
       .readWeight = gramsByDecimalCode},
      {// ВН-..- 220В (Блок ІЕ03, v1100, по запросу, Промприбор)
       .number = 4,
       .commands = vnCommands(),
       .weight = {.places = 6, .sign = Sign::Beside},
       .decimals = {.fewest = 0, .most = 3, .usual = 3},
       .showsStability = true,
       .build = vnPackedFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Grams,
       .readWeight = gramsByDecimalCode},
  };
}

}  // namespace sim
