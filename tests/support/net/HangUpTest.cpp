#include <fcntl.h>
#include <sys/resource.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <semaphore>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ClsSocket.h"
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

// The first byte waits for the connection to stand on both sides.
const fixture::TcpScript kResetting = [](TcpWire& wire) {
  wire.receive(1);
  wire.reset();
};

class HangUp : public testing::Test {
 protected:
  CkSocket socket;
};

TEST_F(HangUp, InTheMiddleOfAnAnswerIsAClosedConnection) {
  TcpPeer peer([](TcpWire& wire) {
    wire.send(fixture::text("ST,GS"));
    wire.hangUp();
  });
  fixture::connectTo(socket, peer.port());
  socket.put_MaxReadIdleMs(5000);
  EXPECT_EQ(receiveBytes(socket, 14), (ReceivedBytes{false, "ST,GS"}));
  EXPECT_EQ(socket.get_ReceiveFailReason(), ClsSocket::ClosedByPeer);
  EXPECT_FALSE(socket.get_IsConnected());
  EXPECT_FALSE(receiveBytes(socket, 1).first);
  EXPECT_EQ(socket.get_ReceiveFailReason(), ClsSocket::SocketError);
  EXPECT_FALSE(sendBytes(socket, "W"));
  EXPECT_EQ(socket.get_SendFailReason(), ClsSocket::General);
}

TEST_F(HangUp, AResetInTheMiddleOfAnAnswerIsASocketError) {
  TcpPeer peer(kResetting);
  fixture::connectTo(socket, peer.port());
  socket.put_MaxReadIdleMs(5000);
  ASSERT_TRUE(sendBytes(socket, "W"));
  EXPECT_EQ(receiveBytes(socket, 14), (ReceivedBytes{false, ""}));
  EXPECT_EQ(socket.get_ReceiveFailReason(), ClsSocket::SocketError);
  EXPECT_FALSE(socket.get_IsConnected());
  EXPECT_TRUE(socket.Close(5000));
}

TEST_F(HangUp, ASendAfterAResetFailsAndTheProcessLives) {
  ASSERT_NE(std::signal(SIGPIPE, SIG_DFL), SIG_ERR);
  TcpPeer peer(kResetting);
  fixture::connectTo(socket, peer.port());
  const Stopwatch clock;
  while (sendBytes(socket, "W") && clock.ms() < 5000) {
  }
  // Whether the reset is found before a send or by one depends on when it comes.
  EXPECT_FALSE(socket.get_IsConnected());
  EXPECT_FALSE(sendBytes(socket, "W"));
  EXPECT_EQ(socket.get_SendFailReason(), ClsSocket::NoConnection);
}

TEST_F(HangUp, AnyOtherErrorOfASendIsASocketError) {
  TcpPeer peer(fixture::silent());
  fixture::connectTo(socket, peer.port());
  SystemCalls calls;
  calls.instead["send"] = [] { return -ENETDOWN; };
  EXPECT_FALSE(sendBytes(socket, "W"));
  EXPECT_EQ(socket.get_SendFailReason(), ClsSocket::SocketError);
  EXPECT_FALSE(socket.get_IsConnected());
}

