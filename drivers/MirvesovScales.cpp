#include "MirvesovScales.h"

#include "FrameFields.h"

// ScalesA9: a frame between STX and ETX.
//
//   > 02 40 44 00 04 03
//   < 02 40 44 2D 30 30 31 32 35 30 33 30 30 03
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13
//     STX   "D" |  weight: "001250"  |  not  ETX
//               `- 2D negative       `- decimal code
namespace a9 {
namespace {

constexpr std::size_t kDigits = 6;

double gramsPerUnit(std::uint8_t decimalCode) {
  switch (decimalCode) {
    case '0': return 1000.0;
    case '1': return 100.0;
    case '2': return 10.0;
    default: return 1.0;
  }
}

/// The first byte that is no digit ends the number, so a blank in front leaves none.
Outcome parse(Frame frame, Reading& reading) {
  const Frame field = IndicatorFrame::weightOf(frame);
  NumberText text;
  for (const std::uint8_t byte : field.first(kDigits)) {
    if (!isDigit(byte)) break;
    text.add(byte);
  }
  const std::uint8_t decimalCode = field[kDigits];
  const std::int64_t grams = cutTo64(text.value() * gramsPerUnit(decimalCode));
  reading.weight = withSign(static_cast<double>(grams), IndicatorFrame::signOf(frame));
  reading.stable = 0;
  return endPoll();
}

}  // namespace
}  // namespace a9

constinit const ProtocolSheet ScalesA9::kSheet = {
    .drainSize = kSmallDrain,
    .request = {.first = {0x02, 0x40, 0x44, 0x00, 0x04, 0x03}},
    .read = StartByteRead{.length = IndicatorFrame::kSize, .start = {0x02}},
    .isGood = IndicatorFrame::isGood,
    .parse = a9::parse,
    .weightUnit = WeightUnit::Gram,
};

// CScalesA9Contin: the scale transmits by itself.
//
//   < 02 2D 30 30 31 32 35 30 33 30 30 03
//     00 01 02 03 04 05 06 07 08 09 10 11
//     STX|  weight: "001250"  |  not   ETX
//        `- 2D negative       `- decimal code
namespace a9Continuous {
enum Offset : std::size_t {
  kStx = 0,
  kSign = kStx + 1,
  kWeight = kSign + 1,
  kDecimalCode = kWeight + 6,
  kCheck = kDecimalCode + 1,
  kEtx = kCheck + 2,
  kSize = kEtx + 1,
};
static_assert(kSize == 12);

namespace {

constexpr int kMostDecimals = 4;

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kStx] == 0x02 && frame[kEtx] == 0x03;
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = withSign(numberIn(frame.subspan(kWeight, kDecimalCode - kWeight)), frame[kSign]);
  reading.weight = withDecimals(reading.weight, frame[kDecimalCode] - '0', kMostDecimals);
  reading.stable = 0;
  return endPoll();
}

}  // namespace
}  // namespace a9Continuous

constinit const ProtocolSheet CScalesA9Contin::kSheet = {
    .read = HuntingRead{.length = a9Continuous::kSize, .start = {0x02}},
    .isGood = a9Continuous::isGood,
    .parse = a9Continuous::parse,
};

// ScalesA12: a letter is asked, a line of text answered.
//
//   > 52 00 00 00                              "R"
//   < 77 77 20 20 20 31 2E 32 35 30 20 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12
//     "w"   weight: "   1.250 "        CR LF
//
// The letter goes out in a write of four bytes; the three behind it are the head of the last
// answer, and the scale doesn't look at them.
namespace a12 {
enum Offset : std::size_t {
  kStart = 0,
  kMode = kStart + 1,
  kWeight = kMode + 1,
  kCr = kWeight + 9,
  kLf = kCr + 1,
  kSize = kLf + 1,
};
static_assert(kSize == 13);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kCr] == '\r' && frame[kLf] == '\n';
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = cutTo32(numberIn(frame.subspan(kWeight, kCr - kWeight)) * 1000.0);
  reading.stable = 1;
  return endPoll();
}

}  // namespace
}  // namespace a12

