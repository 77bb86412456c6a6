#include "CamryOcsDigiCertusScales.h"

#include <algorithm>
#include <array>

#include "FrameFields.h"

// CScalesCamry: bare digits as characters, units first, without start, end or checksum.
//
//   > 00 00 03 00 00 00 00 00
//   < 35 32 31 30 30 30 30 30 35 32 31 32 36 35 31 30 30
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16
//     weight: 0.125     price: 125.00  cost: 15.62
namespace camry {
namespace {

using Digits = DigitFrame<5, backwardsNumberIn>;
static_assert(Digits::kSize == 17);

Outcome parse(Frame frame, Reading& reading) {
  Digits::read(frame, 0.001, 0.01, reading);
  return endPoll();
}

}  // namespace
}  // namespace camry

constinit const ProtocolSheet CScalesCamry::kSheet = {
    .line = {.parity = COMPort::Even, .stopBits = COMPort::Two},
    .atEntry = AtEntry::Stable,
    .drainSize = kSmallDrain,
    .request = {.first = {0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x00, 0x00}},
    .read = LengthRead{.length = camry::Digits::kSize},
    .budget_ms = 300,
    .isGood = camry::Digits::isGood,
    .parse = camry::parse,
    .moneyUnit = MoneyUnit::Whole,
};

// CScalesOCSrc: the scale transmits by itself. The digit in front of the decimal point is sent as
// the sign that stands above it on a keyboard.
//
//   < 7F 30 30 35 32 21 30 01 17
//     00 01 02 03 04 05 06 07 08
//     |     weight: "01.250" |  XOR of 01 to 07
//     fixed (units first)    `- 01 stable
namespace ocs {
enum Offset : std::size_t {
  kStart = 0,
  kAddress = kStart + 1,
  kWeight = kAddress + 1,
  kFlags = kWeight + 5,
  kChecksum = kFlags + 1,
  kSize = kChecksum + 1,
};
static_assert(kSize == 9);

namespace {

constexpr std::uint8_t kStable = 0x01;

/// The signs by the digit that they stand for.
constexpr std::array<std::uint8_t, 10> kDigitWithPoint = {')', '!', '@', '#', '$',
                                                          '%', '^', '&', '*', '('};

bool isGood(Frame frame) {
  if (frame.size() != kSize || frame[kStart] != 0x7F) return false;
  std::uint8_t sum = 0;
  for (const std::uint8_t byte : frame.subspan(kAddress, kChecksum - kAddress)) sum ^= byte;
  return sum == frame[kChecksum];
}

Outcome parse(Frame frame, Reading& reading) {
  NumberText text;
  const Frame field = frame.subspan(kWeight, kFlags - kWeight);
  std::for_each(field.rbegin(), field.rend(), [&](std::uint8_t byte) {
    const auto* sign = std::find(kDigitWithPoint.begin(), kDigitWithPoint.end(), byte);
    if (sign != kDigitWithPoint.end()) {
      text.add(static_cast<std::uint8_t>('0' + (sign - kDigitWithPoint.begin())));
      text.add('.');
    } else if (isDigit(byte) || byte == '-') {
      text.add(byte);
    }
  });
  reading.weight = text.value();
  reading.stable = frame[kFlags] & kStable;
  return endPoll();
}

}  // namespace
}  // namespace ocs

constinit const ProtocolSheet CScalesOCSrc::kSheet = {
    .read = HuntingRead{.length = ocs::kSize, .start = {0x7F}},
    .isGood = ocs::isGood,
    .parse = ocs::parse,
};

// Scales_DIGI788: records that end in CR, the whole in LF.
//
//   > 05
//   < 30 42 0D 30 30 30 31 2E 32 35 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11
//        |  CR "0" weight: "001.25" CR to LF, not seen
//        `- 02 stable, 04 negative
namespace digi {
enum Offset : std::size_t {
  kHeader = 0,
  kStatus = kHeader + 1,
  kCr1 = kStatus + 1,
  kRecord = kCr1 + 1,
  kWeight = kRecord + 1,
  kCr2 = kWeight + 6,
  kShortest = kCr2 + 1,
};
static_assert(kShortest == 11);

namespace {

constexpr std::uint8_t kStable = 0x02;
constexpr std::uint8_t kNegative = 0x04;

bool isGood(Frame frame) {
  return frame.size() >= kShortest && frame.back() == '\n' && frame[kCr1] == '\r' &&
         frame[kRecord] == '0' && frame[kCr2] == '\r';
}

/// A dash in the number is a place without a digit, not a sign.
Outcome parse(Frame frame, Reading& reading) {
  NumberText text;
  for (const std::uint8_t byte : frame.subspan(kWeight, kCr2 - kWeight)) {
    text.add(byte == '-' ? '0' : byte);
  }
  const std::uint8_t status = frame[kStatus];
  reading.weight = text.value();
  if ((status & kNegative) != 0) reading.weight = -reading.weight;
  reading.stable = (status & kStable) != 0 ? 1 : 0;
  return endPoll();
}

}  // namespace
}  // namespace digi

constinit const ProtocolSheet Scales_DIGI788::kSheet = {
    .request = {.first = {0x05}},
    .read = TerminatorRead{.capacity = kMaxFrame, .minLength = digi::kShortest, .end = {'\n'}},
    .attempts = 2,
    .isGood = digi::isGood,
    .parse = digi::parse,
};

// ScalesCertusCBA: the scale transmits lines by itself; the CR in front is the end of the line
// before.
//
//   < 0D 0A 53 54 2C 47 53 2D 20 20 20 31 2E 32 35 20 6B 67 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17 18 19
//     CR    |              |  weight: "   1.25"    not seen CR LF
//           `- 53 stable   `- 2D negative
namespace certus {
enum Offset : std::size_t {
  kStart = 0,
  kLf = kStart + 1,
  kStatus = kLf + 1,
  kMode = kStatus + 1,
  kSign = kMode + 4,
  kWeight = kSign + 1,
  kUnit = kWeight + 7,
  kCr = kUnit + 3,
  kLast = kCr + 1,
  kSize = kLast + 1,
};
static_assert(kSize == 20);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kCr] == '\r' && frame[kLast] == '\n';
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight =
      withSign(unsignedNumberIn(frame.subspan(kWeight, kUnit - kWeight)), frame[kSign]);
  reading.stable = frame[kStatus] == 'S' ? 1 : 0;
  return endPoll();
}

}  // namespace
}  // namespace certus

constinit const ProtocolSheet ScalesCertusCBA::kSheet = {
    .read = HuntingRead{.length = certus::kSize, .start = {'\r'}},
    .oneBudgetForAll = true,
    .isGood = certus::isGood,
    .parse = certus::parse,
};
