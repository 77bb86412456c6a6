#include "Drivers.h"
#include "Numbers.h"

namespace {

namespace vta5 {

/// Only a weight that equals the cost is held against the price: bytes that slipped by a field
/// show themselves so. The numbers of a frame that fails are handed out all the same.
Outcome holdAgainstPrice(Frame /*frame*/, Outputs& outputs) {
  if (outputs.weight != outputs.cost) return endPoll();
  const double cost = (outputs.weight / 1000.0) * (outputs.price / 100.0) * 100.0;
  return cutTo32(cost) == outputs.cost ? endPoll() : askAgain(kNoConnection);
}

}  // namespace vta5

namespace vn220 {

constexpr std::size_t kWeightAt = 2;
constexpr std::size_t kWeightSize = 3;

constexpr bool isOutOfPlace(unsigned nibble) {
  return nibble > 9 && nibble != 0x0D && nibble != 0x0F;
}

/// A nibble that is neither a digit nor a dark place means that the block has lost its place: the
/// port is closed and the poll over.
Outcome holdAgainstDigits(Frame frame, Outputs& outputs) {
  for (const std::uint8_t byte : frame.subspan(kWeightAt, kWeightSize)) {
    if (!isOutOfPlace(byte >> 4U) && !isOutOfPlace(byte & 0x0FU)) continue;
    outputs.weight = 0.0;
    return hangUp(kNoAnswer);
  }
  return endPoll();
}

}  // namespace vn220

}  // namespace

// CScalesVTA5: bare binary digits, units first.
//
//   > 00 00 03
//   < 00 05 02 01 00 00 00 00 05 02 00 00 05 02 01 03 00 00
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17
//     weight: 1250      price: 2500       cost: 3125
constinit const ProtocolSheet kSheetOfVTA5 = {
    .line = k8E1,
    .atEntry = AtEntry::Stable,
    .drainSize = kLargeDrain,
    .request = {.first = {0x00, 0x00, 0x03}},
    .read = LengthRead{.length = 18},
    .asking = kThreeTimes_300ms,
    .fixed = kNothingFixed,
    .weight = {.at = 0, .size = 6, .written = kValuesUnitsFirst},
    .price = {.at = 6, .size = 6, .written = kValuesUnitsFirst},
    .cost = {.at = 12, .size = 6, .written = kValuesUnitsFirst},
    .motion = kAlwaysAtRest,
    .judge = vta5::holdAgainstPrice,
    .weightUnit = WeightUnit::Gram,
    .moneyUnit = MoneyUnit::Hundredth,
    .commands = {.tare = Command{.bytes = {0x00, 0x00, 0x01}, .pause_ms = 150},
                 .price =
                     PriceCommand{.head = {.bytes = {0x00, 0x00, 0x02}, .pause_ms = 0}, .zero = 0}},
};

// ScalesVN_A_CI: characters between "<" and ">". The second byte of a command is the address,
// always 0.
//
//   > 3C 00 21 3E                                 "<" 00 "!" ">"
//   < 3C 00 30 30 31 32 35 30 07 3E
//     00 01 02 03 04 05 06 07 08 09
//     "<"-- weight: "001250"  |  ">"
//                             `- 03 number of decimals, 04 stable
constinit const ProtocolSheet kSheetOfVN_A_CI = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = {.first = {'<', 0x00, '!', '>'}},
    .read = StartByteRead{.length = 10, .start = {'<'}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{0, '<'}, {9, '>'}},
    .weight = {.at = 2,
               .size = 6,
               .written = TextNotation{.minus = Take::Restart,
                                       .point = Take::Zero,
                                       .blank = Take::Zero,
                                       .other = Take::Zero},
               .decimals = {.at = 8, .mask = 0x03, .zero = 0, .factors = kGramsOfDecimals},
               .cut = NumberField::Cut::To64Bits},
    .motion = atRestIf(bitOf(8, 0x04)),
    .weightUnit = WeightUnit::Gram,
    .commands = {.tare = Command{.bytes = {'<', 0x00, 'T', '>'}, .pause_ms = 150}},
};

// ScalesVN_220_CI_OLD: packed decimal digits between "<" and ">".
//
//   > 3C 00 21 3E                                 "<" 00 "!" ">"
//   < 3C 00 00 12 50 07 3E
//     00 01 02 03 04 05 06
//     "<"-- 001250   |  ">"
//                    `- 03 number of decimals, 04 stable, 20 negative
constinit const ProtocolSheet kSheetOfVN_220_CI_OLD = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = {.first = {'<', 0x00, '!', '>'}},
    .read = StartByteRead{.length = 7, .start = {'<'}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{0, '<'}, {6, '>'}},
    .weight = {.at = vn220::kWeightAt,
               .size = vn220::kWeightSize,
               .written = PackedNotation{},
               .negative = bitOf(5, 0x20),
               .decimals = {.at = 5, .mask = 0x03, .zero = 0, .factors = kGramsOfDecimals},
               .cut = NumberField::Cut::To64Bits},
    .motion = atRestIf(bitOf(5, 0x04)),
    .motionOfBadFrames = true,
    .judge = vn220::holdAgainstDigits,
    .weightUnit = WeightUnit::Gram,
    .commands = {.tare = Command{.bytes = {'<', 0x00, 'T', '>'}, .pause_ms = 150}},
};
