// Sockets that find no memory: every failing allocation is a failure, and no byte goes missing.

#include <string>

#include <gtest/gtest.h>

#include "CkSocket.h"
#include "MemoryWatch.h"
#include "TcpPeer.h"

namespace {

constexpr int kMostAllocations = 40;

std::string textOf(CkByteData& data) {
  return {reinterpret_cast<const char*>(data.getBytes()), data.getSize()};
}

TEST(SocketMemory, WithoutAnInnerObjectEverythingFails) {
  const fixture::MemoryShortage none(0);
  CkSocket socket;
  CkByteData data;
  EXPECT_FALSE(socket.Connect("127.0.0.1", 1, false, 100));
  EXPECT_FALSE(socket.SendBytes(data));
  EXPECT_FALSE(socket.ReceiveBytesN(0, data));
  EXPECT_FALSE(socket.get_IsConnected());
  EXPECT_FALSE(socket.Close(100));
}

TEST(SocketMemory, AReceiveLeavesNoGap) {
  const std::string kAnswer = "ST,GS,+  1.2kg";
  bool wasShort = true;
  for (int left = 0; wasShort && left < kMostAllocations; ++left) {
    fixture::TcpPeer peer(fixture::sending(fixture::text(kAnswer)));
    CkSocket socket;
    ASSERT_TRUE(socket.Connect("127.0.0.1", peer.port(), false, 5000));
    socket.put_MaxReadIdleMs(5000);
    CkByteData data;
    {
      const fixture::MemoryShortage shortage(left);
      socket.ReceiveBytesN(1, data);
      wasShort = shortage.isHit();
    }
    if (!socket.get_IsConnected()) continue;
    EXPECT_TRUE(socket.ReceiveBytesN(kAnswer.size() - data.getSize(), data)) << left;
    EXPECT_EQ(textOf(data), kAnswer) << left;
  }
  EXPECT_FALSE(wasShort);
}

}  // namespace