constinit const ProtocolSheet ScalesA12::kSheet = {
    .drainSize = kSmallDrain,
    .request = {.first = {'R'}, .frameHead = 3},
    .read = StartByteRead{.length = a12::kSize, .start = {'w'}},
    .isGood = a12::isGood,
    .parse = a12::parse,
    .tare = Command{.bytes = {'T'}},
    .zero = Command{.bytes = {'Z'}},
    .weightUnit = WeightUnit::Gram,
};

// ScalesA12EH: the scale transmits by itself.
//
//   < 02 2D 02 20 30 30 31 32 35 30 30 30 30 30 30 30 0D
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16
//     STX|  |     weight: "001250"  not seen          CR
//        |  `- 02 negative, 04 not valid, 08 moving
//        `- decimal code in the low 7 bits
namespace a12eh {
enum Offset : std::size_t {
  kStx = 0,
  kDecimalCode = kStx + 1,
  kStatus = kDecimalCode + 1,
  kStatus2 = kStatus + 1,
  kWeight = kStatus2 + 1,
  kTare = kWeight + 6,
  kCr = kTare + 6,
  kSize = kCr + 1,
};
static_assert(kSize == 17);

namespace {

constexpr std::uint8_t kNegative = 0x02;
constexpr std::uint8_t kNotValid = 0x04;
constexpr std::uint8_t kMoving = 0x08;

constexpr std::uint8_t kDecimalCodeBits = 0x7F;
/// The decimal code of no decimals; 2B is one, 2E four.
constexpr std::uint8_t kNoDecimals = 0x2A;
constexpr int kMostDecimals = 4;

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kStx] == 0x02 && frame[kCr] == '\r';
}

/// A weight that isn't valid reads as a good zero in motion.
Outcome parse(Frame frame, Reading& reading) {
  NumberText text;
  for (const std::uint8_t byte : frame.subspan(kWeight, kTare - kWeight)) {
    if (isDigit(byte)) text.add(byte);
  }
  const std::uint8_t status = frame[kStatus];
  reading.weight = text.value();
  if ((status & kNegative) != 0) reading.weight = -reading.weight;
  reading.weight = withDecimals(
      reading.weight, (frame[kDecimalCode] & kDecimalCodeBits) - kNoDecimals, kMostDecimals);
  reading.stable = (status & kMoving) == 0 ? 1 : 0;
  if ((status & kNotValid) != 0) {
    reading.weight = 0.0;
    reading.stable = 0;
  }
  return endPoll();
}

}  // namespace
}  // namespace a12eh

constinit const ProtocolSheet ScalesA12EH::kSheet = {
    .read = HuntingRead{.length = a12eh::kSize, .start = {0x02}},
    .isGood = a12eh::isGood,
    .parse = a12eh::parse,
};

// ScalesDS2: a frame between STX and ETX.
//
//   > 02 41 44 30 35 03
//   < 02 41 44 2D 30 30 30 31 32 35 30 30 30 03
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13
//     STX   "D"|  weight: "0001250"    not   ETX
//              `- 2D negative
namespace ds2 {
namespace {

/// With fewer digits the display is blank.
constexpr std::size_t kFewestDigits = 2;

/// A decimal point is stepped over, so the digits on both sides of it run together.
Outcome parse(Frame frame, Reading& reading) {
  NumberText text;
  for (const std::uint8_t byte : IndicatorFrame::weightOf(frame)) {
    if (byte == '.') continue;
    if (!isDigit(byte)) break;
    text.add(byte);
  }
  const double shown = text.size() < kFewestDigits ? 0.0 : text.value();
  const std::int64_t grams = cutTo64(shown * 1000.0);
  reading.weight = withSign(static_cast<double>(grams), IndicatorFrame::signOf(frame));
  reading.stable = 0;
  return endPoll();
}

}  // namespace
}  // namespace ds2

constinit const ProtocolSheet ScalesDS2::kSheet = {
    .request = {.first = IndicatorFrame::kAsk},
    .read = StartByteRead{.length = IndicatorFrame::kSize, .start = {0x02}},
    .isGood = IndicatorFrame::isGood,
    .parse = ds2::parse,
    .weightUnit = WeightUnit::Gram,
};
