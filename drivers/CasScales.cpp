#include "CasScales.h"

#include "FrameFields.h"

// ScalesCAS and ScalesBTHE_SDL_07: ENQ, a pause, DC1, and a frame of text between control bytes.
//
//   > 05 ... 11
//   < 06 01 02 53 20 20 31 2E 32 35 30 6B 67 20 03 04
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15
//     fixed    |  weight: "  1.250"    not seen fixed
//              `- 53 "S" stable; 46 "F" in offset 04: overload
namespace text {
enum Offset : std::size_t {
  kStart = 0,
  kSoh = kStart + 1,
  kStx = kSoh + 1,
  kStatus = kStx + 1,
  kWeight = kStatus + 1,
  kUnit = kWeight + 7,
  kEtx = kUnit + 3,
  kEot = kEtx + 1,
  kSize = kEot + 1,
};
static_assert(kSize == 16);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kEot] == 0x04 && frame[kEtx] == 0x03 &&
         frame[kSoh] == 0x01 && frame[kStx] == 0x02;
}

/// `blank` is what a blank in the weight counts as; 0 drops it like any other character.
NumberText weightText(Frame frame, std::uint8_t blank) {
  NumberText text;
  for (const std::uint8_t byte : frame.subspan(kWeight, kUnit - kWeight)) {
    if (isDigit(byte) || byte == '-' || byte == '.') {
      text.add(byte);
    } else if (byte == ' ' && blank != 0) {
      text.add(blank);
    }
  }
  return text;
}

Outcome read(Frame frame, const NumberText& weight, int codeWithoutNumber, Reading& reading) {
  if (!weight.empty()) reading.weight = weight.value();
  reading.stable = frame[kStatus] == 'S' ? 1 : 0;
  if (frame[kWeight] == 'F') {
    reading.weight = 0.0;
    reading.stable = 0;
    return endPoll(kOverload);
  }
  return endPoll(weight.empty() ? codeWithoutNumber : static_cast<int>(kSuccess));
}

Outcome parseCas(Frame frame, Reading& reading) {
  return read(frame, weightText(frame, 0), kSuccess, reading);
}

/// A blank is a zero here, and a frame without a number an overload that may be stable.
Outcome parseSdl07(Frame frame, Reading& reading) {
  return read(frame, weightText(frame, '0'), kOverload, reading);
}

constexpr ProtocolSheet sheetWith(Outcome (*parse)(Frame frame, Reading& reading)) {
  return {
      .drainSize = kSmallDrain,
      .request = {.first = {0x05}, .pause_ms = 150, .second = {0x11}},
      .read = StartByteRead{.length = kSize, .start = {0x06}},
      .isGood = isGood,
      .parse = parse,
  };
}

}  // namespace
}  // namespace text

constinit const ProtocolSheet ScalesCAS::kSheet = text::sheetWith(text::parseCas);
constinit const ProtocolSheet ScalesBTHE_SDL_07::kSheet = text::sheetWith(text::parseSdl07);

// ScalesCASLP16: binary fields, low byte first.
//
//   > 01 ... 89
//   < 01 80 AA 40 E2 04 C4 09 00 00 35 0C 00 00 00 00 00 00
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17
//     fixed    |  1250  price: 2500 cost: 3125  not seen
//              `- 01 overload, 40 stable, 80 negative
namespace lp16 {
enum Offset : std::size_t {
  kStart = 0,
  kAnswer = kStart + 1,
  kMark = kAnswer + 1,
  kStatus = kMark + 1,
  kWeight = kStatus + 1,
  kPrice = kWeight + 2,
  kCost = kPrice + 4,
  kRest = kCost + 4,
  kSize = kRest + 4,
};
static_assert(kSize == 18);

namespace {

constexpr std::uint8_t kOverloaded = 0x01;
constexpr std::uint8_t kStable = 0x40;
constexpr std::uint8_t kNegative = 0x80;

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kAnswer] == 0x80 && frame[kMark] == 0xAA;
}

Outcome parse(Frame frame, Reading& reading) {
  const std::uint8_t status = frame[kStatus];
  if ((status & kOverloaded) != 0) return endPoll(kOverload);
  reading.weight = littleEndian16(frame.subspan(kWeight));
  reading.price = static_cast<std::int32_t>(littleEndian32(frame.subspan(kPrice)));
  reading.cost = static_cast<std::int32_t>(littleEndian32(frame.subspan(kCost)));
  reading.stable = (status & kStable) != 0 ? 1 : 0;
  if ((status & kNegative) != 0) reading.weight = -reading.weight;
  return endPoll();
}

}  // namespace
}  // namespace lp16

constinit const ProtocolSheet ScalesCASLP16::kSheet = {
    .drainSize = kSmallDrain,
    .request = {.first = {0x01}, .pause_ms = 150, .second = {0x89}},
    .read = StartByteRead{.length = lp16::kSize, .start = {0x01}},
    .isGood = lp16::isGood,
    .parse = lp16::parse,
    .weightUnit = WeightUnit::AsShown,
    .moneyUnit = MoneyUnit::AsCounted,
};

// ScalesBTHE_UNS_2: bare binary digits, units first, without start, end or checksum.
//
//   > 2A 03
//   < 00 05 02 01 00 00 00 00 05 02 00 00 05 02 01 03 00 00
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17
//     weight: 1.250     price: 25.00      cost: 31.25
namespace uns02 {
namespace {

using Digits = DigitFrame<6, backwardsBinaryNumberIn>;
static_assert(Digits::kSize == 18);

/// The scale is asked three times whatever it answers, and the last whole frame stands. `stable`
/// is 1 until a frame has come.
Outcome parse(Frame frame, Reading& reading) {
  Digits::read(frame, 0.001, 0.01, reading);
  reading.stable = 0;
  return askAgain(kSuccess);
}

std::optional<Command> price(long price) {
  return Command{.bytes = priceFrame({0x2A, 0x02}, price)};
}

}  // namespace
}  // namespace uns02

constinit const ProtocolSheet ScalesBTHE_UNS_2::kSheet = {
    .atEntry = AtEntry::Stable,
    .request = {.first = {0x2A, 0x03}},
    .read = LengthRead{.length = uns02::Digits::kSize},
    .budget_ms = 300,
    .isGood = uns02::Digits::isGood,
    .parse = uns02::parse,
    .tare = Command{.bytes = {0x2A, 0x01}, .pause_ms = 150},
    .price = uns02::price,
    .moneyUnit = MoneyUnit::Whole,
};
