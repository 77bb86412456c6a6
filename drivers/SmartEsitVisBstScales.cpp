#include "SmartEsitVisBstScales.h"

#include "FrameFields.h"

// CScalesSMART: the scale transmits by itself.
//
//   < 02 2D 30 30 31 2E 32 35 30 30 30 20 0D
//     00 01 02 03 04 05 06 07 08 09 10 11 12
//     STX|  weight: "001.250"    not   |  CR
//        `- 2D negative                `- 20 stable
namespace smart {
enum Offset : std::size_t {
  kStx = 0,
  kSign = kStx + 1,
  kWeight = kSign + 1,
  kUnit = kWeight + 7,
  kStatus = kUnit + 2,
  kCr = kStatus + 1,
  kSize = kCr + 1,
};
static_assert(kSize == 13);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kStx] == 0x02 && frame[kCr] == '\r';
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = withSign(numberIn(frame.subspan(kWeight, kUnit - kWeight)), frame[kSign]);
  reading.stable = frame[kStatus] == ' ' ? 1 : 0;
  return endPoll();
}

}  // namespace
}  // namespace smart

constinit const ProtocolSheet CScalesSMART::kSheet = {
    .read = HuntingRead{.length = smart::kSize, .start = {0x02}},
    .isGood = smart::isGood,
    .parse = smart::parse,
};

// CScalesESITSMART2: the scale transmits by itself. The digit in front of the decimal point has
// its top bit set.
//
//   < 2D 30 B1 32 35 30 0D
//     00 01 02 03 04 05 06
//     |  weight: "01.250" CR
//     `- 2B or 2D
namespace esitSmart2 {
enum Offset : std::size_t { kSign = 0, kWeight = kSign + 1, kCr = kWeight + 5, kSize = kCr + 1 };
static_assert(kSize == 7);

namespace {

constexpr std::uint8_t kTopBit = 0x80;

bool isGood(Frame frame) {
  return frame.size() == kSize && (frame[kSign] == '+' || frame[kSign] == '-') &&
         frame[kCr] == '\r';
}

Outcome parse(Frame frame, Reading& reading) {
  NumberText text;
  for (const std::uint8_t byte : frame.subspan(kWeight, kCr - kWeight)) {
    const bool pointBehind = byte >= (kTopBit | '0');
    text.add(pointBehind ? static_cast<std::uint8_t>(byte - kTopBit) : byte);
    if (pointBehind) text.add('.');
  }
  reading.weight = withSign(text.value(), frame[kSign]);
  reading.stable = 1;
  return endPoll();
}

}  // namespace
}  // namespace esitSmart2

constinit const ProtocolSheet CScalesESITSMART2::kSheet = {
    .read = HuntingRead{.length = esitSmart2::kSize, .start = {'+', '-'}},
    .isGood = esitSmart2::isGood,
    .parse = esitSmart2::parse,
};

// ScalesESIT_ECI_STATIC: a line of text.
//
//   > 57 0D                                 "W" CR
//   < 20 20 20 2D 31 2E 32 35 30 20 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11
//     weight: "   -1.250 "          CR LF
namespace esitEci {
enum Offset : std::size_t { kWeight = 0, kCr = kWeight + 10, kLf = kCr + 1, kSize = kLf + 1 };
static_assert(kSize == 12);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kCr] == '\r' && frame[kLf] == '\n';
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = numberIn(frame.first(kCr));
  reading.stable = 0;
  return endPoll();
}

}  // namespace
}  // namespace esitEci

constinit const ProtocolSheet ScalesESIT_ECI_STATIC::kSheet = {
    .request = {.first = "W\r"},
    .read = LengthRead{.length = esitEci::kSize},
    .isGood = esitEci::isGood,
    .parse = esitEci::parse,
    .tare = Command{.bytes = "T\r", .pause_ms = 150},
};

// ScalesVIS318L: the scale transmits lines by itself; the LF in front is the end of the line
// before.
//
//   < 0A 53 54 2C 47 53 2C 2D 20 31 32 2E 33 34 35 6B 67 0D
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17
//     LF "ST"  not seen    weight: "- 12.345"      not   CR
//        `- stable
namespace vis318 {
enum Offset : std::size_t {
  kLf = 0,
  kStatus = kLf + 1,
  kStatus2 = kStatus + 1,
  kMode = kStatus2 + 1,
  kWeight = kMode + 4,
  kUnit = kWeight + 8,
  kCr = kUnit + 2,
  kSize = kCr + 1,
};
static_assert(kSize == 18);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kLf] == '\n' && frame[kCr] == '\r';
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = numberIn(frame.subspan(kWeight, kUnit - kWeight));
  reading.stable = frame[kStatus] == 'S' && frame[kStatus2] == 'T' ? 1 : 0;
  return endPoll();
}

}  // namespace
}  // namespace vis318

constinit const ProtocolSheet ScalesVIS318L::kSheet = {
    .read = HuntingRead{.length = vis318::kSize, .start = {'\n'}},
    .isGood = vis318::isGood,
    .parse = vis318::parse,
};

// ScalesBST106: Modbus RTU to station 01.
//
//   > 01 03 00 02 00 03 A4 0B
//   < 01 03 06 00 00 04 E2 20 00 99 B3
//     00 01 02 03 04 05 06 07 08 09 10
//     fixed    weight: 1250 |     CRC, not seen
//                           `- 20 stable
namespace bst106 {
enum Offset : std::size_t {
  kStation = 0,
  kFunction = kStation + 1,
  kByteCount = kFunction + 1,
  kWeight = kByteCount + 1,
  kStatus = kWeight + 4,
  kStatus2 = kStatus + 1,
  kCrc = kStatus2 + 1,
  kSize = kCrc + 2,
};
static_assert(kSize == 11);

namespace {

constexpr std::uint8_t kStable = 0x20;

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kStation] == 0x01 && frame[kFunction] == 0x03 &&
         frame[kByteCount] == 0x06;
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = static_cast<std::int32_t>(bigEndian32(frame.subspan(kWeight)));
  reading.stable = (frame[kStatus] & kStable) != 0 ? 1 : 0;
  return endPoll();
}

}  // namespace
}  // namespace bst106

constinit const ProtocolSheet ScalesBST106::kSheet = {
    .request = {.first = {0x01, 0x03, 0x00, 0x02, 0x00, 0x03, 0xA4, 0x0B}},
    .read = LengthRead{.length = bst106::kSize},
    .budget_ms = 300,
    .isGood = bst106::isGood,
    .parse = bst106::parse,
    // Writes A50B to register 0007.
    .tare = Command{.bytes = {0x01, 0x06, 0x00, 0x07, 0xA5, 0x0B, 0x02, 0x9C}, .pause_ms = 150},
    .weightUnit = WeightUnit::AsShown,
};
