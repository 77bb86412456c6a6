#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <chrono>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "DnsCache.h"
#include "HostnameResolve.h"
#include "StringBuffer.h"

namespace {

TEST(FindIpAddrInfo, PrefersStreamsOverTcp) {
  sockaddr address = {};
  const auto entry = [&](int family, int type, int protocol) {
    addrinfo info = {};
    info.ai_family = family;
    info.ai_socktype = type;
    info.ai_protocol = protocol;
    info.ai_addr = &address;
    return info;
  };
  // From the best to the worst; each wins over all that follow.
  std::array<addrinfo, 6> entries = {
      entry(AF_INET, SOCK_STREAM, IPPROTO_TCP), entry(AF_INET, 0, IPPROTO_TCP),
      entry(AF_INET, SOCK_STREAM, 0),           entry(AF_INET, 0, 0),
      entry(AF_INET, SOCK_DGRAM, IPPROTO_UDP),  entry(AF_INET6, SOCK_STREAM, IPPROTO_TCP)};
  for (std::size_t best = 0; best < entries.size(); ++best) {
    // A list from the worst to the best.
    for (std::size_t i = best; i < entries.size(); ++i) {
      entries[i].ai_next = i == best ? nullptr : &entries[i - 1];
    }
    const addrinfo* found = HostnameResolve::findIpAddrInfo(&entries.back(), AF_INET);
    EXPECT_EQ(found, best < 4 ? &entries[best] : nullptr) << best;
  }
}

class Cache : public testing::Test {
 protected:
  Cache() {
    DnsCache::m_dnsCachingEnabled = true;
    forget();
  }
  ~Cache() override {
    forget();
    DnsCache::m_dnsCachingEnabled = false;
  }
  static void insert(const std::string& host, const char* address) {
    DnsCache::dnsCacheInsert(StringBuffer(host.c_str()), StringBuffer(address));
  }
  static void rotate() { insert("", ""); }
  static void forget() {
    rotate();
    rotate();
  }
  static std::string lookup(const char* host) {
    StringBuffer address;
    return HostnameResolve::dnsCacheLookup(StringBuffer(host), address) ? address.getString() : "";
  }
};

TEST_F(Cache, IsOffUnlessSwitchedOn) {
  DnsCache::m_dnsCachingEnabled = false;
  insert("a", "1.1.1.1");
  EXPECT_EQ(lookup("a"), "");
  EXPECT_EQ(lookup("10.0.0.1"), "10.0.0.1");
  DnsCache::m_dnsCachingEnabled = true;
  EXPECT_EQ(lookup("a"), "");
}

TEST_F(Cache, KeepsANameForTwoGenerations) {
  insert("a", "1.1.1.1");
  insert("a", "2.2.2.2");
  EXPECT_EQ(lookup("a"), "2.2.2.2");
  rotate();
  EXPECT_EQ(lookup("a"), "2.2.2.2");
  insert("a", "3.3.3.3");
  EXPECT_EQ(lookup("a"), "3.3.3.3");
  rotate();
  rotate();
  EXPECT_EQ(lookup("a"), "");
}

TEST_F(Cache, ForgetsWhatIsTooOld) {
  insert("a", "1.1.1.1");
  DnsCache::m_timeToLiveMs = 3'600'000;
  EXPECT_EQ(lookup("a"), "1.1.1.1");
  DnsCache::m_timeToLiveMs = 1;
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_EQ(lookup("a"), "");
  DnsCache::m_timeToLiveMs = 0;
  EXPECT_EQ(lookup("a"), "");
}

TEST_F(Cache, AFullGenerationBecomesTheOldOne) {
  insert("first", "1.1.1.1");
  for (int i = 0; i < 1598; ++i) insert("host" + std::to_string(i), "2.2.2.2");
  EXPECT_EQ(lookup("first"), "1.1.1.1");
  insert("last", "3.3.3.3");
  EXPECT_EQ(lookup("first"), "1.1.1.1");
  insert("one more", "3.3.3.3");
  EXPECT_EQ(lookup("first"), "");
}

}  // namespace
