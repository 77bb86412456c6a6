#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <string>

#include <gtest/gtest.h>

#include "DnsCache.h"
#include "HostnameResolve.h"
#include "StringBuffer.h"

namespace {

TEST(FindIpAddrInfo, PrefersStreamsOverTcp) {
  sockaddr address = {};
  const auto entry = [&](int family, int type, int protocol) {
    return addrinfo{0, family, type, protocol, sizeof address, &address, nullptr, nullptr};
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

TEST(DnsCache, AFullGenerationBecomesTheOldOne) {
  const auto insert = [](const std::string& host) {
    DnsCache::dnsCacheInsert(StringBuffer(host.c_str()), StringBuffer("1.1.1.1"));
  };
  const auto knows = [](const char* host) {
    StringBuffer address;
    return HostnameResolve::dnsCacheLookup(StringBuffer(host), address);
  };
  DnsCache::m_dnsCachingEnabled = true;
  for (int i = 0; i < 2; ++i) insert("");  // makes a new generation
  insert("first");
  for (int i = 0; i < 1598; ++i) insert("host" + std::to_string(i));
  insert("last");
  EXPECT_TRUE(knows("first"));
  insert("one more");
  EXPECT_FALSE(knows("first"));
  EXPECT_TRUE(knows("last"));
  DnsCache::m_dnsCachingEnabled = false;
}

}  // namespace
