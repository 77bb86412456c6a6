// Models 19, 21: scales of the maker JADEVER.

#include "FrameBuilder.h"
#include "ModelGroups.h"
#include "Readings.h"
#include "SharedFrames.h"

namespace sim {

namespace {

/// CR LF "ST GS -    1.250 kg" CR LF
///
/// Status, kind (gross or net), sign, eight places of weight text, unit. The scale sends a line
/// end before each line too, and by the first CR the component finds the line.
Bytes snugFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 8;
  return FrameBuilder()
      .byte(CR)
      .byte(LF)
      .text(display.stable ? "ST" : "US")
      .text(display.tare != 0 ? " NT " : " GS ")
      .character(display.negative() ? '-' : '+')
      .character(' ')
      .text(rightAligned(decimalText(display.magnitude(), display.decimals), kWeightPlaces))
      .text(" kg")
      .byte(CR)
      .byte(LF)
      .take();
}

/// Weight in six digits, price in five, cost in six, as characters, the units first.
Bytes jplFrame(const Display& display) { return unitsFirstFrame(display, 5, '0'); }

}  // namespace

std::vector<ScaleModel> jadeverModels() {
  return {
      {// JADEVER SNUG II
       .number = 19,
       .streams = true,
       .weight = {.places = 8, .sign = Sign::Beside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .showsStability = true,
       .build = snugFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten},
      {// JADEVER JPL, JPL-N
       .number = 21,
       .commands = {{Action::Weigh, {0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x00, 0x00}},
                    {Action::Tare, {0x00, 0x00, 0x01}},
                    {.action = Action::Price, .bytes = {0x00, 0x00, 0x02}, .payload = 6}},
       .weight = {.places = 6},
       .decimals = {.fewest = 3, .most = 3, .usual = 3},
       .price = {.priceDigits = 5, .costDigits = 6, .factor = 0.01},
       .build = jplFrame,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsByFactor,
       .stableReading = StableReading::AlwaysStable},
  };
}

}  // namespace sim
