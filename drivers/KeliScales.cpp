#include "KeliScales.h"

#include <algorithm>

#include "FrameFields.h"

// Scales_KELI: a text between STX and ETX.
//
//   > 02 42 03
//   < 02 4E 57 3A 30 30 30 31 2E 35 30 6B 67 03
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13
//     STX"N""W"":" weight: "0001.50kg"       ETX
namespace keli {
enum Offset : std::size_t {
  kStx = 0,
  kName = kStx + 1,
  kName2 = kName + 1,
  kColon = kName2 + 1,
  kWeight = kColon + 1,
  kShortest = 11,
};

namespace {

constexpr std::uint8_t kEtx = 0x03;

bool isGood(Frame frame) {
  return frame.size() >= kShortest && frame.back() == kEtx && frame[kStx] == 0x02 &&
         frame[kName] == 'N' && frame[kName2] == 'W' && frame[kColon] == ':';
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = numberIn(frame.first(frame.size() - 1).subspan(kWeight));
  reading.stable = 1;
  return endPoll();
}

}  // namespace
}  // namespace keli

constinit const ProtocolSheet Scales_KELI::kSheet = {
    .drainSize = kSmallDrain,
    .request = {.first = {0x02, 'B', 0x03}},
    .read =
        TerminatorRead{.capacity = kMaxFrame, .minLength = keli::kShortest, .end = {keli::kEtx}},
    .attempts = 2,
    .isGood = keli::isGood,
    .parse = keli::parse,
    .zero = Command{.bytes = {0x02, 'E', 0x03}},
};

// ScalesK9Keli: a frame between STX and ETX.
//
//   > 02 41 44 30 35 03
//   < 02 41 44 2D 30 30 31 32 2E 35 30 30 30 03
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13
//     STX   "D"|  weight: "0012.50"    not   ETX
//              `- 2D negative
namespace k9 {
namespace {

Outcome parse(Frame frame, Reading& reading) {
  reading.weight =
      withSign(numberIn(IndicatorFrame::weightOf(frame)), IndicatorFrame::signOf(frame));
  reading.stable = 0;
  return endPoll();
}

}  // namespace
}  // namespace k9

constinit const ProtocolSheet ScalesK9Keli::kSheet = {
    .drainSize = kSmallDrain,
    .request = {.first = IndicatorFrame::kAsk},
    .read = StartByteRead{.length = IndicatorFrame::kSize, .start = {0x02}},
    .isGood = IndicatorFrame::isGood,
    .parse = k9::parse,
};

// ScalesD12Keli: Modbus RTU to station 01; the registers hold characters.
//
//   > 01 03 00 03 00 04 B4 09
//   < 01 03 08 30 30 31 32 35 30 30 33 C0 F3
//     00 01 02 03 04 05 06 07 08 09 10 11 12
//     fixed    weight: "0012500"    |  CRC, not seen
//                                   `- number of decimals
namespace d12 {
enum Offset : std::size_t {
  kStation = 0,
  kFunction = kStation + 1,
  kByteCount = kFunction + 1,
  kWeight = kByteCount + 1,
  kDecimals = kWeight + 7,
  kCrc = kDecimals + 1,
  kSize = kCrc + 2,
};
static_assert(kSize == 13);

namespace {

constexpr int kMostDecimals = 5;

/// Writes 0017 to register 0001.
constexpr Command kZero = {.bytes = {0x01, 0x06, 0x00, 0x01, 0x00, 0x17, 0x98, 0x04},
                           .pause_ms = 150};

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kStation] == 0x01 && frame[kFunction] == 0x03;
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = withDecimals(numberIn(frame.subspan(kWeight, kDecimals - kWeight)),
                                frame[kDecimals] - '0', kMostDecimals);
  reading.stable = 0;
  return endPoll();
}

}  // namespace
}  // namespace d12

constinit const ProtocolSheet ScalesD12Keli::kSheet = {
    .drainSize = kSmallDrain,
    .request = {.first = {0x01, 0x03, 0x00, 0x03, 0x00, 0x04, 0xB4, 0x09}},
    .read = StartByteRead{.length = d12::kSize, .start = {0x01}},
    .isGood = d12::isGood,
    .parse = d12::parse,
    .tare = d12::kZero,
    .zero = d12::kZero,
};

// ScalesT7E: the scale transmits by itself, its text written backwards.
//
//   < 3D 35 32 31 2E 30 30 30
//     00 01 02 03 04 05 06 07
//     "=" weight: "000.125"
namespace t7e {
enum Offset : std::size_t { kStart = 0, kWeight = kStart + 1, kSize = kWeight + 7 };
static_assert(kSize == 8);

namespace {

bool isGood(Frame frame) { return frame.size() == kSize; }

Outcome parse(Frame frame, Reading& reading) {
  NumberText text;
  const Frame field = frame.subspan(kWeight);
  std::for_each(field.rbegin(), field.rend(), [&](std::uint8_t byte) { text.add(byte); });
  reading.weight = text.value();
  reading.stable = 0;
  return endPoll();
}

}  // namespace
}  // namespace t7e

constinit const ProtocolSheet ScalesT7E::kSheet = {
    .read = HuntingRead{.length = t7e::kSize, .start = {'='}},
    .oneBudgetForAll = true,
    .isGood = t7e::isGood,
    .parse = t7e::parse,
};
