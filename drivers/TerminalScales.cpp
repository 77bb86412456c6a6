#include "TerminalScales.h"

#include "FrameFields.h"

// ScalesIQplus355: the terminal repeats the command and then gives a line of text, with a line
// feed in the middle of the number.
//
//   > 58 4E 0D 0A                                      "XN" CR LF
//   < 58 4E 0D 0A 20 20 0A 20 20 31 2E 32 35 20 6B 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16
//     "X""N" CR LF 1st  LF weight, 2nd part  not   CR LF
namespace iqPlus {
enum Offset : std::size_t {
  kEcho = 0,
  kEcho2 = kEcho + 1,
  kEchoCr = kEcho2 + 1,
  kEchoLf = kEchoCr + 1,
  kWeight = kEchoLf + 1,
  kMiddleLf = kWeight + 2,
  kWeight2 = kMiddleLf + 1,
  kUnit = kWeight2 + 6,
  kCr = kUnit + 2,
  kLf = kCr + 1,
  kSize = kLf + 1,
};
static_assert(kSize == 17);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kEcho2] == 'N' && frame[kEchoCr] == '\r' &&
         frame[kEchoLf] == '\n' && frame[kMiddleLf] == '\n' && frame[kCr] == '\r' &&
         frame[kLf] == '\n';
}

void addPart(NumberText& text, Frame part) {
  for (const std::uint8_t byte : part) {
    text.add(isDigit(byte) || byte == '-' || byte == '.' ? byte : '0');
  }
}

Outcome parse(Frame frame, Reading& reading) {
  NumberText text;
  addPart(text, frame.subspan(kWeight, kMiddleLf - kWeight));
  addPart(text, frame.subspan(kWeight2, kUnit - kWeight2));
  reading.weight = text.value();
  reading.stable = 1;
  return endPoll();
}

/// The terminal has no price: three numbers select setup commands instead.
std::optional<Command> setup(long price) {
  constexpr int kPause_ms = 150;
  switch (price) {
    case 12345: return Command{.bytes = "STREAM=OFF\r\n", .pause_ms = kPause_ms};
    case 1: return Command{.bytes = "EX\r\n", .pause_ms = kPause_ms};
    case 2: return Command{.bytes = "SX\r\n", .pause_ms = kPause_ms};
    default: return std::nullopt;
  }
}

}  // namespace
}  // namespace iqPlus

constinit const ProtocolSheet ScalesIQplus355::kSheet = {
    .request = {.first = "XN\r\n"},
    .read = StartByteRead{.length = iqPlus::kSize, .start = {'X'}},
    .isGood = iqPlus::isGood,
    .parse = iqPlus::parse,
    .tare = Command{.bytes = "KTARE\r\n", .pause_ms = 150},
    .price = iqPlus::setup,
};

// Scales_HBMWE2110: a text of no fixed form.
//
//   > 53 31 3B 4D 53 56 3F 3B                          "S1;MSV?;"
//   < 2D 20 20 31 32 2E 35 0D 0A
//     00 01 02 03 04 05 06 07 08
//     weight: "-  12.5"    CR LF
namespace we2110 {
namespace {

constexpr std::size_t kShortest = 6;

/// Also an answer whose line end didn't come in time is taken.
bool isGood(Frame frame) { return frame.size() >= kShortest; }

/// A dash anywhere in the answer makes the number negative, also behind it.
Outcome parse(Frame frame, Reading& reading) {
  NumberText text;
  bool negative = false;
  for (const std::uint8_t byte : frame) {
    if (byte == '-') negative = true;
    text.add(byte == '-' || byte == ' ' ? '0' : byte);
  }
  reading.weight = negative ? -text.value() : text.value();
  reading.stable = 0;
  return endPoll();
}

}  // namespace
}  // namespace we2110

constinit const ProtocolSheet Scales_HBMWE2110::kSheet = {
    .drainSize = kSmallDrain,
    .request = {.first = "S1;MSV?;"},
    .read = TerminatorRead{.capacity = kMaxFrame, .minLength = we2110::kShortest, .end = "\r\n"},
    .attempts = 2,
    .isGood = we2110::isGood,
    .parse = we2110::parse,
    .tare = Command{.bytes = "S1;TAR;", .pause_ms = 150},
};

// ScalesICS_NT: bare digits as characters, units first, without start, end or checksum.
//
//   > 00 00 03
//   < 35 32 31 30 30 30 35 32 31 30 30 30 36 31 30 30 30 30
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17
//     weight: 0.125     price: 125        cost: 16
namespace icsNt {
namespace {

using Digits = DigitFrame<6, backwardsNumberIn>;
static_assert(Digits::kSize == 18);

/// The terminal is asked three times whatever it answers, and the last whole frame stands.
Outcome parse(Frame frame, Reading& reading) {
  Digits::read(frame, 0.001, 1.0, reading);
  reading.stable = 1;
  return askAgain(kSuccess);
}

std::optional<Command> price(long price) {
  return Command{.bytes = priceFrame({0x00, 0x00, 0x02}, price, '0')};
}

}  // namespace
}  // namespace icsNt

constinit const ProtocolSheet ScalesICS_NT::kSheet = {
    .line = {.parity = COMPort::Even},
    .atEntry = AtEntry::Stable,
    .request = {.first = {0x00, 0x00, 0x03}},
    .read = LengthRead{.length = icsNt::Digits::kSize},
    .budget_ms = 300,
    .isGood = icsNt::Digits::isGood,
    .parse = icsNt::parse,
    .tare = Command{.bytes = {0x00, 0x00, 0x01}, .pause_ms = 150},
    .price = icsNt::price,
    .moneyUnit = MoneyUnit::AsCounted,
};

// CScalesWPT4Radwag: a line of text.
//
//   > 53 55 49 0D 0A                                   "SUI" CR LF
//   < 53 55 49 20 20 2D 20 20 20 20 31 2E 32 35 30 20 6B 67 20 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17 18 19 20
//     "S""U""I"|     |  weight: "    1.250"      not seen    CR LF
//              |     `- 2D negative
//              `- 3F "?" moving
namespace wpt4 {
enum Offset : std::size_t {
  kEcho = 0,
  kEcho2 = kEcho + 1,
  kEcho3 = kEcho2 + 1,
  kStatus = kEcho3 + 1,
  kGap = kStatus + 1,
  kSign = kGap + 1,
  kWeight = kSign + 1,
  kUnit = kWeight + 9,
  kCr = kUnit + 4,
  kLf = kCr + 1,
  kSize = kLf + 1,
};
static_assert(kSize == 21);

namespace {

bool isGood(Frame frame) {
  return frame.size() == kSize && frame[kCr] == '\r' && frame[kLf] == '\n' && frame[kEcho] == 'S' &&
         frame[kEcho2] == 'U' && frame[kEcho3] == 'I';
}

Outcome parse(Frame frame, Reading& reading) {
  reading.weight = withSign(numberIn(frame.subspan(kWeight, kUnit - kWeight)), frame[kSign]);
  reading.stable = frame[kStatus] == '?' ? 0 : 1;
  return endPoll();
}

}  // namespace
}  // namespace wpt4

constinit const ProtocolSheet CScalesWPT4Radwag::kSheet = {
    .drainSize = kSmallDrain,
    .request = {.first = "SUI\r\n"},
    .read = StartByteRead{.length = wpt4::kSize, .start = {'S'}},
    .isGood = wpt4::isGood,
    .parse = wpt4::parse,
    .tare = Command{.bytes = "I\r\n", .pause_ms = 600, .afterwards = Command::Afterwards::Drain},
};
