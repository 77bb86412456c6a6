// Sockets that find no memory: every failing allocation is a failure, and no byte goes missing.

#include <string>

#include <gtest/gtest.h>

#include "CkSocket.h"
#include "DnsCache.h"
#include "MemoryWatch.h"
#include "RunningShort.h"
#include "StringBuffer.h"
#include "TcpPeer.h"

namespace {

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

TEST(SocketMemory, AConnectThatFailsHasAReasonAndLeavesNoOldConnection) {
  const std::string host = "127.0.0.1" + std::string(100, ' ');
  fixture::withMoreAndMoreMemory([&](int left) {
    fixture::TcpPeer first(fixture::silent());
    fixture::TcpPeer second(fixture::silent());
    CkSocket socket;
    ASSERT_TRUE(socket.Connect("127.0.0.1", first.port(), false, 5000));
    bool connected = false;
    {
      const fixture::MemoryShortage shortage(left);
      connected = socket.Connect(host.c_str(), second.port(), false, 5000);
    }
    EXPECT_EQ(socket.get_IsConnected(), connected) << left;
    EXPECT_EQ(socket.get_ConnectFailReason() != 0, !connected) << left;
  });
}

// A name that can't be kept is resolved anew; those that are kept stay.
TEST(SocketMemory, TheCacheOfNamesKeepsWhatItHas) {
  DnsCache::m_dnsCachingEnabled = true;
  const StringBuffer kept("kept");
  const StringBuffer address("127.0.0.1");
  fixture::withMoreAndMoreMemory([&](int left) {
    const fixture::MemoryShortage shortage(left);
    DnsCache::dnsCacheInsert(StringBuffer(), address);
    DnsCache::dnsCacheInsert(kept, address);
  });
  {
    const fixture::MemoryShortage none(0);
    DnsCache::dnsCacheInsert(StringBuffer(), address);
    DnsCache::dnsCacheInsert(StringBuffer(), address);
  }
  const StringBuffer next("next");
  DnsCache::dnsCacheInsert(next, address);
  StringBuffer found;
  EXPECT_TRUE(DnsCache::dnsCacheLookup(kept, found) && DnsCache::dnsCacheLookup(next, found));
  DnsCache::m_dnsCachingEnabled = false;
}

TEST(SocketMemory, AReceiveLeavesNoGap) {
  const std::string kAnswer = "ST,GS,+  1.2kg";
  fixture::withMoreAndMoreMemory([&](int left) {
    fixture::TcpPeer peer(fixture::sending(fixture::text(kAnswer)));
    CkSocket socket;
    ASSERT_TRUE(socket.Connect("127.0.0.1", peer.port(), false, 5000));
    socket.put_MaxReadIdleMs(5000);
    CkByteData data;
    {
      const fixture::MemoryShortage shortage(left);
      socket.ReceiveBytesN(1, data);
    }
    if (!socket.get_IsConnected()) return;
    EXPECT_TRUE(socket.ReceiveBytesN(kAnswer.size() - data.getSize(), data)) << left;
    EXPECT_EQ(textOf(data), kAnswer) << left;
  });
}

}  // namespace
