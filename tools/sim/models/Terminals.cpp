// Models 24, 26, 30, 35: weighing terminals IQ plus, HBM, ICS and Radwag.

#include "FrameBuilder.h"
#include "ModelGroups.h"
#include "Readings.h"
#include "SharedFrames.h"

namespace sim {

namespace {

Bytes line(std::string_view text) { return {text.begin(), text.end()}; }

/// "XN" CR LF | 2 places | LF | 6 places | "kg" CR LF
///
/// The echo of the command, then eight places of weight text with a line feed behind the second.
Bytes iqPlusFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 8;
  constexpr std::size_t kBeforeLineFeed = 2;
  const std::string weight = minusFirst(display, kWeightPlaces);
  return FrameBuilder()
      .text("XN")
      .byte(CR)
      .byte(LF)
      .text(weight.substr(0, kBeforeLineFeed))
      .byte(LF)
      .text(weight.substr(kBeforeLineFeed))
      .text("kg")
      .byte(CR)
      .byte(LF)
      .take();
}

/// "  -1.250" CR LF: eight places of weight text.
Bytes hbmFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 8;
  return FrameBuilder().text(minusNextToDigits(display, kWeightPlaces)).byte(CR).byte(LF).take();
}

/// Weight, price and cost in six digits each, as characters, the units first.
Bytes icsFrame(const Display& display) { return unitsFirstFrame(display, 6, '0'); }

/// "SUI? -    1.250 kg " CR LF
///
/// The command's name, "?" while the weight moves, sign, nine places of weight text, unit.
Bytes radwagFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 9;
  return FrameBuilder()
      .text("SUI")
      .character(display.stable ? ' ' : '?')
      .character(' ')
      .character(display.negative() ? '-' : ' ')
      .text(rightAligned(decimalText(display.magnitude(), display.decimals), kWeightPlaces))
      .text(" kg ")
      .byte(CR)
      .byte(LF)
      .take();
}

/// The price of ICS NT is handed out in hundredths, with the weight in kilograms.
constexpr PriceField kIcsPrice = {.priceDigits = 6, .costDigits = 6, .factor = 1.0};

}  // namespace

std::vector<ScaleModel> terminalModels() {
  return {
      {// IQ plus 355
       .number = 24,
       .commands = {{Action::Weigh, line("XN\r\n")},
                    {Action::Tare, line("KTARE\r\n")},
                    {Action::Setup, line("STREAM=OFF\r\n")},
                    {Action::Setup, line("EX\r\n")},
                    {Action::Setup, line("SX\r\n")}},
       .weight = {.places = 8, .sign = Sign::Inside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = iqPlusFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten,
       .stableReading = StableReading::AlwaysStable},
      {// HBM WE2110
       .number = 26,
       .commands = {{Action::Weigh, line("S1;MSV?;")}, {Action::Tare, line("S1;TAR;")}},
       .weight = {.places = 8, .sign = Sign::Inside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = hbmFrame,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten,
       .stableReading = StableReading::AlwaysMoving,
       .noTcp = &kEndMarkNeedsSerialLine},
      {// ICS NT
       .number = 30,
       .line = {.parity = Parity::Even},
       .commands = {{Action::Weigh, {0x00, 0x00, 0x03}},
                    {Action::Tare, {0x00, 0x00, 0x01}},
                    {.action = Action::Price, .bytes = {0x00, 0x00, 0x02}, .payload = 6}},
       .weight = {.places = 6},
       .decimals = {.fewest = 3, .most = 3, .usual = 3},
       .price = kIcsPrice,
       .build = icsFrame,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsByFactor,
       .stableReading = StableReading::AlwaysStable},
      {// WPT/4  RADWAG
       .number = 35,
       .commands = {{Action::Weigh, line("SUI\r\n")},
                    {.action = Action::Tare, .bytes = line("I\r\n"), .reply = line("I A\r\n")}},
       .weight = {.places = 9, .sign = Sign::Beside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .showsStability = true,
       .build = radwagFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten},
  };
}

}  // namespace sim
