// Models 13, 14, 27, 28: scales that speak the CAS protocol or kin of it.

#include "FrameBuilder.h"
#include "ModelGroups.h"
#include "Readings.h"
#include "SharedFrames.h"

namespace sim {

namespace {

/// 06 01 02 S _ _ 1 . 2 5 0 k g xx 03 04
///
/// Weight text of seven places, unit, exclusive or of status to unit. An overload shows as "F".
Bytes casFrame(const Display& display) {
  constexpr std::size_t kStatus = 3;
  constexpr std::size_t kWeightPlaces = 7;
  FrameBuilder frame;
  frame.byte(ACK).byte(SOH).byte(STX);
  frame.character(display.stable ? 'S' : 'U');
  frame.text(display.overload ? "F      " : minusFirst(display, kWeightPlaces)).text("kg");
  return frame.byte(frame.xorFrom(kStatus)).byte(ETX).byte(EOT).take();
}

/// 01 80 AA status | weight, 2 | price, 4 | cost, 4 | tare, 2 | 00 00; low bytes first
Bytes casLp16Frame(const Display& display) {
  constexpr std::uint8_t kOverload = 0x01;
  constexpr std::uint8_t kStable = 0x40;
  constexpr std::uint8_t kNegative = 0x80;
  unsigned status = 0;
  if (display.overload) status |= kOverload;
  if (display.stable) status |= kStable;
  if (display.negative()) status |= kNegative;
  return FrameBuilder()
      .byte(SOH)
      .byte(0x80)
      .byte(0xAA)
      .byte(static_cast<std::uint8_t>(status))
      .littleEndian(static_cast<std::uint64_t>(display.magnitude()), 2)
      .littleEndian(static_cast<std::uint64_t>(display.price), 4)
      .littleEndian(static_cast<std::uint64_t>(display.cost), 4)
      .littleEndian(static_cast<std::uint64_t>(display.tare), 2)
      .littleEndian(0, 2)
      .take();
}

/// Weight, price and cost in six digits each, as numbers, the units first.
Bytes uns2Frame(const Display& display) { return unitsFirstFrame(display, 6, 0); }

ScaleModel cas(int number) {
  return {.number = number,
          // The ENQ alone gets no answer: a real scale says ACK to it, and the reader, who listens
          // only behind the DC1, would take two in a row for a broken frame.
          .commands = {{Action::Weigh, {ENQ, DC1}}},
          .weight = {.places = 7, .sign = Sign::Inside, .pointInside = true},
          .decimals = {.fewest = 0, .most = 4, .usual = 3},
          .showsStability = true,
          .showsOverload = true,
          .build = casFrame,
          .hasStartByte = true,
          .checkedByte = -1,
          .unit = WeightUnit::Kilograms,
          .readWeight = kilogramsAsWritten,
          .readSpecial = overloadIsCode7};
}

}  // namespace

std::vector<ScaleModel> casModels() {
  constexpr std::uint8_t kUns2Address = 0x2A;
  return {
      cas(13),
      {// CAS-LP (v1.6)
       .number = 14,
       .commands = {{Action::Weigh, {SOH, 0x89}}},
       .weight = {.binary = {-0xFFFF, 0xFFFF}},
       .decimals = {.fewest = 0, .most = 3, .usual = 3},
       .price = {.priceDigits = 9, .costDigits = 9, .factor = 1.0},
       .showsStability = true,
       .showsOverload = true,
       .build = casLp16Frame,
       .hasStartByte = true,
       .checkedByte = 1,
       .unit = WeightUnit::Count,
       .readWeight = rawCount,
       .readSpecial = overloadIsCode7},
      cas(27),
      {// BTHE (протокол UNS-02)
       .number = 28,
       .commands = {{Action::Weigh, {kUns2Address, 0x03}},
                    {Action::Tare, {kUns2Address, 0x01}},
                    {.action = Action::Price, .bytes = {kUns2Address, 0x02}, .payload = 6}},
       .weight = {.places = 6},
       .decimals = {.fewest = 3, .most = 3, .usual = 3},
       .price = {.priceDigits = 6, .costDigits = 6, .factor = 0.01},
       .build = uns2Frame,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsByFactor,
       .stableReading = StableReading::AlwaysMoving},
  };
}

}  // namespace sim
