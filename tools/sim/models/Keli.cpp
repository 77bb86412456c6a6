// Models 16, 29, 38, 40: indicators of KELI and their kin.

#include <algorithm>

#include "FrameBuilder.h"
#include "ModelGroups.h"
#include "Readings.h"
#include "SharedFrames.h"

namespace sim {

namespace {

/// 02 "NW:-01.250kg" 03: seven places of weight text, unit.
Bytes keliFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 7;
  return FrameBuilder()
      .byte(STX)
      .text("NW:")
      .text(minusFirst(display, kWeightPlaces))
      .text("kg")
      .byte(ETX)
      .take();
}

Bytes k9Frame(const Display& display) { return addressedFrame(display, '+'); }

/// 01 03 08 | 0 0 0 1 2 5 0 | decimals | CRC, 2
///
/// A reply of Modbus RTU whose eight bytes of registers hold text.
Bytes d12Frame(const Display& display) {
  constexpr std::uint8_t kStation = 0x01;
  constexpr std::uint8_t kReadRegisters = 0x03;
  constexpr std::uint8_t kRegisterBytes = 0x08;
  constexpr int kWeightPlaces = 7;
  return FrameBuilder()
      .byte(kStation)
      .byte(kReadRegisters)
      .byte(kRegisterBytes)
      .text(display.negative() ? "-" + digitText(display.magnitude(), kWeightPlaces - 1)
                               : digitText(display.magnitude(), kWeightPlaces))
      .character(static_cast<char>('0' + display.decimals))
      .modbusCrc()
      .take();
}

/// = 0 5 2 . 1 0 0: seven places of weight text, written backwards.
Bytes t7eFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 7;
  const std::string number = decimalText(display.magnitude(), display.decimals);
  std::string text = display.negative() ? "-" + rightAligned(number, kWeightPlaces - 1, '0')
                                        : rightAligned(number, kWeightPlaces, '0');
  std::reverse(text.begin(), text.end());
  return FrameBuilder().character('=').text(text).take();
}

}  // namespace

std::vector<ScaleModel> keliModels() {
  const Bytes d12Zero = {0x01, 0x06, 0x00, 0x01, 0x00, 0x17, 0x98, 0x04};
  return {
      {// KELI
       .number = 16,
       .commands = {{Action::Weigh, {STX, 'B', ETX}}, {Action::Zero, {STX, 'E', ETX}}},
       .weight = {.places = 7, .sign = Sign::Inside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = keliFrame,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten,
       .stableReading = StableReading::AlwaysStable,
       .noTcp = &kEndMarkNeedsSerialLine},
      {// T7E
       .number = 29,
       .streams = true,
       .weight = {.places = 7, .sign = Sign::Inside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = t7eFrame,
       .hasStartByte = true,
       .checkedByte = 0,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten,
       .stableReading = StableReading::AlwaysMoving},
      {// KELI: K9
       .number = 38,
       .commands = {{Action::Weigh, {STX, 'A', 'D', '0', '5', ETX}}},
       .weight = {.places = 7, .sign = Sign::Beside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = k9Frame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsAsWritten,
       .stableReading = StableReading::AlwaysMoving},
      {// KELI: D12
       .number = 40,
       .commands = {{Action::Weigh, {0x01, 0x03, 0x00, 0x03, 0x00, 0x04, 0xB4, 0x09}},
                    {.action = Action::Zero, .bytes = d12Zero, .reply = d12Zero}},
       .weight = {.places = 7, .sign = Sign::Inside},
       .decimals = {.fewest = 0, .most = 5, .usual = 3},
       .build = d12Frame,
       .hasStartByte = true,
       .checkedByte = 1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsByFactor,
       .stableReading = StableReading::AlwaysMoving},
  };
}

}  // namespace sim
