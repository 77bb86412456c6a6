#include <array>

#include "Drivers.h"

namespace {

namespace iqPlus {

/// The terminal has no price.
constexpr std::array<SetupCommand, 3> kSetup = {
    {{12345, {.bytes = "STREAM=OFF\r\n", .pause_ms = 150}},
     {1, {.bytes = "EX\r\n", .pause_ms = 150}},
     {2, {.bytes = "SX\r\n", .pause_ms = 150}}}};

}  // namespace iqPlus

}  // namespace

// ScalesIQplus355: the terminal repeats the command and then gives a line of text, with a line
// feed in the middle of the number. What is no part of a number counts as a zero.
//
//   > 58 4E 0D 0A                                      "XN" CR LF
//   < 58 4E 0D 0A 20 20 0A 20 20 31 2E 32 35 20 6B 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16
//     "X""N" CR LF 1st  LF weight, 2nd part  -- -- CR LF
constinit const ProtocolSheet kSheetOfIQplus355 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = {.first = "XN\r\n"},
    .read = StartByteRead{.length = 17, .start = {'X'}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{1, 'N'}, {2, '\r'}, {3, '\n'}, {6, '\n'}, {15, '\r'}, {16, '\n'}},
    .weight = {.at = 4,
               .size = 2,
               .thenAt = 7,
               .thenSize = 6,
               .written = TextNotation{.blank = Take::Zero, .other = Take::Zero}},
    .motion = kAlwaysAtRest,
    .weightUnit = WeightUnit::Kilogram,
    .commands = {.tare = Command{.bytes = "KTARE\r\n", .pause_ms = 150}, .setup = iqPlus::kSetup},
};

// Scales_HBMWE2110: a text of no fixed form, up to a CR or an LF. One whose end didn't come in time
// is taken, too. A dash anywhere in it makes the number negative, also behind it.
//
//   > 53 31 3B 4D 53 56 3F 3B                          "S1;MSV?;"
//   < 2D 20 20 31 32 2E 35 0D 0A
//     00 01 02 03 04 05 06 07 08
//     weight: "-  12.5"    CR LF
constinit const ProtocolSheet kSheetOfHBMWE2110 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = "S1;MSV?;"},
    .read = TerminatorRead{.capacity = kMaxFrame,
                           .minLength = 6,
                           .end = {'\r', '\n'},
                           .match = TerminatorRead::Match::AnyOf},
    .asking = kTwice_500ms,
    .fixed = kNothingFixed,
    .weight = {.at = 0,
               .size = NumberField::kToTheEnd,
               .written = TextNotation{.minus = Take::ZeroAndNegate, .blank = Take::Zero}},
    .motion = kAlwaysMoving,
    .weightUnit = WeightUnit::Kilogram,
    .commands = {.tare = Command{.bytes = "S1;TAR;", .pause_ms = 150}},
};

// ScalesICS_NT: bare digits as characters, units first.
//
//   > 00 00 03
//   < 35 32 31 30 30 30 35 32 31 30 30 30 36 31 30 30 30 30
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17
//     weight: 0.125     price: 125        cost: 16
constinit const ProtocolSheet kSheetOfICS_NT = {
    .line = k8E1,
    .atEntry = AtEntry::Stable,
    .drainSize = kLargeDrain,
    .request = {.first = {0x00, 0x00, 0x03}},
    .read = LengthRead{.length = 18},
    .asking = kAlwaysThreeTimes_300ms,
    .fixed = kNothingFixed,
    .weight = {.at = 0, .size = 6, .written = kDigitsUnitsFirst, .step = 0.001},
    .price = {.at = 6, .size = 6, .written = kDigitsUnitsFirst},
    .cost = {.at = 12, .size = 6, .written = kDigitsUnitsFirst},
    .motion = kAlwaysAtRest,
    .weightUnit = WeightUnit::Kilogram,
    .moneyUnit = MoneyUnit::AsCounted,
    .commands = {.tare = Command{.bytes = {0x00, 0x00, 0x01}, .pause_ms = 150},
                 .price = PriceCommand{.head = {.bytes = {0x00, 0x00, 0x02}, .pause_ms = 0},
                                       .zero = '0'}},
};

// CScalesWPT4Radwag: a line of text.
//
//   > 53 55 49 0D 0A                                   "SUI" CR LF
//   < 53 55 49 20 20 2D 20 20 20 20 31 2E 32 35 30 20 6B 67 20 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17 18 19 20
//     "S""U""I"|  -- |  weight: "    1.250"      -- -- -- -- CR LF
//              |     `- 2D negative
//              `- 3F "?" moving
constinit const ProtocolSheet kSheetOfWPT4Radwag = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = "SUI\r\n"},
    .read = StartByteRead{.length = 21, .start = {'S'}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{0, 'S'}, {1, 'U'}, {2, 'I'}, {19, '\r'}, {20, '\n'}},
    .weight = {.at = 6, .size = 9, .written = kNumberText, .negative = byteIs(5, '-')},
    .motion = movingIf(byteIs(3, '?')),
    .weightUnit = WeightUnit::Kilogram,
    .commands = {.tare = Command{.bytes = "I\r\n",
                                 .pause_ms = 600,
                                 .afterwards = Command::Afterwards::Drain}},
};
