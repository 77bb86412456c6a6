#include <algorithm>
#include <array>

#include "Drivers.h"

namespace {

namespace ocs {

/// The digit in front of the decimal point is sent as the sign that stands above it on a keyboard.
struct PointedDigit {
  std::uint8_t sent;
  std::uint8_t digit;
};
constexpr std::array<PointedDigit, 10> kPointedDigits = {{{'!', '1'},
                                                          {'@', '2'},
                                                          {'#', '3'},
                                                          {'$', '4'},
                                                          {'%', '5'},
                                                          {'^', '6'},
                                                          {'&', '7'},
                                                          {'*', '8'},
                                                          {'(', '9'},
                                                          {')', '0'}}};

std::uint8_t digitBeforePoint(std::uint8_t byte) {
  const auto* row = std::ranges::find(kPointedDigits, byte, &PointedDigit::sent);
  return row == kPointedDigits.end() ? std::uint8_t{0} : row->digit;
}

constexpr std::size_t kSum = 8;

std::uint8_t exclusiveOr(Frame frame) {
  std::uint8_t sum = 0;
  for (const std::uint8_t byte : frame.first(kSum).subspan(1)) sum ^= byte;
  return sum;
}

}  // namespace ocs

}  // namespace

// CScalesCamry: bare digits as characters, units first.
//
//   > 00 00 03 00 00 00 00 00
//   < 35 32 31 30 30 30 30 30 35 32 31 32 36 35 31 30 30
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16
//     weight: 0.125     price: 125.00  cost: 15.62
constinit const ProtocolSheet kSheetOfCamry = {
    .line = k8E2,
    .atEntry = AtEntry::Stable,
    .drainSize = kSmallDrain,
    .request = {.first = {0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x00, 0x00}},
    .read = LengthRead{.length = 17},
    .asking = kThreeTimes_300ms,
    .fixed = kNothingFixed,
    .weight = {.at = 0, .size = 6, .written = kDigitsUnitsFirst, .step = 0.001},
    .price = {.at = 6, .size = 5, .written = kDigitsUnitsFirst, .step = 0.01},
    .cost = {.at = 11, .size = 6, .written = kDigitsUnitsFirst, .step = 0.01},
    .motion = kAlwaysAtRest,
    .weightUnit = WeightUnit::Kilogram,
    .moneyUnit = MoneyUnit::Whole,
    .commands = kNoCommands,
};

// CScalesOCSrc: the scale transmits by itself, the last digit first.
//
//   < 7F 30 30 35 32 21 30 01 17
//     00 01 02 03 04 05 06 07 08
//     7F -- weight: "01.250" |  XOR of 01 to 07
//                            `- 01 stable
constinit const ProtocolSheet kSheetOfOCSrc = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = kNoRequest,
    .read = StartByteRead{.length = 9, .start = {0x7F}, .wrongByte = kCostsOne_ms},
    .asking = kThreeTimes_500ms,
    .fixed = {{0, 0x7F}},
    .checksum = {.at = ocs::kSum, .of = ocs::exclusiveOr},
    .weight = {.at = 2,
               .size = 5,
               .written = TextNotation{.point = Take::Drop,
                                       .blank = Take::Drop,
                                       .other = Take::Drop,
                                       .backwards = true,
                                       .beforePoint = ocs::digitBeforePoint}},
    .motion = atRestIf(bitOf(7, 0x01)),
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// Scales_DIGI788: records that end in CR, the whole in LF. A dash in the number is a place without
// a digit, not a sign.
//
//   > 05
//   < 30 42 0D 30 30 30 31 2E 32 35 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11
//     -- |  CR "0" weight: "001.25" CR LF, with anything between the two
//        `- 02 stable, 04 negative
constinit const ProtocolSheet kSheetOfDIGI788 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = {.first = {0x05}},
    .read = TerminatorRead{.capacity = kMaxFrame,
                           .minLength = 11,
                           .end = {'\n'},
                           .match = TerminatorRead::Match::AnyOf},
    .asking = kTwice_500ms,
    .fixed = {{2, '\r'}, {3, '0'}, {10, '\r'}, {-1, '\n'}},
    .weight = {.at = 4,
               .size = 6,
               .written = TextNotation{.minus = Take::Zero},
               .negative = bitOf(1, 0x04)},
    .motion = atRestIf(bitOf(1, 0x02)),
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// ScalesCertusCBA: the scale transmits lines by itself; the CR in front is the end of the line
// before.
//
//   < 0D 0A 53 54 2C 47 53 2D 20 20 20 31 2E 32 35 20 6B 67 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17 18 19
//     CR -- |  -- -- -- -- |  weight: "   1.25"    -- -- -- CR LF
//           `- 53 stable   `- 2D negative
constinit const ProtocolSheet kSheetOfCertusCBA = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = kNoRequest,
    .read = StartByteRead{.length = 20, .start = {'\r'}, .wrongByte = kCostsOne_ms},
    .asking = kThreeTimesIn_500ms,
    .fixed = {{18, '\r'}, {19, '\n'}},
    .weight = {.at = 8, .size = 7, .written = kUnsignedText, .negative = byteIs(7, '-')},
    .motion = atRestIf(byteIs(2, 'S')),
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};
