#include "JadeverScales.h"

#include "FrameFields.h"

// ScalesJADEVER_SNUGII: the scale transmits lines by itself; the CR in front is the end of the
// line before.
//
//   < 0D 0A 53 54 20 47 53 20 2D 20 20 20 20 20 20 20 31 2E 32 35 30 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17 18 19 20 21 22
//     CR    |     bl       bl |     weight: "      1.250"           CR LF
//           `- 53 stable      `- 2D negative
namespace snug2 {
enum Offset : std::size_t {
  kStart = 0,
  kLf = kStart + 1,
  kStatus = kLf + 1,
  kStatus2 = kStatus + 1,
  kBlank1 = kStatus2 + 1,
  kMode = kBlank1 + 1,
  kBlank2 = kMode + 2,
  kSign = kBlank2 + 1,
  kGap = kSign + 1,
  kWeight = kGap + 1,
  kCr = kWeight + 11,
  kLast = kCr + 1,
  kSize = kLast + 1,
};
static_assert(kSize == 23);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kCr] == '\r' && frame[kLast] == '\n' &&
         frame[kBlank1] == ' ' && frame[kBlank2] == ' ';
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = withSign(unsignedNumberIn(frame.subspan(kWeight, kCr - kWeight)), frame[kSign]);
  reading.stable = frame[kStatus] == 'S' ? 1 : 0;
  return endPoll();
}

}  // namespace
}  // namespace snug2

constinit const ProtocolSheet ScalesJADEVER_SNUGII::kSheet = {
    .read = HuntingRead{.length = snug2::kSize, .start = {'\r'}},
    .oneBudgetForAll = true,
    .isGood = snug2::isGood,
    .parse = snug2::parse,
};

// ScalesJADEVER_JPL_N: bare digits as characters, units first, without start, end or checksum.
//
//   > 00 00 03 00 00 00 00 00
//   < 34 33 32 31 30 30 30 35 32 31 30 32 34 35 31 30 30
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16
//     weight: 1.234     price: 12.50   cost: 15.42
namespace jpl {
namespace {

using Digits = DigitFrame<5, backwardsNumberIn>;
static_assert(Digits::kSize == 17);

Outcome parse(Frame frame, Reading& reading) {
  Digits::read(frame, 0.001, 0.01, reading);
  reading.stable = 1;
  return endPoll();
}

/// Goes out twice: a scale that misses the first still gets the price, and one that gets both sees
/// the same price twice.
std::optional<Command> price(long price) {
  return Command{.bytes = priceFrame({0x00, 0x00, 0x02}, price),
                 .pause_ms = 200,
                 .times = 2,
                 .afterwards = Command::Afterwards::ReadOnce};
}

}  // namespace
}  // namespace jpl

constinit const ProtocolSheet ScalesJADEVER_JPL_N::kSheet = {
    .atEntry = AtEntry::Stable,
    .request = {.first = {0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x00, 0x00}},
    // With the bound above the frame a good poll, too, lasts its whole budget.
    .read = LengthRead{.length = jpl::Digits::kSize, .excessBound = 1},
    .budget_ms = 300,
    .isGood = jpl::Digits::isGood,
    .parse = jpl::parse,
    .tare = Command{.bytes = {0x00, 0x00, 0x01}, .pause_ms = 150},
    .price = jpl::price,
    .moneyUnit = MoneyUnit::Whole,
};
