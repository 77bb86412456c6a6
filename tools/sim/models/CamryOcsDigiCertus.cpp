// Models 17, 18, 23, 25: scales of the makers Camry, OCS, DIGI and Certus.

#include <algorithm>

#include "FrameBuilder.h"
#include "ModelGroups.h"
#include "Readings.h"
#include "SharedFrames.h"

namespace sim {

namespace {

/// Weight in six digits, price in five, cost in six, as characters, the units first.
Bytes camryFrame(const Display& display) { return unitsFirstFrame(display, 5, '0'); }

/// 7F channel | 0 5 2 ! 0 | flags | exclusive or of offsets 1 to 7
///
/// Five characters, the last digit first. The digit before the point comes as the character that
/// its key has with shift.
Bytes ocsFrame(const Display& display) {
  constexpr std::uint8_t kStart = 0x7F;
  constexpr std::uint8_t kChannel = 0x01;
  constexpr int kWeightPlaces = 5;
  constexpr std::string_view kShifted = ")!@#$%^&*(";
  std::string text = digitText(display.magnitude(), kWeightPlaces);
  if (display.negative()) text.front() = '-';
  std::reverse(text.begin(), text.end());
  if (display.decimals > 0) {
    char& beforePoint = text[static_cast<std::size_t>(display.decimals)];
    beforePoint = kShifted[static_cast<std::size_t>(beforePoint - '0')];
  }
  FrameBuilder frame;
  frame.byte(kStart).byte(kChannel).text(text).byte(display.stable ? 1 : 0);
  return frame.byte(frame.xorFrom(1)).take();
}

/// 02 status CR 0 | 0 1 . 2 5 0 | CR LF
Bytes digiFrame(const Display& display) {
  constexpr int kAlways = 0x40;
  constexpr int kStable = 0x02;
  constexpr int kNegative = 0x04;
  constexpr std::size_t kWeightPlaces = 6;
  const int status =
      kAlways | (display.stable ? kStable : 0) | (display.negative() ? kNegative : 0);
  return FrameBuilder()
      .byte(STX)
      .byte(static_cast<std::uint8_t>(status))
      .byte(CR)
      .character('0')
      .text(rightAligned(decimalText(display.magnitude(), display.decimals), kWeightPlaces, '0'))
      .byte(CR)
      .byte(LF)
      .take();
}

/// CR LF "ST,GS-  1.250 kg" CR LF
///
/// Status, kind (gross or net), sign, seven places of weight text, unit. The scale sends a line
/// end before each line too, and by the first CR the component finds the line.
Bytes certusFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 7;
  return FrameBuilder()
      .byte(CR)
      .byte(LF)
      .text(display.stable ? "ST" : "US")
      .text(display.tare != 0 ? ",NT" : ",GS")
      .character(display.negative() ? '-' : '+')
      .text(rightAligned(decimalText(display.magnitude(), display.decimals), kWeightPlaces))
      .text(" kg")
      .byte(CR)
      .byte(LF)
      .take();
}

}  // namespace

std::vector<ScaleModel> camryOcsDigiCertusModels() {
  return {
      {// Camry
       .number = 17,
       .line = {.parity = Parity::Even, .stopBits = 2},
       .commands = {{Action::Weigh, {0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x00, 0x00}}},
       .weight = {.places = 6},
       .decimals = {.fewest = 3, .most = 3, .usual = 3},
       .price = {.priceDigits = 5, .costDigits = 6, .factor = 0.01},
       .build = camryFrame,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsByFactor,
       .stableReading = StableReading::AlwaysStable},
      {// OCS, ВК ЗЕВС III с радиоканалом
       .number = 18,
       .streams = true,
       .weight = {.places = 5, .sign = Sign::Inside},
       .decimals = {.fewest = 0, .most = 3, .usual = 3},
       .showsStability = true,
       .build = ocsFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten},
      {// DIGI DS-788, 781, 782
       .number = 23,
       .commands = {{Action::Weigh, {ENQ}}},
       .weight = {.places = 6, .sign = Sign::Beside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .showsStability = true,
       .build = digiFrame,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten,
       .noTcp = &kEndMarkNeedsSerialLine},
      {// CERTUS CBA
       .number = 25,
       .streams = true,
       .weight = {.places = 7, .sign = Sign::Beside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .showsStability = true,
       .build = certusFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten},
  };
}

}  // namespace sim
