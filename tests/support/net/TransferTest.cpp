#include <sys/time.h>

#include <atomic>
#include <csignal>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ClsSocket.h"
#include "DataBufferView.h"
#include "NetTesting.h"
#include "SystemCalls.h"
#include "TcpPeer.h"

namespace {

using fixture::kSlack_ms;
using fixture::receiveBytes;
using fixture::ReceivedBytes;
using fixture::sendBytes;
using fixture::Stopwatch;
using fixture::SystemCalls;
using fixture::TcpPeer;
using fixture::TcpWire;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kAnswer = "ST,GS,+  1.2kg";

fixture::Script sendingText(const std::string& text) {
  return fixture::sending(fixture::text(text));
}

class Transfer : public testing::Test {
 protected:
  CkSocket socket;
};

TEST_F(Transfer, WithoutAConnectionNothingGoes) {
  EXPECT_FALSE(sendBytes(socket, "W"));
  EXPECT_EQ(socket.get_SendFailReason(), ClsSocket::NoConnection);
  EXPECT_FALSE(receiveBytes(socket, 1).first);
  EXPECT_EQ(socket.get_ReceiveFailReason(), ClsSocket::NoConnection);
  EXPECT_THAT(socket.lastErrorText(), HasSubstr("No connection is established\n"));
  EXPECT_FALSE(socket.get_IsConnected());
  EXPECT_TRUE(socket.Close(5000));
  EXPECT_THAT(socket.lastErrorText(), HasSubstr("No connection to close\n"));
}

TEST_F(Transfer, NothingIsReceivedButNotSent) {
  TcpPeer peer(fixture::silent());
  EXPECT_EQ(receiveBytes(socket, 0), (ReceivedBytes{true, ""}));
  EXPECT_THAT(socket.lastErrorText(), HasSubstr("The application requested 0 bytes.\n"));
  fixture::connectTo(socket, peer.port());
  EXPECT_EQ(receiveBytes(socket, 0), (ReceivedBytes{true, ""}));
  EXPECT_FALSE(sendBytes(socket, ""));
  EXPECT_EQ(socket.get_SendFailReason(), ClsSocket::NothingToSend);
  EXPECT_TRUE(socket.get_IsConnected());
}

TEST_F(Transfer, SilenceCostsTheIdleLimit) {
  TcpPeer peer(sendingText("ST"));
  fixture::connectTo(socket, peer.port());
  // What did come is at hand.
  EXPECT_EQ(receiveBytes(socket, 14), (ReceivedBytes{false, "ST"}));
  for (const int limit_ms : {1, 3, 100, 334, 500}) {
    socket.put_MaxReadIdleMs(limit_ms);
    const Stopwatch clock;
    EXPECT_EQ(receiveBytes(socket, 14), (ReceivedBytes{false, ""}));
    EXPECT_GE(clock.ms(), limit_ms);
    EXPECT_LT(clock.ms(), limit_ms + kSlack_ms);
    EXPECT_EQ(socket.get_ReceiveFailReason(), ClsSocket::TimedOut);
  }
  EXPECT_TRUE(socket.get_IsConnected());
}

// The host's timers may interrupt every slice of a wait.
TEST_F(Transfer, SignalsDontShortenTheWait) {
  TcpPeer peer([](TcpWire& wire) {
    wire.pause(120);
    wire.send(fixture::text("1"));
    wire.receiveSome();
  });
  fixture::connectTo(socket, peer.port());
  socket.put_MaxReadIdleMs(5000);
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  ASSERT_EQ(::sigaction(SIGALRM, &action, nullptr), 0);
  // Each would count as a whole slice, and nineteen of them as the limit.
  constexpr itimerval kEveryTwoMilliseconds = {{0, 2000}, {0, 2000}};
  ASSERT_EQ(::setitimer(ITIMER_REAL, &kEveryTwoMilliseconds, nullptr), 0);
  EXPECT_EQ(receiveBytes(socket, 1), (ReceivedBytes{true, "1"}));
  constexpr itimerval kNever = {};
  ::setitimer(ITIMER_REAL, &kNever, nullptr);
}

TEST_F(Transfer, AKeptRestIsFollowedByWhatComes) {
  std::atomic<bool> goOn{false};
  TcpPeer peer([&](TcpWire& wire) {
    wire.send(fixture::text("abcd"));
    while (!goOn && wire.pause(1)) {
    }
    wire.send(fixture::text("efgh"));
    wire.receiveSome();
  });
  fixture::connectTo(socket, peer.port());
  EXPECT_EQ(receiveBytes(socket, 1), (ReceivedBytes{true, "a"}));
  goOn = true;
  socket.put_MaxReadIdleMs(5000);
  EXPECT_EQ(receiveBytes(socket, 5), (ReceivedBytes{true, "bcdef"}));
  EXPECT_EQ(receiveBytes(socket, 2), (ReceivedBytes{true, "gh"}));
}

// The idle limit counts from the last byte, so that a slow answer may take longer than the limit.
TEST_F(Transfer, AnAnswerMayComeByteByByte) {
  TcpPeer peer([&](TcpWire& wire) {
    for (const char c : kAnswer) {
      wire.send(fixture::text({&c, 1}));
      wire.pause(30);
    }
    wire.receiveSome();
  });
  fixture::connectTo(socket, peer.port());
  socket.put_MaxReadIdleMs(300);
  const Stopwatch clock;
  EXPECT_EQ(receiveBytes(socket, kAnswer.size()), (ReceivedBytes{true, kAnswer}));
  EXPECT_GE(clock.ms(), 13 * 30 - 20);
}

TEST_F(Transfer, NoAnswerCostsMoreThanTheLongestTime) {
  const fixture::Script endless = [](fixture::Wire& wire) {
    while (wire.pause(5) && wire.send(fixture::text("x"))) continue;
  };
  for (const fixture::Script& script : {endless, fixture::silent()}) {
    TcpPeer peer(script);
    CkSocket client;
    fixture::connectTo(client, peer.port());
    client.put_MaxReadIdleMs(5000);
    client.put_MaxReadMs(150);
    const Stopwatch clock;
    EXPECT_FALSE(receiveBytes(client, 1'000'000).first);
    EXPECT_GE(clock.ms(), 150);
    EXPECT_LT(clock.ms(), 150 + kSlack_ms);
    EXPECT_EQ(client.get_ReceiveFailReason(), ClsSocket::TimedOut);
    EXPECT_TRUE(client.get_IsConnected());
  }
}

TEST_F(Transfer, ASendThatTakesLessGoesOnFromThere) {
  fixture::Received log;
  TcpPeer peer(fixture::recording(log));
  fixture::connectTo(socket, peer.port());
  SystemCalls calls;
  std::vector<SystemCalls::Answer> answers = {std::nullopt, 5, 0, -EAGAIN};
  calls.instead["send"] = [&] {
    const SystemCalls::Answer answer = answers.back();
    if (answers.size() > 1) answers.pop_back();
    return answer;
  };
  EXPECT_TRUE(sendBytes(socket, kAnswer));
  EXPECT_THAT(calls.noted, ElementsAre("send 14", "send 14", "send 14", "send 9"));
  EXPECT_EQ(log.waitFor(9), fixture::text(kAnswer.substr(5)));

  // Where a part went out, the log says how much.
  socket.put_MaxSendIdleMs(50);
  answers = {-EAGAIN, 5};
  EXPECT_FALSE(sendBytes(socket, kAnswer));
  EXPECT_THAT(socket.lastErrorText(), HasSubstr("Timeout after partial send.\n"));
  EXPECT_THAT(socket.lastErrorText(), HasSubstr("numBytesUnsent: 9\n"));
}

// A socket that looks ready and takes nothing doesn't hold the caller beyond the limit.
TEST_F(Transfer, ASendThatNeverGoesOutCostsTheSendLimit) {
  TcpPeer peer(fixture::silent());
  fixture::connectTo(socket, peer.port());
  socket.put_MaxSendIdleMs(100);
  for (const int answer : {0, -EAGAIN}) {
    SystemCalls calls;
    calls.instead["send"] = [answer] { return answer; };
    const Stopwatch clock;
    EXPECT_FALSE(sendBytes(socket, "W"));
    EXPECT_GE(clock.ms(), 100);
    EXPECT_LT(clock.ms(), 100 + kSlack_ms);
    EXPECT_EQ(socket.get_SendFailReason(), ClsSocket::TimedOut);
  }
}

// A wake-up for nothing costs the one receive; the next call repairs it.
TEST_F(Transfer, ASpuriousWakeUpCountsAsATimeout) {
  TcpPeer peer(sendingText("a"));
  fixture::connectTo(socket, peer.port());
  {
    SystemCalls calls;
    calls.instead["recv"] = [] { return -EAGAIN; };
    EXPECT_FALSE(receiveBytes(socket, 1).first);
    EXPECT_EQ(socket.get_ReceiveFailReason(), ClsSocket::TimedOut);
  }
  EXPECT_EQ(receiveBytes(socket, 1), (ReceivedBytes{true, "a"}));
}

TEST(DataBufferView, GivesInTurnWhatIsAddedInBetween) {
  DataBufferView bytes;
  DataBuffer taken;
  for (const char* piece : {"abc", "def", "ghi"}) {
    ASSERT_TRUE(bytes.append(piece, 3));
    ASSERT_TRUE(bytes.takeFront(2, taken));
  }
  ASSERT_TRUE(bytes.takeFront(9, taken));
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(taken.getData2()), taken.getSize()),
            "abcdefghi");
}

}  // namespace
