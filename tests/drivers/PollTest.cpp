#include <pthread.h>
#include <unistd.h>

#include <cstdio>
#include <latch>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "DataFile.h"
#include "DriverHarness.h"
#include "Models.h"
#include "PolledScales.h"

// How a poll goes on and ends when scale and line don't behave, on both kinds of line.

namespace {

constexpr const char* kCasRequest = "05 11";
constexpr const char* kCasFrame = "06 01 02 'S  1.250kg ' 03 04";
constexpr const char* kOtherCasFrame = "06 01 02 'U  2.500kg ' 03 04";

class Polls : public testing::TestWithParam<Transport> {};

std::string nameOf(const testing::TestParamInfo<Transport>& test) {
  return test.param == Transport::Pty ? "Pty" : "Tcp";
}
INSTANTIATE_TEST_SUITE_P(Over, Polls, testing::Values(Transport::Pty, Transport::Tcp), nameOf);

TEST_P(Polls, AnswerStandsAndWhatIsLeftIsDrained) {
  Pair pair(13, GetParam(), kCasRequest,
            {"06 01 02 'S  1.250kg ' 03 04 | 06 01 02 'S  9.999kg ' 03 04", kOtherCasFrame});
  const Poll first = pair.poll();
  EXPECT_EQ(first.code, kSuccess);
  EXPECT_EQ(first.reading.weight, 1.25);
  // The second frame of the first answer has waited on the line since.
  const Poll second = pair.poll();
  EXPECT_EQ(second.code, kSuccess);
  EXPECT_EQ(second.reading.weight, 2.5);
  EXPECT_EQ(pair.received(4), "05 11 05 11");
}

std::vector<std::string> answersOf(const std::string& row) {
  std::vector<std::string> answers;
  std::istringstream text(row);
  for (std::string answer; std::getline(text, answer, '/');) answers.push_back(answer);
  return answers;
}

TEST_P(Polls, GoOnAndEndByTheirAnswers) {
  for (const fixture::DataRow& row : fixture::dataRows("polls.txt")) {
    SCOPED_TRACE(row.heading + ": " + row.remark);
    auto asked = fixture::dataFields(row.heading);
    auto says = fixture::dataFields(row.right);
    const auto number = [&](const char* name, double usual = 0.0) {
      return says.contains(name) ? std::stod(says[name]) : usual;
    };
    const bool isReleased = says.contains("released");
    Pair pair(std::stoi(asked["model"]), GetParam(), asked["request"], answersOf(row.left),
              isReleased ? 0 : 1);
    const Poll poll = pair.poll();
    EXPECT_EQ(poll.code, number("code"));
    EXPECT_DOUBLE_EQ(poll.reading.weight, number("weight"));
    EXPECT_DOUBLE_EQ(poll.reading.price, number("price"));
    EXPECT_DOUBLE_EQ(poll.reading.cost, number("cost"));
    EXPECT_EQ(poll.reading.stable, says.contains("stable"));
    EXPECT_GE(poll.slept.count(), number("from"));
    EXPECT_LT(poll.slept.count(), number("below", 5000));
    EXPECT_EQ(pair.isConnected(), !isReleased && !says.contains("closed"));
    std::string sent;
    for (int left = static_cast<int>(number("attempts", 1)); left > 0; --left)
      sent += asked["request"] + '|';
    EXPECT_EQ(pair.received(fixture::bytes(sent).size()), fixture::hex(fixture::bytes(sent)));
  }
}

/// Model 8: three bytes go out behind the letter, the head of the last answer of this poll.
TEST_P(Polls, HeadOfTheLastAnswerGoesOut) {
  Pair pair(8, GetParam(), "'R'", {"'wx   1.250 ' 0A 0D", "", "'ww   1.250 ' 0D 0A"});
  EXPECT_EQ(pair.poll().code, kSuccess);
  EXPECT_EQ(pair.received(12), "52 00 00 00 52 77 78 20 52 00 00 00");
  EXPECT_EQ(pair.poll().code, kSuccess);
  EXPECT_EQ(pair.received(16).substr(36), "52 00 00 00") << "a new poll begins with zeros";
}

/// What has piled up on a connection is thrown away, and the request goes out on the same one:
/// many a converter takes no second client.
TEST(PollsOverTcp, StaleBytesLeaveTheConnectionAlone) {
  struct Stale {
    const char* what;
    std::size_t piece;
    int gap_ms;
    int pieces;
  };
  for (const Stale& stale :
       {Stale{"more than a small drain", 12'000, 0, 1},
        Stale{"more than a large drain", 120'000, 0, 1}, Stale{"frames that end", 14, 50, 12},
        Stale{"a trickle", 1, 40, 100}}) {
    std::latch waiting(1);
    Pair pair(13, Transport::Tcp, [&](fixture::Wire& wire) {
      std::thread talking([&] {
        for (int i = 0; i < stale.pieces && wire.send(fixture::Bytes(stale.piece, 'x')); ++i) {
          if (i == 0) waiting.count_down();
          wire.pause(stale.gap_ms);
        }
      });
      fixture::answering(fixture::bytes(kCasRequest), fixture::bytes(kCasFrame))(wire);
      talking.join();
    });
    waiting.wait();
    const Poll poll = pair.poll();
    EXPECT_EQ(poll.code, kSuccess) << stale.what;
    EXPECT_EQ(poll.reading.weight, 1.25) << stale.what;
    EXPECT_EQ(pair.connections(), 1) << stale.what;
  }
}

/// A process that was held up takes its time for silence, not for a scale that floods.
TEST(PollsOverTcp, StoppedProcessKeepsItsConnection) {
  Pair pair(13, Transport::Tcp, kCasRequest, {kCasFrame});
  const std::string process = std::to_string(getpid());
  const std::string stop = "sleep 0.1; kill -STOP " + process + "; sleep 1; kill -CONT " + process;
  FILE* stopping = popen(stop.c_str(), "r");
  ASSERT_NE(stopping, nullptr);
  for (const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(1300);
       std::chrono::steady_clock::now() < end;) {
    const Poll poll = pair.poll();
    EXPECT_EQ(poll.code, kSuccess);
    EXPECT_EQ(poll.reading.weight, 1.25);
  }
  EXPECT_EQ(pclose(stopping), 0);
  EXPECT_EQ(pair.connections(), 1);
}

/// A speed that the line refuses closes the port without a word; the poll then finds no answer.
TEST(PollsOverPty, SpeedThatTheLineRefuses) {
  Pair pair(10, Transport::Pty, "'E'", {"E2 04"});
  EXPECT_EQ(pair.scales().SetComPort(pair.pty().path().c_str(), 56000, nullptr), kSuccess);
  EXPECT_FALSE(pair.isConnected());
  const Poll poll = pair.poll();
  EXPECT_EQ(poll.code, kNoAnswer);
  EXPECT_EQ(poll.slept, milliseconds(900));
}

/// After half an answer on a serial line that half is the head.
TEST(PollsOverPty, HeadOfHalfAnAnswerGoesOut) {
  Pair pair(8, Transport::Pty, "'R'", {"'xyww'", ""});
  EXPECT_EQ(pair.poll().code, kNoAnswer);
  // Two wrong bytes, the start byte in their place, one byte behind it.
  EXPECT_EQ(pair.received(12), "52 00 00 00 52 77 77 00 52 00 00 00");
}

/// What nobody foresaw ends the poll with 1 and closes the port, but for one protocol.
TEST(PollsOverPty, Exceptions) {
  for (const bool close : {true, false}) {
    ProtocolSheet sheet = *findScalesModel(10)->sheet;
    sheet.judge = [](Frame, Outputs&) -> Outcome { throw std::runtime_error("unforeseen"); };
    sheet.closeOnException = close;
    fixture::PtyLine line;
    line.play(fixture::answering({'E'}, {0xE2, 0x04}));
    PolledScales scales(sheet);
    scales.SetLeaveConn(1);
    ASSERT_EQ(scales.SetComPort(line.path().c_str(), 9600, nullptr), kSuccess);
    EXPECT_EQ(pollOnce(scales).code, kNoConnection);
    EXPECT_EQ(scales.isConnected() == COrbComLanPort::kConnected, !close);
  }
}

/// A host that ends its thread in the middle of a poll isn't held up by the net for exceptions.
TEST(PollsOverPty, EndOfTheThreadPassesThrough) {
  ProtocolSheet sheet = *findScalesModel(10)->sheet;
  // Unwinds as a cancelled thread does, by a call before which the address sanitizer takes its
  // marks off the stack.
  sheet.judge = [](Frame, Outputs&) -> Outcome { ::pthread_exit(PTHREAD_CANCELED); };
  fixture::PtyLine line;
  line.play(fixture::answering({'E'}, {0xE2, 0x04}));
  PolledScales scales(sheet);
  ASSERT_EQ(scales.SetComPort(line.path().c_str(), 9600, nullptr), kSuccess);
  bool isBack = false;
  std::thread([&] {
    pollOnce(scales);
    isBack = true;
  }).join();
  EXPECT_FALSE(isBack);
}

}  // namespace
