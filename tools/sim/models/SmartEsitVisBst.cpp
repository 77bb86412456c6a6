// Models 33, 36, 37, 39, 41: scales SMART, ESIT, ВИС and BST.

#include "FrameBuilder.h"
#include "ModelGroups.h"
#include "Readings.h"

namespace sim {

namespace {

/// 02 sign | 0 0 1 . 2 5 0 | k g | blank or M | CR
Bytes smartFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 7;
  return FrameBuilder()
      .byte(STX)
      .character(display.negative() ? '-' : ' ')
      .text(rightAligned(decimalText(display.magnitude(), display.decimals), kWeightPlaces, '0'))
      .text("kg")
      .character(display.stable ? ' ' : 'M')
      .byte(CR)
      .take();
}

/// sign | 0 1+80 2 5 0 | CR
///
/// Five digits; the one before the point has its top bit set.
Bytes esitSmart2Frame(const Display& display) {
  constexpr int kWeightPlaces = 5;
  constexpr unsigned kPointBehind = 0x80;
  const std::string digits = digitText(display.magnitude(), kWeightPlaces);
  const std::size_t beforePoint = digits.size() - 1 - static_cast<std::size_t>(display.decimals);
  FrameBuilder frame;
  frame.character(display.negative() ? '-' : '+');
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const bool point = display.decimals > 0 && i == beforePoint;
    const auto digit = static_cast<unsigned char>(digits[i]);
    frame.byte(static_cast<std::uint8_t>(digit | (point ? kPointBehind : 0U)));
  }
  return frame.byte(CR).take();
}

/// "    -1.250" CR LF: ten places of weight text.
Bytes esitEciFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 10;
  return FrameBuilder().text(minusNextToDigits(display, kWeightPlaces)).byte(CR).byte(LF).take();
}

/// LF "ST,GS,  -1.250kg" CR: status, kind (gross or net), eight places of weight text, unit.
Bytes visFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 8;
  return FrameBuilder()
      .byte(LF)
      .text(display.stable ? "ST" : "US")
      .text(display.tare != 0 ? ",NT," : ",GS,")
      .text(minusNextToDigits(display, kWeightPlaces))
      .text("kg")
      .byte(CR)
      .take();
}

/// 01 03 06 | weight, 4, high byte first | status | 00 | CRC, 2: a reply of Modbus RTU.
Bytes bstFrame(const Display& display) {
  constexpr std::uint8_t kStation = 0x01;
  constexpr std::uint8_t kReadRegisters = 0x03;
  constexpr std::uint8_t kRegisterBytes = 0x06;
  constexpr std::uint8_t kStable = 0x20;
  return FrameBuilder()
      .byte(kStation)
      .byte(kReadRegisters)
      .byte(kRegisterBytes)
      .bigEndian(static_cast<std::uint64_t>(display.weight), 4)
      .byte(display.stable ? kStable : 0)
      .byte(0)
      .modbusCrc()
      .take();
}

}  // namespace

std::vector<ScaleModel> smartEsitVisBstModels() {
  const Bytes bstTare = {0x01, 0x06, 0x00, 0x07, 0xA5, 0x0B, 0x02, 0x9C};
  return {
      {// SMART
       .number = 33,
       .streams = true,
       .weight = {.places = 7, .sign = Sign::Beside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .showsStability = true,
       .build = smartFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten},
      {// ESIT Smart2
       .number = 36,
       .streams = true,
       .weight = {.places = 5, .sign = Sign::Beside},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = esitSmart2Frame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten,
       .stableReading = StableReading::AlwaysStable},
      {// ESIT ECI STATIC
       .number = 37,
       .commands = {{Action::Weigh, {'W', CR}}, {Action::Tare, {'T', CR}}},
       .weight = {.places = 10, .sign = Sign::Inside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = esitEciFrame,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten,
       .stableReading = StableReading::AlwaysMoving},
      {// ВИС HL318L
       .number = 39,
       .streams = true,
       .weight = {.places = 8, .sign = Sign::Inside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .showsStability = true,
       .build = visFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten},
      {// Резерв
       .number = 41,
       .commands = {{Action::Weigh, {0x01, 0x03, 0x00, 0x02, 0x00, 0x03, 0xA4, 0x0B}},
                    {.action = Action::Tare, .bytes = bstTare, .reply = bstTare}},
       .weight = {.binary = {-0x7FFFFFFF - 1, 0x7FFFFFFF}},
       .decimals = {.fewest = 0, .most = 3, .usual = 3},
       .showsStability = true,
       .build = bstFrame,
       .checkedByte = 0,
       .unit = WeightUnit::Count,
       .readWeight = rawCount},
  };
}

}  // namespace sim
