// Models 2, 3, 9: scales of the makers Техноваги and Axis, which answer a short command with a
// line of text.

#include "FrameBuilder.h"
#include "ModelGroups.h"
#include "Readings.h"

namespace sim {

namespace {

Bytes line(std::string_view text) { return {text.begin(), text.end()}; }

/// "       1.250" CR LF: a blank and eleven places of weight text.
Bytes tbeFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 11;
  return FrameBuilder()
      .character(' ')
      .text(minusNextToDigits(display, kWeightPlaces))
      .byte(CR)
      .byte(LF)
      .take();
}

/// "R01W01.250" CR LF
///
/// The letter behind the address tells the kind of the reading: W good, N below zero, E error.
Bytes tb1Frame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 6;
  const char kind = display.overload ? 'E' : display.negative() ? 'N' : 'W';
  const std::string number = decimalText(display.magnitude(), display.decimals);
  return FrameBuilder()
      .text("R01")
      .character(kind)
      .text(rightAligned(number, kWeightPlaces, '0'))
      .byte(CR)
      .byte(LF)
      .take();
}

/// A reading of kind E comes out with its number, without sign, and the code 1099.
void errorIsCode1099(const Display& display, Reading& reading) {
  if (!display.overload) return;
  reading.weight = kilogramsAsWritten(display.magnitude(), display.decimals);
  reading.code = 1099;
}

/// "-    1.250 kg " CR LF: sign, nine places of weight text, unit.
Bytes axisFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 9;
  return FrameBuilder()
      .character(display.negative() ? '-' : ' ')
      .text(rightAligned(decimalText(display.magnitude(), display.decimals), kWeightPlaces))
      .text(" kg ")
      .byte(CR)
      .byte(LF)
      .take();
}

}  // namespace

std::vector<ScaleModel> tekhnovagiAndAxisModels() {
  return {
      {// TBE  (Техноваги)
       .number = 2,
       .commands = {{Action::Weigh, line("G1\r\n")}, {Action::Tare, line("ST\r\n")}},
       .weight = {.places = 11, .sign = Sign::Inside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = tbeFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Grams,
       .readWeight = gramsCut,
       .stableReading = StableReading::AlwaysMoving},
      {// TB1, TB4  (Техноваги)
       .number = 3,
       .commands = {{Action::Weigh, line("G01W\r\n")}, {Action::Tare, line("S01T\r\n")}},
       .weight = {.places = 6, .sign = Sign::Beside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .showsOverload = true,
       .build = tb1Frame,
       .hasStartByte = true,
       .checkedByte = -2,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten,
       .stableReading = StableReading::AlwaysMoving,
       .readSpecial = errorIsCode1099},
      {// BDU, BTU, BD, 4BDU, SE01, SE02 (Axis)
       .number = 9,
       .commands = {{Action::Weigh, line("SI\r\n")}, {Action::Tare, line("ST\r\n")}},
       .weight = {.places = 9, .sign = Sign::Beside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = axisFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Grams,
       .readWeight = gramsCut,
       .stableReading = StableReading::AlwaysStable},
  };
}

}  // namespace sim
