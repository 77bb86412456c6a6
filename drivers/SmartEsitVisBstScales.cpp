#include "Drivers.h"

namespace {

namespace esitSmart2 {

/// The digit in front of the decimal point has its top bit set.
std::uint8_t digitBeforePoint(std::uint8_t byte) {
  constexpr std::uint8_t kTopBit = 0x80;
  constexpr std::uint8_t kLowest = kTopBit | '0';
  return byte >= kLowest ? static_cast<std::uint8_t>(byte - kTopBit) : std::uint8_t{0};
}

}  // namespace esitSmart2

}  // namespace

// CScalesSMART: the scale transmits by itself.
//
//   < 02 2D 30 30 31 2E 32 35 30 6B 67 20 0D
//     00 01 02 03 04 05 06 07 08 09 10 11 12
//     STX|  weight: "001.250"    -- -- |  CR
//        `- 2D negative                `- 20 stable
constinit const ProtocolSheet kSheetOfSMART = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = kNoRequest,
    .read = StartByteRead{.length = 13, .start = {0x02}, .wrongByte = kCostsOne_ms},
    .asking = kThreeTimes_500ms,
    .fixed = {{0, 0x02}, {12, '\r'}},
    .weight = {.at = 2, .size = 7, .written = kNumberText, .negative = byteIs(1, '-')},
    .motion = atRestIf(byteIs(11, ' ')),
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// CScalesESITSMART2: the scale transmits by itself.
//
//   < 2D 30 B1 32 35 30 0D
//     00 01 02 03 04 05 06
//     |  weight: "01.250" CR
//     `- 2B, or 2D if negative
constinit const ProtocolSheet kSheetOfESITSMART2 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = kNoRequest,
    .read = StartByteRead{.length = 7, .start = {'+', '-'}, .wrongByte = kCostsOne_ms},
    .asking = kThreeTimes_500ms,
    .fixed = {{0, {'+', '-'}}, {6, '\r'}},
    .weight = {.at = 1,
               .size = 5,
               .written = TextNotation{.beforePoint = esitSmart2::digitBeforePoint},
               .negative = byteIs(0, '-')},
    .motion = kAlwaysAtRest,
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// ScalesESIT_ECI_STATIC: a line of text.
//
//   > 57 0D                                 "W" CR
//   < 20 20 20 2D 31 2E 32 35 30 20 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11
//     weight: "   -1.250 "          CR LF
constinit const ProtocolSheet kSheetOfESIT_ECI_STATIC = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = {.first = "W\r"},
    .read = LengthRead{.length = 12},
    .asking = kThreeTimes_500ms,
    .fixed = {{10, '\r'}, {11, '\n'}},
    .weight = {.at = 0, .size = 10, .written = kNumberText},
    .motion = kAlwaysMoving,
    .weightUnit = WeightUnit::Kilogram,
    .commands = {.tare = Command{.bytes = "T\r", .pause_ms = 150}},
};

// ScalesVIS318L: the scale transmits lines by itself; the LF in front is the end of the line
// before.
//
//   < 0A 53 54 2C 47 53 2C 2D 20 31 32 2E 33 34 35 6B 67 0D
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17
//     LF |     -- -- -- -- weight: "- 12.345"      -- -- CR
//        `- 53 54 "ST" stable
constinit const ProtocolSheet kSheetOfVIS318L = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = kNoRequest,
    .read = StartByteRead{.length = 18, .start = {'\n'}, .wrongByte = kCostsOne_ms},
    .asking = kThreeTimes_500ms,
    .fixed = {{0, '\n'}, {17, '\r'}},
    .weight = {.at = 7, .size = 8, .written = kNumberText},
    .motion = atRestIf(byteIs(1, 'S'), byteIs(2, 'T')),
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// ScalesBST106: Modbus RTU to station 01.
//
//   > 01 03 00 02 00 03 A4 0B
//   < 01 03 06 00 00 04 E2 20 00 99 B3
//     00 01 02 03 04 05 06 07 08 09 10
//     fixed    weight: 1250 |  -- -- --
//                           `- 20 stable
constinit const ProtocolSheet kSheetOfBST106 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = {.first = {0x01, 0x03, 0x00, 0x02, 0x00, 0x03, 0xA4, 0x0B}},
    .read = LengthRead{.length = 11},
    .asking = kThreeTimes_300ms,
    .fixed = {{0, 0x01}, {1, 0x03}, {2, 0x06}},
    .weight = {.at = 3, .size = 4, .written = BinaryNotation{std::endian::big, true}},
    .motion = atRestIf(bitOf(7, 0x20)),
    .weightUnit = WeightUnit::AsShown,
    // Writes A50B to register 0007.
    .commands = {.tare = Command{.bytes = {0x01, 0x06, 0x00, 0x07, 0xA5, 0x0B, 0x02, 0x9C},
                                 .pause_ms = 150}},
};
