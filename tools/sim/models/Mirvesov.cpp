// Models 7, 8, 12, 31, 34: scales of the maker Мирвесов.

#include "FrameBuilder.h"
#include "ModelGroups.h"
#include "Readings.h"
#include "SharedFrames.h"

namespace sim {

namespace {

constexpr std::uint8_t kAddress = 0x40;

/// The part that both modes of the A9 have: sign | 0 0 1 2 5 0 | decimals | checksum, 2 nibbles |
/// 03. The checksum is the exclusive or of all behind the 02.
Bytes finishA9(FrameBuilder frame, const Display& display) {
  constexpr int kWeightPlaces = 6;
  frame.character(display.negative() ? '-' : ' ')
      .text(digitText(display.magnitude(), kWeightPlaces))
      .character(static_cast<char>('0' + display.decimals));
  const std::uint8_t sum = frame.xorFrom(1);
  return frame.byte(sum >> 4U).byte(sum & 0x0FU).byte(ETX).take();
}

/// 02 40 D, then as above
Bytes a9Frame(const Display& display) {
  return finishA9(FrameBuilder().byte(STX).byte(kAddress).character('D'), display);
}

/// 02, then as above
Bytes a9StreamFrame(const Display& display) { return finishA9(FrameBuilder().byte(STX), display); }

/// w 0 | _ _ _ _ 1 . 2 5 0 | CR LF
Bytes a12Frame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 9;
  return FrameBuilder()
      .text("w0")
      .text(minusNextToDigits(display, kWeightPlaces))
      .byte(CR)
      .byte(LF)
      .take();
}

/// 02 decimals status 20 | 0 0 1 2 5 0 | tare, 6 | CR
Bytes a12ehFrame(const Display& display) {
  constexpr int kNoDecimals = 0x2A;
  constexpr int kNegative = 0x02;
  constexpr int kNotValid = 0x04;
  constexpr int kMoving = 0x08;
  constexpr int kAlways = 0x20;
  const int status = kAlways | (display.negative() ? kNegative : 0) |
                     (display.overload ? kNotValid : 0) | (display.stable ? 0 : kMoving);
  return FrameBuilder()
      .byte(STX)
      .byte(static_cast<std::uint8_t>(kNoDecimals + display.decimals))
      .byte(static_cast<std::uint8_t>(status))
      .character(' ')
      .text(digitText(display.magnitude(), 6))
      .text(digitText(display.tare < 0 ? 0 : display.tare % powerOfTen(6), 6))
      .byte(CR)
      .take();
}

/// A weight that is not valid reads as a good zero in motion.
void notValidIsZero(const Display& display, Reading& reading) {
  if (!display.overload) return;
  reading.weight = 0.0;
  reading.stable = false;
}

Bytes ds2Frame(const Display& display) { return addressedFrame(display, ' '); }

constexpr Text kDs2Remark = {
    "the component leaves the point of the weight out, so a weight with decimals comes out too "
    "large; by default the simulator shows whole kilograms, which come out as grams",
    "компонента опускает точку в весе, и вес с дробной частью выходит слишком большим; поэтому "
    "симулятор показывает целые килограммы, которые выходят граммами"};

}  // namespace

std::vector<ScaleModel> mirvesovModels() {
  return {
      {// А9, DS3M1  (Мирвесов)
       .number = 7,
       .commands = {{Action::Weigh, {STX, kAddress, 'D', 0x00, 0x04, ETX}}},
       .weight = {.places = 6, .sign = Sign::Beside},
       .decimals = {.fewest = 0, .most = 3, .usual = 3},
       .build = a9Frame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Grams,
       .readWeight = gramsByDecimalCode,
       .stableReading = StableReading::AlwaysMoving},
      {// А12 (Мирвесов)
       .number = 8,
       .commands = {{.action = Action::Weigh, .bytes = {'R'}, .payload = 3},
                    {Action::Tare, {'T'}},
                    {Action::Zero, {'Z'}}},
       // Fewer decimals would let the field hold more grams than fit the component's 32 bits.
       .weight = {.places = 9, .sign = Sign::Inside, .pointInside = true},
       .decimals = {.fewest = 2, .most = 4, .usual = 3},
       .build = a12Frame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Grams,
       .readWeight = gramsCut,
       .stableReading = StableReading::AlwaysStable},
      {// DS2 (Мирвесов)
       .number = 12,
       .commands = {{Action::Weigh, {STX, 'A', 'D', '0', '5', ETX}}},
       .weight = {.places = 7, .sign = Sign::Beside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 0},
       .usualWeight = 25.0,
       .build = ds2Frame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Grams,
       .readWeight = digitsRunTogether,
       .stableReading = StableReading::AlwaysMoving,
       .remark = &kDs2Remark},
      {// A12EH (и некоторые модели BDU)
       .number = 31,
       .streams = true,
       .weight = {.places = 6, .sign = Sign::Beside},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .showsStability = true,
       .showsOverload = true,
       .build = a12ehFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsByFactor,
       .readSpecial = notValidIsZero},
      {// А9 (непрерывный режим передачи)
       .number = 34,
       .streams = true,
       .weight = {.places = 6, .sign = Sign::Beside},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = a9StreamFrame,
       .hasStartByte = true,
       .checkedByte = -1,
       .unit = WeightUnit::Kilograms,
       .readWeight = kilogramsByFactor,
       .stableReading = StableReading::AlwaysMoving},
  };
}

}  // namespace sim
