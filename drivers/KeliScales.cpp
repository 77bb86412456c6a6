#include "Drivers.h"

namespace {

namespace d12 {

/// Writes 0017 to register 0001.
constexpr Command kZero = {.bytes = {0x01, 0x06, 0x00, 0x01, 0x00, 0x17, 0x98, 0x04},
                           .pause_ms = 150};

}  // namespace d12

}  // namespace

// Scales_KELI: a text between STX and ETX. What follows the number in it doesn't count.
//
//   > 02 42 03
//   < 02 4E 57 3A 30 30 30 31 2E 35 30 6B 67 03
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13
//     STX"N""W"":" weight: "0001.50kg"       ETX
constinit const ProtocolSheet kSheetOfKELI = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = {0x02, 'B', 0x03}},
    .read = TerminatorRead{.capacity = kMaxFrame,
                           .minLength = 11,
                           .end = {0x03},
                           .match = TerminatorRead::Match::AnyOf},
    .asking = kTwice_500ms,
    .fixed = {{0, 0x02}, {1, 'N'}, {2, 'W'}, {3, ':'}, {-1, 0x03}},
    .weight = {.at = 4, .size = NumberField::kToTheEnd, .written = kNumberText},
    .motion = kAlwaysAtRest,
    .weightUnit = WeightUnit::Kilogram,
    .commands = {.zero = Command{.bytes = {0x02, 'E', 0x03}, .pause_ms = 0}},
};

// ScalesK9Keli: a frame between STX and ETX.
//
//   > 02 41 44 30 35 03                         STX "AD05" ETX
//   < 02 41 44 2D 30 30 31 32 2E 35 30 30 30 03
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13
//     STX-- "D"|  weight: "0012.50"    -- -- ETX
//              `- 2D negative
constinit const ProtocolSheet kSheetOfK9Keli = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = {0x02, 'A', 'D', '0', '5', 0x03}},
    .read = StartByteRead{.length = 14, .start = {0x02}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{2, 'D'}, {13, 0x03}},
    .weight = {.at = 4, .size = 7, .written = kNumberText, .negative = byteIs(3, '-')},
    .motion = kAlwaysMoving,
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// ScalesD12Keli: Modbus RTU to station 01; the registers hold characters.
//
//   > 01 03 00 03 00 04 B4 09
//   < 01 03 08 30 30 31 32 35 30 30 33 C0 F3
//     00 01 02 03 04 05 06 07 08 09 10 11 12
//     fixed -- weight: "0012500"    |  -- --
//                                   `- number of decimals
constinit const ProtocolSheet kSheetOfD12Keli = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = {0x01, 0x03, 0x00, 0x03, 0x00, 0x04, 0xB4, 0x09}},
    .read = StartByteRead{.length = 13, .start = {0x01}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{0, 0x01}, {1, 0x03}},
    .weight = {.at = 3,
               .size = 7,
               .written = kNumberText,
               .decimals = {.at = 10, .zero = '0', .factors = decimalsUpTo(5)}},
    .motion = kAlwaysMoving,
    .weightUnit = WeightUnit::Kilogram,
    .commands = {.tare = d12::kZero, .zero = d12::kZero},
};

// ScalesT7E: the scale transmits by itself, its text written backwards.
//
//   < 3D 35 32 31 2E 30 30 30
//     00 01 02 03 04 05 06 07
//     "=" weight: "000.125"
constinit const ProtocolSheet kSheetOfT7E = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = kNoRequest,
    .read = StartByteRead{.length = 8, .start = {'='}, .wrongByte = kCostsOne_ms},
    .asking = kThreeTimesIn_500ms,
    .fixed = kNothingFixed,
    .weight = {.at = 1, .size = 7, .written = TextNotation{.backwards = true}},
    .motion = kAlwaysMoving,
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};
