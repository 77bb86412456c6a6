#include "MassaKRinstrumScales.h"

#include "FrameFields.h"

// ScalesMASSAK_MK_TB__MK_TH: one byte asked, a signed count answered, low byte first.
//
//   > 45
//   < E2 04
//     00 01
//     1250
namespace massaK {
enum Offset : std::size_t { kWeight = 0, kSize = kWeight + 2 };
static_assert(kSize == 2);

namespace {

bool isGood(Frame frame) { return frame.size() == kSize; }

Outcome parse(Frame frame, Reading& reading) {
  reading = {.weight = static_cast<double>(
                 static_cast<std::int16_t>(littleEndian16(frame.subspan(kWeight))))};
  return endPoll();
}

}  // namespace
}  // namespace massaK

constinit const ProtocolSheet ScalesMASSAK_MK_TB__MK_TH::kSheet = {
    .line = {.parity = COMPort::Even},
    .atEntry = AtEntry::Moving,
    .request = {.first = {'E'}},
    .read = LengthRead{.length = massaK::kSize},
    .budget_ms = 300,
    .isGood = massaK::isGood,
    .parse = massaK::parse,
    .closeOnException = false,
    .weightUnit = WeightUnit::AsShown,
};

// Scales_R320: a line of text whose first nine bytes name the answer.
//
//   > 32 30 30 35 30 30 32 37 3A 0D 0A            "20050027:" CR LF
//   < 38 31 30 35 30 30 32 37 3A 2D 20 20 20 31 2E 32 35 30 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17 18 19
//     "81050027:"                weight: "-   1.250"        CR LF
namespace r320 {
enum Offset : std::size_t {
  kHeader = 0,
  kWeight = kHeader + 9,
  kShortest = kWeight + 2,
  kLongest = 30,
};

namespace {

bool isGood(Frame frame) {
  return frame.size() >= kShortest && frame[frame.size() - 2] == '\r' && frame.back() == '\n';
}

/// Blanks are stepped over, also inside the number. A line without a number ends the poll.
Outcome parse(Frame frame, Reading& reading) {
  NumberText text;
  for (const std::uint8_t byte : frame.subspan(kWeight)) {
    if (byte == ' ') continue;
    if (!isDigit(byte) && byte != '.' && byte != '-') break;
    text.add(byte);
  }
  reading.stable = 0;
  reading.weight = static_cast<double>(cutTo64(text.value() * 1000.0));
  return endPoll(text.empty() ? kNoAnswer : kSuccess);
}

}  // namespace
}  // namespace r320

constinit const ProtocolSheet Scales_R320::kSheet = {
    .drainSize = kSmallDrain,
    .request = {.first = "20050027:\r\n"},
    .read = TerminatorRead{.capacity = r320::kLongest,
                           .minLength = r320::kShortest,
                           .end = "\r\n",
                           .match = TerminatorRead::End::Sequence},
    .isGood = r320::isGood,
    .parse = r320::parse,
    .weightUnit = WeightUnit::Gram,
};
