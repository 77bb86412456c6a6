#include <array>

#include <gtest/gtest.h>

#include "DriverHarness.h"
#include "FrameReader.h"

// The four read styles on a line that holds some bytes and then falls silent: what they take, what
// it costs, and what they leave.

namespace {

struct Read {
  const char* name;
  ReadStyle style;
  int budget_ms;
  const char* waiting;
  const char* taken;
  int budgetLeft_ms;
  int slept_ms;
  const char* left;
};

void PrintTo(const Read& read, std::ostream* out) { *out << read.name; }

class FrameReads : public testing::TestWithParam<Read> {};

TEST_P(FrameReads, TakeAndCost) {
  const Read& row = GetParam();
  fixture::PtyLine line;
  COrbComLanPort port;
  ASSERT_EQ(port.OpenComPort(line.path().c_str()), 0);
  line.send(fixture::bytes(row.waiting));

  std::array<std::uint8_t, kMaxFrame> frame = {};
  int budget_ms = row.budget_ms;
  const milliseconds before = sleptSoFar();
  const std::size_t count = readFrame(port, row.style, budget_ms, frame);
  EXPECT_EQ(fixture::hex(Frame(frame).first(count)), fixture::hex(fixture::bytes(row.taken)));
  EXPECT_EQ(budget_ms, row.budgetLeft_ms);
  EXPECT_EQ(sleptSoFar() - before, milliseconds(row.slept_ms));

  std::array<std::uint8_t, kMaxFrame> rest = {};
  const int left = port.read(rest.data(), rest.size());
  EXPECT_EQ(fixture::hex(Frame(rest).first(static_cast<std::size_t>(left))),
            fixture::hex(fixture::bytes(row.left)));
}

constexpr StartByteRead kStart = {
    .length = 4, .start = {'S', 'T'}, .wrongByte = StartByteRead::WrongByte::CostsAsSilence};
constexpr StartByteRead kHunt = {
    .length = 4, .start = {'S', 'T'}, .wrongByte = StartByteRead::WrongByte::CostsOne_ms};
constexpr LengthRead kLength = {.length = 4};
constexpr LengthRead kBeyond = {.length = 4, .asksOn = true};
constexpr TerminatorRead kLine = {
    .capacity = 10, .minLength = 4, .end = "\r\n", .match = TerminatorRead::Match::AnyOf};
constexpr TerminatorRead kCrLf = {
    .capacity = 10, .minLength = 4, .end = "\r\n", .match = TerminatorRead::Match::Sequence};

INSTANTIATE_TEST_SUITE_P(
    Styles, FrameReads,
    testing::Values(
        Read{"StartAtOnce", kStart, 200, "'S123' '4'", "'S123'", 200, 0, "'4'"},
        Read{"OtherStart", kStart, 200, "'T123'", "'T123'", 200, 0, ""},
        Read{"StartBehindWrongBytes", kStart, 200, "'xxS123'", "'S123'", 100, 100, ""},
        Read{"StartTooLate", kStart, 200, "'xxxxS123'", "", 0, 200, "'S123'"},
        Read{"StartAndSilence", kStart, 200, "'S12'", "'S12'", 0, 200, ""},
        Read{"StartAgainInside", kStart, 200, "'SS12'", "'SS12'", 200, 0, ""},
        Read{"StartInSilence", kStart, 200, "", "", 0, 200, ""},
        Read{"NoBudget", kStart, 0, "'S123'", "", 0, 0, "'S123'"},
        Read{"HuntBehindWrongBytes", kHunt, 200, "'xxxxxxxxxxS123'", "'S123'", 190, 0, ""},
        Read{"HuntThroughTheBudget", kHunt, 10, "'xxxxxxxxxxS123'", "", 0, 0, "'S123'"},
        Read{"HuntIntoSilence", kHunt, 120, "'xx'", "", -32, 150, ""},
        Read{"HuntAndSilence", kHunt, 100, "'xT'", "'T'", -1, 100, ""},
        Read{"Length", kLength, 100, "'12345'", "'1234'", 100, 0, "'5'"},
        Read{"LengthAndSilence", kLength, 100, "'123'", "'123'", 0, 100, ""},
        Read{"BoundAboveTheFrame", kBeyond, 300, "'12345'", "'1234'", 0, 300, "'5'"},
        Read{"LineToItsEnd", kLine, 100, "'123' 0A", "'123' 0A", 100, 0, ""},
        Read{"LineWithTwoEnds", kLine, 100, "'123' 0D '4' 0A", "'123' 0D '4' 0A", 100, 0, ""},
        Read{"LineTooShort", kLine, 100, "'12' 0A", "'12' 0A", 0, 100, ""},
        Read{"LineWithoutEnd", kLine, 100, "'12345'", "'12345'", 0, 100, ""},
        Read{"LineTooLong", kLine, 100, "'12345678901' 0A", "'1234567890'", 100, 0, "'1' 0A"},
        Read{"BothEndBytes", kCrLf, 100, "'12' 0D 0A", "'12' 0D 0A", 100, 0, ""},
        Read{"OneEndByteIsNone", kCrLf, 100, "'123' 0A", "'123' 0A", 0, 100, ""},
        Read{"EndBytesTurnedRound", kCrLf, 100, "'12' 0A 0D", "'12' 0A 0D", 0, 100, ""}),
    [](const testing::TestParamInfo<Read>& test) { return test.param.name; });

/// 500 wrong bytes are all that a scale's stream may bring before a frame.
TEST(FrameReads, HuntTakesFiveHundredBytes) {
  fixture::PtyLine line;
  COrbComLanPort port;
  ASSERT_EQ(port.OpenComPort(line.path().c_str()), 0);
  line.send(fixture::Bytes(600, 'x'));
  std::array<std::uint8_t, kMaxFrame> frame = {};
  int budget_ms = 500;
  EXPECT_EQ(readFrame(port, kHunt, budget_ms, frame), 0u);
  EXPECT_EQ(budget_ms, 0);
  EXPECT_EQ(sleptSoFar(), milliseconds(0));
  EXPECT_EQ(port.read(frame.data(), frame.size()), 100);
}

/// A line that floods the port holds the caller for a while, not for ever.
TEST(FrameReads, DrainEnds) {
  fixture::PtyLine line;
  COrbComLanPort port;
  ASSERT_EQ(port.OpenComPort(line.path().c_str()), 0);
  line.send(fixture::Bytes(3000, 'x'));
  drain(port, 1000);
  std::array<std::uint8_t, 1> byte = {};
  EXPECT_EQ(port.read(byte.data(), byte.size()), 0);

  const fixture::TcpPeer peer([](fixture::Wire& wire) {
    while (wire.send(fixture::Bytes(4000, 'x'))) continue;
  });
  COrbComLanPort flooded;
  ASSERT_EQ(flooded.OpenNetworkPort(fixture::TcpPeer::kHost, peer.port()), 0);
  while (flooded.read(byte.data(), byte.size()) == 0) continue;
  const auto begin = std::chrono::steady_clock::now();
  drain(flooded, 1000);
  const auto lasted = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(lasted, milliseconds(kLongestDrain_ms));
  EXPECT_LT(lasted, milliseconds(kLongestDrain_ms + 300));
}

}  // namespace
