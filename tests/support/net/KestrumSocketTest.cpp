#include <fcntl.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <chrono>
#include <set>
#include <thread>

#include <gtest/gtest.h>

#include "ClsSocket.h"
#include "KestrumSocket.h"
#include "LogBase.h"
#include "NetTesting.h"
#include "SystemCalls.h"
#include "TcpPeer.h"

namespace {

using fixture::Stopwatch;
using fixture::TcpPeer;
using fixture::TcpWire;

class Plain : public testing::Test {
 protected:
  bool connectTo(const TcpPeer& peer) {
    return socket.connectSocket(StringBuffer("127.0.0.1"), peer.port(), settings, params, log);
  }
  bool receive(std::uint32_t idleMs) {
    std::uint32_t received = 0;
    return socket.sockRecv_nb(buffer.data(), kBufferSize, idleMs, received, params, log);
  }
  int option(int name, int level = SOL_SOCKET) const {
    int value = 0;
    socklen_t size = sizeof value;
    EXPECT_EQ(::getsockopt(socket.getSocketFd(), level, name, &value, &size), 0);
    return value;
  }

  TcpSettings settings;
  SocketParams params;
  LogNull log;
  KestrumSocket socket;
  static constexpr std::uint32_t kBufferSize = 64;
  std::array<unsigned char, kBufferSize> buffer = {};
};

TEST_F(Plain, TakesOptionsAndRoundsBufferSizes) {
  TcpPeer peer(fixture::silent());
  settings.soRcvBuf = 100'000;
  ASSERT_TRUE(connectTo(peer));
  EXPECT_NE(::fcntl(socket.getSocketFd(), F_GETFD) & FD_CLOEXEC, 0);
  EXPECT_NE(::fcntl(socket.getSocketFd(), F_GETFL) & O_NONBLOCK, 0);
  // The system doubles what it is told.
  EXPECT_EQ(option(SO_RCVBUF), 2 * 98'304);
  socket.setSoRcvBuf(4095, log);
  EXPECT_EQ(option(SO_RCVBUF), 2 * 98'304);
  socket.setSoRcvBuf(65'536, log);
  EXPECT_EQ(option(SO_RCVBUF), 2 * 65'536);
  EXPECT_EQ(option(SO_KEEPALIVE), 0);
  socket.SetKeepAlive(true, log);
  EXPECT_NE(option(SO_KEEPALIVE), 0);
  EXPECT_EQ(option(TCP_NODELAY, IPPROTO_TCP), 0);
  socket.setTcpNoDelay(true, log);
  EXPECT_NE(option(TCP_NODELAY, IPPROTO_TCP), 0);
}

// A size that the system shall not have at all stays the system's own choice.
TEST_F(Plain, LeavesBufferSizesOutsideTheRangeAlone) {
  TcpPeer peer(fixture::silent());
  std::set<int> sizes;
  for (const std::uint32_t size : {0U, 4095U, 8U * 1024 * 1024 + 1}) {
    settings.soRcvBuf = size;
    ASSERT_TRUE(connectTo(peer));
    sizes.insert(option(SO_RCVBUF));
    socket.ensureSocketClosed();
  }
  EXPECT_EQ(sizes.size(), 1U);
}

TEST_F(Plain, SendsInPiecesOfTheSizeThatIsAskedForWithinItsLimits) {
  TcpPeer peer(fixture::silent());
  ASSERT_TRUE(connectTo(peer));
  fixture::SystemCalls calls;
  const std::vector<unsigned char> data(20'000);
  for (const auto& [packetSize, piece] : {std::pair(0U, 16'800), std::pair(1U, 1024),
                                          std::pair(5000U, 5000), std::pair(16'801U, 16'800)}) {
    calls.noted.clear();
    std::uint32_t sent = 0;
    EXPECT_TRUE(socket.sockSend(data.data(), 20'000, packetSize, 1000, sent, log, params));
    EXPECT_EQ(sent, 20'000U);
    EXPECT_EQ(calls.noted.front(), "send " + std::to_string(piece));
    EXPECT_EQ(calls.noted.back(), "send " + std::to_string((20'000 - 1) % piece + 1));
  }
}

TEST_F(Plain, ACloseInAnotherThreadEndsAWait) {
  TcpPeer peer([](TcpWire& wire) { wire.pause(60'000); });
  ASSERT_TRUE(connectTo(peer));
  std::thread closer([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    LogNull quiet;
    socket.terminateConnection(2000, quiet);
  });
  const Stopwatch clock;
  EXPECT_FALSE(receive(20'000));
  closer.join();
  EXPECT_LT(clock.ms(), 10'000);
  EXPECT_EQ(socket.getSocketFd(), -1);
}

TEST_F(Plain, ASecondReceiverIsTurnedAwayASenderIsNot) {
  TcpPeer peer(fixture::answering(fixture::text("W"), fixture::text("1")));
  ASSERT_TRUE(connectTo(peer));
  std::thread receiver([&] {
    SocketParams own;
    LogNull quiet;
    unsigned char byte = 0;
    std::uint32_t n = 0;
    EXPECT_TRUE(socket.sockRecv_nb(&byte, 1, 20'000, n, own, quiet));
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_FALSE(receive(20'000));
  EXPECT_FALSE(params.timedOut);
  std::uint32_t sent = 0;
  EXPECT_TRUE(socket.sockSend(fixture::text("W").data(), 1, 0, 1000, sent, log, params));
  receiver.join();
}

TEST(TwoThreads, OnOneObjectTheSecondReceiverIsTurnedAway) {
  TcpPeer peer([](TcpWire& wire) { wire.pause(60'000); });
  CkSocket socket;
  fixture::connectTo(socket, peer.port());
  socket.put_MaxReadIdleMs(1500);
  std::thread first([&] { EXPECT_FALSE(fixture::receiveBytes(socket, 1).first); });
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  const Stopwatch clock;
  EXPECT_FALSE(fixture::receiveBytes(socket, 1).first);
  EXPECT_EQ(socket.get_ReceiveFailReason(), ClsSocket::OtherThread);
  EXPECT_LT(clock.ms(), 1000);
  first.join();
  EXPECT_EQ(socket.get_ReceiveFailReason(), ClsSocket::TimedOut);
}

}  // namespace
