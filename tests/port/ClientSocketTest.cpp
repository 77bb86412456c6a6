#include <array>

#include <gtest/gtest.h>

#include "ClientSocket.h"
#include "TcpPeer.h"
#include "Usage.h"

namespace {

TEST(ClientSocket, ConnectsAndTransfersNothing) {
  fixture::TcpPeer peer(fixture::sending(fixture::text("answer")));
  const auto port = static_cast<unsigned short>(peer.port());
  COrbClientSocket socket(true);
  ASSERT_EQ(socket.connect("localhost", port), 0);
  std::array<unsigned char, 6> data = {};
  EXPECT_EQ(socket.receive(data.data(), 6, 0), 0);
  EXPECT_EQ(socket.send(data.data(), 6, 0), 0);  // its select() looks at no descriptor
  EXPECT_EQ(socket.reset(), 0);
  EXPECT_EQ(socket.connect("no.such.host.invalid", port), -1);
  EXPECT_EQ(socket.connect(nullptr, port), -1);
  socket.destroy();
  EXPECT_EQ(socket.connect("127.0.0.1", port), -1);
  EXPECT_EQ(socket.send(data.data(), 6, 0), -1);
  EXPECT_EQ(socket.receive(data.data(), 6, 0), -1);
}

TEST(ClientSocket, OwnsWhatItAdopts) {
  const auto before = fixture::openDescriptors();
  COrbClientSocket socket(false);
  EXPECT_EQ(fixture::openDescriptors(), before + 1);
  socket.setup(-5);  // no descriptor, and none that a set holds
  EXPECT_EQ(fixture::openDescriptors(), before);
  std::array<unsigned char, 1> byte = {};
  EXPECT_EQ(socket.receive(byte.data(), 1, 0), 0);
}

}  // namespace
