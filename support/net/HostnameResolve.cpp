#include "HostnameResolve.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <array>
#include <chrono>
#include <string>
#include <thread>

#include "DnsCache.h"
#include "LogBase.h"
#include "SocketParams.h"
#include "StringBuffer.h"

namespace {

constexpr std::chrono::milliseconds kPauseBeforeRetry(25);

template <typename Address>
bool isNumeric(int family, const char* text) {
  Address address = {};
  return ::inet_pton(family, text, &address) == 1;
}

addrinfo hintsFor(const char* host, HostnameResolve::Mode mode) {
  using Mode = HostnameResolve::Mode;
  addrinfo hints = {};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_family = mode == Mode::Ipv6OrMapped ? AF_INET6 : AF_UNSPEC;
  hints.ai_flags = AI_NUMERICSERV;
  if (mode == Mode::AnyOrMapped) hints.ai_flags |= AI_ALL | AI_V4MAPPED;
  if (mode == Mode::Ipv6OrMapped) hints.ai_flags |= AI_V4MAPPED;
  if (isNumeric<in_addr>(AF_INET, host)) {
    hints.ai_flags |= AI_NUMERICHOST;
    hints.ai_family = mode == Mode::Ipv6OrMapped ? AF_INET6 : AF_INET;
  } else if (isNumeric<in6_addr>(AF_INET6, host)) {
    hints.ai_flags |= AI_NUMERICHOST;
    hints.ai_family = AF_INET6;
  }
  return hints;
}

}  // namespace

bool HostnameResolve::normalizeConnectHostname(StringBuffer& host, SocketParams& params,
                                               LogBase& log) {
  host.trim2();
  for (const char* scheme : {"ftp://", "http://", "https://"}) {
    host.replaceFirstOccurance(scheme, "", false);
  }
  host.removeCharOccurances('/');
  host.trim2();
  if (host.containsChar(':') && !host.containsChar('.') && host.beginsWith("[")) {
    host.removeCharOccurances('[');
    host.removeCharOccurances(']');
  }
  if (host.equalsIgnoreCase("localhost")) host.setString("127.0.0.1");
  if (!host.empty()) return true;
  log.LogError("Cannot connect, hostname is zero length");
  params.connectFailReason = ConnectFailReason::EmptyHostname;
  return false;
}

bool HostnameResolve::dnsCacheLookup(const StringBuffer& host, StringBuffer& address) {
  if (::inet_addr(host.getString()) != INADDR_NONE) return address.setString(host);
  return DnsCache::dnsCacheLookup(host, address);
}

HostnameResolve::Addresses HostnameResolve::getAddressInfo(const StringBuffer& host, int port,
                                                           Mode mode, int& status, LogBase& log) {
  const addrinfo hints = hintsFor(host.getString(), mode);
  const std::string service = std::to_string(port);
  const auto ask = [&] {
    addrinfo* list = nullptr;
    status = ::getaddrinfo(host.getString(), service.c_str(), &hints, &list);
    return Addresses(status == 0 ? list : nullptr, ::freeaddrinfo);
  };
  Addresses found = ask();
  if (status == 0) return found;
  log.LogError("Failed to get host address info. (4)");
  if (status == kNoSuchName) return found;
  log.LogInfo("Retrying DNS lookup...");
  std::this_thread::sleep_for(kPauseBeforeRetry);
  found = ask();
  if (status != 0) log.LogData("getaddrinfo", ::gai_strerror(status));
  return found;
}

const addrinfo* HostnameResolve::findIpAddrInfo(const addrinfo* list, int family) {
  const auto isStream = [](const addrinfo& entry) { return entry.ai_socktype == SOCK_STREAM; };
  const auto isStreamOrAny = [&](const addrinfo& entry) {
    return entry.ai_socktype == 0 || isStream(entry);
  };
  const auto isTcp = [](const addrinfo& entry) { return entry.ai_protocol == IPPROTO_TCP; };
  const auto first = [&](auto fits) -> const addrinfo* {
    for (const addrinfo* entry = list; entry != nullptr; entry = entry->ai_next) {
      if (entry->ai_family == family && entry->ai_addr != nullptr && fits(*entry)) return entry;
    }
    return nullptr;
  };
  if (const addrinfo* e = first([&](const addrinfo& a) { return isStream(a) && isTcp(a); })) {
    return e;
  }
  if (const addrinfo* e = first([&](const addrinfo& a) { return isStreamOrAny(a) && isTcp(a); })) {
    return e;
  }
  if (const addrinfo* e = first(isStream)) return e;
  return first(isStreamOrAny);
}

void HostnameResolve::numericText(const addrinfo& entry, StringBuffer& text) {
  std::array<char, NI_MAXHOST> numeric = {};
  if (::getnameinfo(entry.ai_addr, entry.ai_addrlen, numeric.data(), numeric.size(), nullptr, 0,
                    NI_NUMERICHOST) != 0) {
    numeric.fill(0);
  }
  text.setString(numeric.data());
}
