#include "Drivers.h"

namespace {

namespace tb1 {

/// The reading of kind "E" is handed out with its error. Behind the minus of a "W" a second one
/// turns the sign round again, as the number itself wouldn't have it.
Outcome judgeByKind(Frame frame, Outputs& outputs) {
  constexpr std::size_t kKind = 3;
  constexpr std::size_t kSign = 4;
  switch (frame[kKind]) {
    case 'W':
      if (frame[kSign] == '-') {
        outputs.weight = -NumberField{.at = kSign + 1, .size = 6}.in(frame).number;
      }
      return endPoll();
    case 'N': outputs.weight = -outputs.weight; return endPoll();
    case 'E': return endPoll(kUnknown);
    default: outputs.weight = 0.0; return endPoll(kUnknown);
  }
}

}  // namespace tb1

}  // namespace

// ScalesTBE: a line of blanks and a number, of 11 characters with CR LF or of 12 with a CR alone.
//
//   > 47 31 0D 0A                                 "G1" CR LF
//   < 20 20 20 20 20 20 31 2E 32 35 30 20 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13
//     |  weight: "     1.250 "            CR LF
//
// A line of blanks alone is a good zero: behind them stands its CR, so that no walk over the blanks
// gets to the end of the line.
constinit const ProtocolSheet kSheetOfTBE = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = {.first = "G1\r\n"},
    .read = StartByteRead{.length = 14, .start = {' '}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{12, '\r'}, {13, '\n'}},
    .orFixed = {{13, '\r'}},
    .weight = {.at = 1,
               .size = 12,
               .written = kNumberText,
               .step = 1000.0,
               .cut = NumberField::Cut::To64Bits},
    .motion = kAlwaysMoving,
    .weightUnit = WeightUnit::Gram,
    .commands = {.tare = Command{.bytes = "ST\r\n", .pause_ms = 150}},
};

// ScalesTB1: the kind of the reading and a number with its sign, of 6 characters with a CR and one
// byte more, or of 7 with a CR.
//
//   > 47 30 31 57 0D 0A                     "G01W" CR LF
//   < 52 30 31 57 2D 30 31 2E 32 35 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11
//     "R"-- -- |  weight: "-01.25"  CR --
//              `- 57 "W" weight, 4E "N" negative, 45 "E" error
constinit const ProtocolSheet kSheetOfTB1 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = {.first = "G01W\r\n"},
    .read = StartByteRead{.length = 12, .start = {'R'}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{10, '\r'}},
    .orFixed = {{11, '\r'}},
    .weight = {.at = 4, .size = 7, .written = kNumberText},
    .motion = kAlwaysMoving,
    .judge = tb1::judgeByKind,
    .weightUnit = WeightUnit::Kilogram,
    .commands = {.tare = Command{.bytes = "S01T\r\n", .pause_ms = 150}},
};

// ScalesAxis_BTU: a line that begins with a blank or a minus.
//
//   > 53 49 0D 0A                                       "SI" CR LF
//   < 2D 20 20 20 20 31 2E 32 33 34 20 6B 67 20 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15
//     weight: "-    1.234"          -- -- -- -- CR LF
constinit const ProtocolSheet kSheetOfAxis_BTU = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = "SI\r\n"},
    .read = StartByteRead{.length = 16, .start = {' ', '-'}, .wrongByte = kCostsAsSilence},
    .asking = kTwice_500ms,
    .fixed = {{14, '\r'}, {15, '\n'}},
    .weight = {.at = 0,
               .size = 10,
               .written =
                   TextNotation{.minus = Take::Restart, .blank = Take::Zero, .other = Take::Zero},
               .step = 1000.0,
               .cut = NumberField::Cut::To64Bits},
    .motion = kAlwaysAtRest,
    .weightUnit = WeightUnit::Gram,
    .commands = {.tare = Command{.bytes = "ST\r\n", .pause_ms = 150}},
};
