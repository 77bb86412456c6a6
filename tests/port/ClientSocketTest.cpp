#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>

#include <gtest/gtest.h>

#include "ClientSocket.h"
#include "HexBytes.h"
#include "TcpPeer.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Shows the descriptor, which only derived classes see.
class Probe : public COrbClientSocket {
 public:
  explicit Probe(bool tcp = true) : COrbClientSocket(tcp) {}
  int descriptor() const { return fd; }
  int type() const {
    int value = 0;
    socklen_t size = sizeof value;
    return ::getsockopt(fd, SOL_SOCKET, SO_TYPE, &value, &size) == 0 ? value : -1;
  }
};

bool isOpen(int descriptor) { return ::fcntl(descriptor, F_GETFD) >= 0; }

TEST(ClientSocket, HasASocketOfItsKindFromTheStart) {
  EXPECT_EQ(Probe(true).type(), SOCK_STREAM);
  EXPECT_EQ(Probe(false).type(), SOCK_DGRAM);
  Probe socket(false);
  EXPECT_NE(::fcntl(socket.descriptor(), F_GETFD) & FD_CLOEXEC, 0);
  EXPECT_EQ(socket.reset(), 0);
  EXPECT_EQ(socket.type(), SOCK_STREAM);
  socket.destroy();
  EXPECT_FALSE(socket.isValid());
}

TEST(ClientSocket, AdoptsADescriptorAndClosesTheOneBefore) {
  std::array<int, 2> pair = {};
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair.data()), 0);
  {
    Probe socket;
    const int before = socket.descriptor();
    socket.setup(pair[0]);
    EXPECT_EQ(socket.descriptor(), pair[0]);
    EXPECT_FALSE(isOpen(before));
    socket.setBlocking(false);
    EXPECT_NE(::fcntl(pair[0], F_GETFL) & O_NONBLOCK, 0);
    socket.setBlocking(true);
    EXPECT_EQ(::fcntl(pair[0], F_GETFL) & O_NONBLOCK, 0);
  }
  EXPECT_FALSE(isOpen(pair[0]));
  ::close(pair[1]);
}

TEST(ClientSocket, ConnectsByAddressAndByName) {
  fixture::TcpPeer peer(fixture::silent());
  const auto port = static_cast<unsigned short>(peer.port());
  EXPECT_EQ(Probe().connect("127.0.0.1", port), 0);
  EXPECT_EQ(Probe().connect("localhost", port), 0);
  EXPECT_EQ(Probe().connect("no.such.host.invalid", port), -1);
  EXPECT_EQ(Probe().connect(nullptr, port), -1);
  peer.stop();
  EXPECT_EQ(Probe().connect("127.0.0.1", port), -1);
  Probe closed;
  closed.destroy();
  EXPECT_EQ(closed.connect("127.0.0.1", port), -1);
}

TEST(ClientSocket, TransfersNothingAsItsSelectLooksAtNoDescriptor) {
  fixture::TcpPeer peer(fixture::sending(fixture::text("answer")));
  Probe socket;
  ASSERT_EQ(socket.connect("127.0.0.1", static_cast<unsigned short>(peer.port())), 0);
  std::array<unsigned char, 6> data = {};

  auto start = steady_clock::now();
  EXPECT_EQ(socket.send(data.data(), 0, 0), 0);
  EXPECT_LT(steady_clock::now() - start, milliseconds(900));

  start = steady_clock::now();
  EXPECT_EQ(socket.send(data.data(), 6, 0), 0);
  EXPECT_GE(steady_clock::now() - start, milliseconds(990));

  start = steady_clock::now();
  EXPECT_EQ(socket.receive(data.data(), 6, 0), 0);
  EXPECT_LT(steady_clock::now() - start, milliseconds(900));

  socket.destroy();
  EXPECT_EQ(socket.send(data.data(), 6, 0), -1);
  EXPECT_EQ(socket.receive(data.data(), 6, 0), -1);
}

}  // namespace