TEST(Closing, APeerThatNeverClosesCostsTheWholeTimeAndNoMore) {
  const fixture::TcpScript endless = [](TcpWire& wire) {
    while (wire.send(fixture::text("ST,GS"))) continue;  // is read and dropped
  };
  const fixture::TcpScript mute = [](TcpWire& wire) { wire.pause(60'000); };
  for (const fixture::TcpScript& script : {endless, mute}) {
    TcpPeer peer(script);
    CkSocket socket;
    fixture::connectTo(socket, peer.port());
    const Stopwatch clock;
    EXPECT_TRUE(socket.Close(300));
    EXPECT_GE(clock.ms(), 290);
    EXPECT_LT(clock.ms(), 300 + kSlack_ms);
  }
}

TEST(Closing, TheEndOfTheObjectGivesThePeerTenMilliseconds) {
  TcpPeer peer([](TcpWire& wire) { wire.pause(60'000); });
  const std::size_t before = fixture::openDescriptors();
  const Stopwatch clock;
  {
    CkSocket socket;
    fixture::connectTo(socket, peer.port());
  }
  EXPECT_LT(clock.ms(), kSlack_ms);
  EXPECT_LE(fixture::openDescriptors(), before + 1);  // the peer's end is still open
}

/// Descriptors up to a number taken, so that the next one lies above it.
class HighDescriptor : public testing::Test {
 protected:
  void SetUp() override {
    rlimit limit = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    if (limit.rlim_cur < 1100) {
      limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, 2048);
      ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    int fd = 0;
    while (fd >= 0 && fd < FD_SETSIZE) {
      fd = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
      taken.emplace_back(fd);
    }
    ASSERT_EQ(fd, FD_SETSIZE);
  }

  std::vector<fixture::Descriptor> taken;
};

TEST_F(HighDescriptor, ConnectsSendsReceivesAndWaitsThroughPoll) {
  TcpPeer peer(fixture::answering(fixture::text("W"), fixture::text("12")));
  taken.pop_back();  // the first that no set of select() holds
  CkSocket socket;
  SystemCalls calls;
  fixture::connectTo(socket, peer.port());
  socket.put_MaxReadIdleMs(5000);
  SystemCalls::Answer full = -EAGAIN;
  calls.instead["send"] = [&] { return std::exchange(full, std::nullopt); };
  ASSERT_TRUE(sendBytes(socket, "W"));
  EXPECT_EQ(receiveBytes(socket, 2), (ReceivedBytes{true, "12"}));
  socket.put_MaxReadIdleMs(60);
  const Stopwatch clock;
  EXPECT_FALSE(receiveBytes(socket, 1).first);
  EXPECT_GE(clock.ms(), 60);
  EXPECT_EQ(socket.get_ReceiveFailReason(), ClsSocket::TimedOut);
  EXPECT_TRUE(socket.Close(5000));
}

TEST_F(HighDescriptor, APollThatFailsOrIsInterruptedFindsNothingReady) {
  std::binary_semaphore answering{0};
  TcpPeer peer([&](TcpWire& wire) {
    static_cast<void>(answering.try_acquire_for(std::chrono::seconds(20)));
    wire.pause(50);
    wire.send(fixture::text("12"));
    wire.receive(1);
  });
  CkSocket socket;
  SystemCalls calls;
  fixture::connectTo(socket, peer.port());
  calls.instead["send"] = [] { return -EAGAIN; };
  SystemCalls::Answer error;
  calls.instead["poll"] = [&] { return std::exchange(error, std::nullopt); };
  for (const int failure : {-EINTR, -ENOMEM}) {
    error = failure;
    EXPECT_FALSE(sendBytes(socket, "W"));
    EXPECT_EQ(socket.get_SendFailReason(), ClsSocket::TimedOut);
  }
  error = -ENOMEM;
  EXPECT_FALSE(receiveBytes(socket, 2).first);
  EXPECT_EQ(socket.get_ReceiveFailReason(), ClsSocket::TimedOut);
  // The time of an answer isn't over with a signal.
  error = -EINTR;
  socket.put_MaxReadIdleMs(5000);
  answering.release();
  EXPECT_EQ(receiveBytes(socket, 2), (ReceivedBytes{true, "12"}));
}

TEST_F(HighDescriptor, TellsRefusalFromSilence) {
  const fixture::SilentPort silent;
  CkSocket socket;
  EXPECT_FALSE(socket.Connect("127.0.0.1", silent.port(), false, 100));
  EXPECT_EQ(socket.get_ConnectFailReason(), 6);
  EXPECT_FALSE(socket.Connect("127.0.0.1", fixture::refusingPort(), false, 5000));
  EXPECT_EQ(socket.get_ConnectFailReason(), 7);
}

}  // namespace
