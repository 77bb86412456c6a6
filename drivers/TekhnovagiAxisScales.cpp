#include "TekhnovagiAxisScales.h"

#include "FrameFields.h"

// ScalesTBE: a line of blanks and a number.
//
//   > 47 31 0D 0A                                 "G1" CR LF
//   < 20 20 20 20 20 20 31 2E 32 35 30 20 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13
//     |  weight: "     1.250 "            CR LF   (or one more byte of text and CR)
namespace tbe {
enum Offset : std::size_t {
  kStart = 0,
  kText = kStart + 1,
  kLineEnd = kText + 11,
  kLast = kLineEnd + 1,
  kSize = kLast + 1,
};
static_assert(kSize == 14);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize &&
         ((frame[kLineEnd] == '\r' && frame[kLast] == '\n') || frame[kLast] == '\r');
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = static_cast<double>(cutTo64(numberIn(frame.subspan(kText)) * 1000.0));
  reading.stable = 0;
  return endPoll();
}

}  // namespace
}  // namespace tbe

constinit const ProtocolSheet ScalesTBE::kSheet = {
    .request = {.first = "G1\r\n"},
    .read = StartByteRead{.length = tbe::kSize, .start = {' '}},
    .isGood = tbe::isGood,
    .parse = tbe::parse,
    .tare = Command{.bytes = "ST\r\n", .pause_ms = 150},
    .weightUnit = WeightUnit::Gram,
};

// ScalesTB1: the kind of the reading and a number with its sign.
//
//   > 47 30 31 57 0D 0A                     "G01W" CR LF
//   < 52 30 31 57 2D 30 31 2E 32 35 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11
//     "R"      |  weight: "-01.25"  CR      (or one more byte of text and CR)
//              `- 57 "W" weight, 4E "N" negative, 45 "E" error
namespace tb1 {
enum Offset : std::size_t {
  kStart = 0,
  kAddress = kStart + 1,
  kKind = kAddress + 2,
  kText = kKind + 1,
  kLineEnd = kText + 6,
  kLast = kLineEnd + 1,
  kSize = kLast + 1,
};
static_assert(kSize == 12);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && (frame[kLineEnd] == '\r' || frame[kLast] == '\r');
}

/// The reading of kind "E" is handed out with its error.
Outcome parse(Frame frame, Reading& reading) {
  const Frame text = frame.subspan(kText);
  reading.stable = 0;
  switch (frame[kKind]) {
    case 'W':
      reading.weight = text[0] == '-' ? -numberIn(text.subspan(1)) : numberIn(text);
      return endPoll();
    case 'N': reading.weight = -numberIn(text); return endPoll();
    case 'E': reading.weight = numberIn(text); return endPoll(kUnknown);
    default: reading.weight = 0.0; return endPoll(kUnknown);
  }
}

}  // namespace
}  // namespace tb1

constinit const ProtocolSheet ScalesTB1::kSheet = {
    .request = {.first = "G01W\r\n"},
    .read = StartByteRead{.length = tb1::kSize, .start = {'R'}},
    .isGood = tb1::isGood,
    .parse = tb1::parse,
    .tare = Command{.bytes = "S01T\r\n", .pause_ms = 150},
};

// ScalesAxis_BTU: a line that begins with a blank or a minus.
//
//   > 53 49 0D 0A                                       "SI" CR LF
//   < 2D 20 20 20 20 31 2E 32 33 34 20 6B 67 20 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15
//     weight: "-    1.234"          not seen    CR LF
namespace btu {
enum Offset : std::size_t {
  kText = 0,
  kUnit = kText + 10,
  kLineEnd = kUnit + 4,
  kLast = kLineEnd + 1,
  kSize = kLast + 1,
};
static_assert(kSize == 16);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kLast] == '\n' && frame[kLineEnd] == '\r';
}

Outcome parse(Frame frame, Reading& reading) {
  const double shown = zeroFilledNumberIn(frame.first(kUnit), ".");
  reading.weight = static_cast<double>(cutTo64(shown * 1000.0));
  reading.stable = 1;
  return endPoll();
}

}  // namespace
}  // namespace btu

constinit const ProtocolSheet ScalesAxis_BTU::kSheet = {
    .drainSize = kSmallDrain,
    .request = {.first = "SI\r\n"},
    .read = StartByteRead{.length = btu::kSize, .start = {' ', '-'}},
    .attempts = 2,
    .isGood = btu::isGood,
    .parse = btu::parse,
    .tare = Command{.bytes = "ST\r\n", .pause_ms = 150},
    .weightUnit = WeightUnit::Gram,
};
