#include "PrompriborScales.h"

#include <array>

#include "FrameFields.h"

// CScalesVTA5: bare binary digits, units first, without start, end or checksum.
//
//   > 00 00 03
//   < 00 05 02 01 00 00 00 00 05 02 00 00 05 02 01 03 00 00
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17
//     weight: 1250      price: 2500       cost: 3125
namespace vta5 {
namespace {

using Digits = DigitFrame<6, backwardsBinaryNumberIn>;
static_assert(Digits::kSize == 18);

/// Only a weight that equals the cost is held against the price: bytes that slipped by a field
/// show themselves so. The numbers of a frame that fails are handed out all the same.
Outcome parse(Frame frame, Reading& reading) {
  Digits::read(frame, 1.0, 1.0, reading);
  if (reading.weight != reading.cost) return endPoll();
  const double cost = (reading.weight / 1000.0) * (reading.price / 100.0) * 100.0;
  return cutTo32(cost) == reading.cost ? endPoll() : askAgain(kNoConnection);
}

std::optional<Command> price(long price) {
  return Command{.bytes = priceFrame({0x00, 0x00, 0x02}, price)};
}

}  // namespace
}  // namespace vta5

constinit const ProtocolSheet CScalesVTA5::kSheet = {
    .line = {.parity = COMPort::Even},
    .atEntry = AtEntry::Stable,
    .request = {.first = {0x00, 0x00, 0x03}},
    .read = LengthRead{.length = vta5::Digits::kSize},
    .budget_ms = 300,
    .isGood = vta5::Digits::isGood,
    .parse = vta5::parse,
    .tare = Command{.bytes = {0x00, 0x00, 0x01}, .pause_ms = 150},
    .price = vta5::price,
    .weightUnit = WeightUnit::Gram,
    .moneyUnit = MoneyUnit::Hundredth,
};

// Both VN scales: commands between "<" and ">" with an address, which is always 0, and a status
// byte with the place of the decimal point in it.
namespace vn {
namespace {

constexpr std::uint8_t kAddress = 0x00;
constexpr Request kAsk = {.first = {'<', kAddress, '!', '>'}};
constexpr Command kTare = {.bytes = {'<', kAddress, 'T', '>'}, .pause_ms = 150};

constexpr std::uint8_t kDecimalCode = 0x03;
constexpr std::uint8_t kStable = 0x04;
constexpr std::uint8_t kNegative = 0x20;

/// Grams in a unit of the last digit shown, by decimal code.
constexpr std::array<double, 4> kGrams = {1000.0, 100.0, 10.0, 1.0};

double grams(double shown, std::uint8_t status) {
  return static_cast<double>(cutTo64(shown * kGrams.at(status & kDecimalCode)));
}

}  // namespace
}  // namespace vn

// ScalesVN_A_CI: the weight in characters.
//
//   > 3C 00 21 3E
//   < 3C 00 30 30 31 32 35 30 07 3E
//     00 01 02 03 04 05 06 07 08 09
//     "<"   weight: "001250"  |  ">"
//                             `- 03 decimal code, 04 stable
namespace vnA {
enum Offset : std::size_t {
  kStart = 0,
  kAddress = kStart + 1,
  kWeight = kAddress + 1,
  kStatus = kWeight + 6,
  kEnd = kStatus + 1,
  kSize = kEnd + 1,
};
static_assert(kSize == 10);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kStart] == '<' && frame[kEnd] == '>';
}

Outcome parse(Frame frame, Reading& reading) {
  const double shown = zeroFilledNumberIn(frame.subspan(kWeight, kStatus - kWeight));
  reading.weight = vn::grams(shown, frame[kStatus]);
  reading.stable = (frame[kStatus] & vn::kStable) != 0 ? 1 : 0;
  return endPoll();
}

}  // namespace
}  // namespace vnA

constinit const ProtocolSheet ScalesVN_A_CI::kSheet = {
    .request = vn::kAsk,
    .read = StartByteRead{.length = vnA::kSize, .start = {'<'}},
    .isGood = vnA::isGood,
    .parse = vnA::parse,
    .tare = vn::kTare,
    .weightUnit = WeightUnit::Gram,
};

// ScalesVN_220_CI_OLD: the weight in packed decimal digits.
//
//   > 3C 00 21 3E
//   < 3C 00 00 12 50 07 3E
//     00 01 02 03 04 05 06
//     "<"   001250   |  ">"
//                    `- 03 decimal code, 04 stable, 20 negative
namespace vn220 {
enum Offset : std::size_t {
  kStart = 0,
  kAddress = kStart + 1,
  kWeight = kAddress + 1,
  kStatus = kWeight + 3,
  kEnd = kStatus + 1,
  kSize = kEnd + 1,
};
static_assert(kSize == 7);

namespace {

/// The flag is taken from every frame of the right length, also from one that then fails.
void glance(Frame frame, Reading& reading) {
  if (frame.size() == kSize) reading.stable = (frame[kStatus] & vn::kStable) != 0 ? 1 : 0;
}

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kStart] == '<' && frame[kEnd] == '>';
}

/// Nibbles D and F stand for a dark digit, a zero. Any other that is no digit means that the
/// block has lost its place: the port is closed and the poll over.
bool addNibble(NumberText& text, unsigned nibble) {
  const bool dark = nibble == 0x0D || nibble == 0x0F;
  if (nibble > 9 && !dark) return false;
  text.add(static_cast<std::uint8_t>('0' + (dark ? 0 : nibble)));
  return true;
}

Outcome parse(Frame frame, Reading& reading) {
  NumberText text;
  for (const std::uint8_t byte : frame.subspan(kWeight, kStatus - kWeight)) {
    if (!addNibble(text, byte >> 4U) || !addNibble(text, byte & 0x0FU)) {
      reading.weight = 0.0;
      return hangUp(kNoAnswer);
    }
  }
  const std::uint8_t status = frame[kStatus];
  reading.weight = vn::grams(text.value(), status) * ((status & vn::kNegative) != 0 ? -1 : 1);
  return endPoll();
}

}  // namespace
}  // namespace vn220

constinit const ProtocolSheet ScalesVN_220_CI_OLD::kSheet = {
    .request = vn::kAsk,
    .read = StartByteRead{.length = vn220::kSize, .start = {'<'}},
    .glance = vn220::glance,
    .isGood = vn220::isGood,
    .parse = vn220::parse,
    .tare = vn::kTare,
    .weightUnit = WeightUnit::Gram,
};
