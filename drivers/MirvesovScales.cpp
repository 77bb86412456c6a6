#include "Drivers.h"

namespace {

namespace a12eh {

/// A weight that isn't valid reads as a good zero in motion.
Outcome judgeValidity(Frame frame, Outputs& outputs) {
  if (bitOf(2, 0x04).isIn(frame)) {
    outputs.weight = 0.0;
    outputs.stable = false;
  }
  return endPoll();
}

}  // namespace a12eh

}  // namespace

// ScalesA9: a frame between STX and ETX. The first byte that is no digit ends the number, so a
// blank in front leaves none.
//
//   > 02 40 44 00 04 03
//   < 02 40 44 2D 30 30 31 32 35 30 33 30 30 03
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13
//     STX-- "D"|  weight: "001250"  |  -- -- ETX
//              `- 2D negative       `- number of decimals
constinit const ProtocolSheet kSheetOfA9 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = {0x02, 0x40, 0x44, 0x00, 0x04, 0x03}},
    .read = StartByteRead{.length = 14, .start = {0x02}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{2, 'D'}, {13, 0x03}},
    .weight = {.at = 4,
               .size = 6,
               .written = TextNotation{.minus = Take::End,
                                       .point = Take::End,
                                       .blank = Take::End,
                                       .other = Take::End},
               .negative = byteIs(3, '-'),
               .decimals = {.at = 10, .zero = '0', .factors = kGramsOfDecimals},
               .cut = NumberField::Cut::To64Bits},
    .motion = kAlwaysMoving,
    .weightUnit = WeightUnit::Gram,
    .commands = kNoCommands,
};

// CScalesA9Contin: the scale transmits by itself.
//
//   < 02 2D 30 30 31 32 35 30 33 30 30 03
//     00 01 02 03 04 05 06 07 08 09 10 11
//     STX|  weight: "001250"  |  -- -- ETX
//        `- 2D negative       `- number of decimals
constinit const ProtocolSheet kSheetOfA9Contin = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = kNoRequest,
    .read = StartByteRead{.length = 12, .start = {0x02}, .wrongByte = kCostsOne_ms},
    .asking = kThreeTimes_500ms,
    .fixed = {{0, 0x02}, {11, 0x03}},
    .weight = {.at = 2,
               .size = 6,
               .written = kNumberText,
               .negative = byteIs(1, '-'),
               .decimals = {.at = 8, .zero = '0', .factors = decimalsUpTo(4)}},
    .motion = kAlwaysMoving,
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// ScalesA12: a letter is asked, a line of text answered.
//
//   > 52 00 00 00                              "R"
//   < 77 77 20 20 20 31 2E 32 35 30 20 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12
//     "w"-- weight: "   1.250 "        CR LF
//
// The letter goes out in a write of four bytes; the three behind it are the head of the last
// answer, and the scale doesn't look at them.
constinit const ProtocolSheet kSheetOfA12 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = {'R'}, .frameHead = 3},
    .read = StartByteRead{.length = 13, .start = {'w'}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{11, '\r'}, {12, '\n'}},
    .weight = {.at = 2,
               .size = 9,
               .written = kNumberText,
               .step = 1000.0,
               .cut = NumberField::Cut::To32Bits},
    .motion = kAlwaysAtRest,
    .weightUnit = WeightUnit::Gram,
    .commands = {.tare = Command{.bytes = {'T'}, .pause_ms = 0},
                 .zero = Command{.bytes = {'Z'}, .pause_ms = 0}},
};

// ScalesA12EH: the scale transmits by itself. What is no digit is dropped from the number, and the
// digits close up.
//
//   < 02 2D 02 20 30 30 31 32 35 30 30 30 30 30 30 30 0D
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16
//     STX|  |  -- weight: "001250"  -- -- -- -- -- -- CR
//        |  `- 02 negative, 04 not valid, 08 moving
//        `- number of decimals in the low 7 bits, 2A none
constinit const ProtocolSheet kSheetOfA12EH = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = kNoRequest,
    .read = StartByteRead{.length = 17, .start = {0x02}, .wrongByte = kCostsOne_ms},
    .asking = kThreeTimes_500ms,
    .fixed = {{0, 0x02}, {16, '\r'}},
    .weight = {.at = 4,
               .size = 6,
               .written = TextNotation{.minus = Take::Drop,
                                       .point = Take::Drop,
                                       .blank = Take::Drop,
                                       .other = Take::Drop},
               .negative = bitOf(2, 0x02),
               .decimals = {.at = 1, .mask = 0x7F, .zero = 0x2A, .factors = decimalsUpTo(4)}},
    .motion = movingIf(bitOf(2, 0x08)),
    .judge = a12eh::judgeValidity,
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// ScalesDS2: a frame between STX and ETX. A decimal point is stepped over, so the digits on both
// sides of it run together; with fewer than two digits the display is blank.
//
//   > 02 41 44 30 35 03                         STX "AD05" ETX
//   < 02 41 44 2D 30 30 30 31 32 35 30 30 30 03
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13
//     STX-- "D"|  weight: "0001250"    -- -- ETX
//              `- 2D negative
constinit const ProtocolSheet kSheetOfDS2 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = {.first = {0x02, 'A', 'D', '0', '5', 0x03}},
    .read = StartByteRead{.length = 14, .start = {0x02}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{2, 'D'}, {13, 0x03}},
    .weight = {.at = 4,
               .size = 7,
               .written = TextNotation{.minus = Take::End,
                                       .point = Take::Drop,
                                       .blank = Take::End,
                                       .other = Take::End,
                                       .fewest = 2},
               .negative = byteIs(3, '-'),
               .step = 1000.0,
               .cut = NumberField::Cut::To64Bits},
    .motion = kAlwaysMoving,
    .weightUnit = WeightUnit::Gram,
    .commands = kNoCommands,
};
