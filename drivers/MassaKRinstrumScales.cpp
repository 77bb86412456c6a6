#include "Drivers.h"

namespace {

namespace massaK {

Outcome clearMoney(Frame /*frame*/, Outputs& outputs) {
  outputs.price = 0.0;
  outputs.cost = 0.0;
  return endPoll();
}

}  // namespace massaK

}  // namespace

// ScalesMASSAK_MK_TB__MK_TH: one byte asked, a signed count answered.
//
//   > 45                                        "E"
//   < E2 04
//     00 01
//     1250
constinit const ProtocolSheet kSheetOfMASSAK_MK_TB__MK_TH = {
    .line = k8E1,
    .atEntry = AtEntry::Moving,
    .drainSize = kLargeDrain,
    .request = {.first = {'E'}},
    .read = LengthRead{.length = 2},
    .asking = kThreeTimes_300ms,
    .fixed = kNothingFixed,
    .weight = {.at = 0, .size = 2, .written = BinaryNotation{std::endian::little, true}},
    .motion = kAlwaysMoving,
    .judge = massaK::clearMoney,
    .weightUnit = WeightUnit::AsShown,
    .commands = kNoCommands,
    .closeOnException = false,
};

// Scales_R320: a line of text. Blanks are stepped over, also inside the number. A line without a
// number ends the poll.
//
//   > 32 30 30 35 30 30 32 37 3A 0D 0A            "20050027:" CR LF
//   < 38 31 30 35 30 30 32 37 3A 2D 20 20 20 31 2E 32 35 30 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17 18 19
//     -- -- -- -- -- -- -- -- -- weight: "-   1.250"        CR LF
constinit const ProtocolSheet kSheetOfR320 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = "20050027:\r\n"},
    .read = TerminatorRead{.capacity = 30,
                           .minLength = 11,
                           .end = "\r\n",
                           .match = TerminatorRead::Match::Sequence},
    .asking = kThreeTimes_500ms,
    .fixed = {{-2, '\r'}, {-1, '\n'}},
    .weight = {.at = 9,
               .size = NumberField::kToTheEnd,
               .written = TextNotation{.blank = Take::Drop, .other = Take::End},
               .step = 1000.0,
               .cut = NumberField::Cut::To64Bits},
    .motion = kAlwaysMoving,
    .withoutWeight = kNoAnswer,
    .weightUnit = WeightUnit::Gram,
    .commands = kNoCommands,
};
