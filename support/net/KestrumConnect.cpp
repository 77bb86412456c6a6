// How a KestrumSocket gets its connection.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "DnsCache.h"
#include "KestrumSocket.h"
#include "LogBase.h"

namespace {

using Mode = HostnameResolve::Mode;

constexpr std::uint32_t kConnectForever_ms = 21'600'000;

struct Attempt {
  bool useCache;
  Mode mode;
  bool onlyAfterCacheHit;
};

// A cached address may be out of date, so a hit is tried again without the cache. The other modes
// are for hosts whose resolver gives away addresses only on special request.
constexpr std::array<Attempt, 4> kAttempts = {{
    {.useCache = true, .mode = Mode::Any, .onlyAfterCacheHit = false},
    {.useCache = false, .mode = Mode::Any, .onlyAfterCacheHit = true},
    {.useCache = false, .mode = Mode::AnyOrMapped, .onlyAfterCacheHit = false},
    {.useCache = false, .mode = Mode::Ipv6OrMapped, .onlyAfterCacheHit = false},
}};

}  // namespace

bool KestrumSocket::failConnect(ConnectFailReason reason, SocketParams& params) {
  params.connectFailReason = reason;
  ensureSocketClosed();
  return false;
}

bool KestrumSocket::connectSocket(const StringBuffer& host, int port, const TcpSettings& settings,
                                  SocketParams& params, LogBase& log) {
  const Target target = {
      host, port, settings.connectTimeoutMs == 0 ? kConnectForever_ms : settings.connectTimeoutMs};
  bufferSizesAtMaking(settings);
  // The names of this host need no resolver, which may be slow or missing on a till.
  if (host.equalsIgnoreCase("localhost") || host.equals("127.0.0.1")) {
    return connectLocalhost(target, params, log);
  }
  bool foundInCache = false;
  for (const Attempt& attempt : kAttempts) {
    if (attempt.onlyAfterCacheHit && !foundInCache) continue;
    m_gaiStatus = 0;
    params.clearFlags();
    if (connectResolved(target, attempt.useCache, attempt.mode, foundInCache, params, log)) {
      return true;
    }
    // A host that doesn't answer once won't answer to the same question asked differently.
    if (m_gaiStatus == HostnameResolve::kNoSuchName || params.timedOut) return false;
  }
  return false;
}

bool KestrumSocket::connectLocalhost(const Target& target, SocketParams& params, LogBase& log) {
  StringBuffer host;
  host.setString(target.host);
  if (!HostnameResolve::normalizeConnectHostname(host, params, log)) return false;
  m_lastConnectedIp.setString(host);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(target.port));
  address.sin_addr.s_addr = ::inet_addr(host.getString());
  return makeSocket(AF_INET, SOCK_STREAM, 0, params, "Cannot connect, invalid socket", log) &&
         connectSocketInner(reinterpret_cast<const sockaddr*>(&address), sizeof address,
                            target.timeoutMs, params, log);
}

bool KestrumSocket::connectResolved(const Target& target, bool useCache, Mode mode,
                                    bool& foundInCache, SocketParams& params, LogBase& log) {
  const LogContextExitor context(log, "connect_ipv6_or_ipv4");
  StringBuffer host;
  host.setString(target.host);
  if (!HostnameResolve::normalizeConnectHostname(host, params, log)) {
    log.LogError("Failed to normalize hostname.");
    return false;
  }
  StringBuffer address;
  if (useCache && HostnameResolve::dnsCacheLookup(host, address)) {
    foundInCache = true;
    host.setString(address);
  }
  const HostnameResolve::Addresses found =
      HostnameResolve::getAddressInfo(host, target.port, mode, m_gaiStatus, log);
  if (!found) return failConnect(ConnectFailReason::DnsLookupFailed, params);

  const addrinfo* chosen = HostnameResolve::findIpAddrInfo(found.get(), AF_INET);
  if (chosen == nullptr) {
    log.LogInfo("No IPv4 address found, checking for IPv6...");
    chosen = HostnameResolve::findIpAddrInfo(found.get(), AF_INET6);
  }
  if (chosen == nullptr) {
    log.LogError("No IPv4 or IPv6 addresses found.");
    return failConnect(ConnectFailReason::DnsLookupFailed, params);
  }
  HostnameResolve::numericText(*chosen, m_lastConnectedIp);
  DnsCache::dnsCacheInsert(host, m_lastConnectedIp);
  log.LogDataSb("address", m_lastConnectedIp);

  return makeSocket(chosen->ai_family, chosen->ai_socktype, chosen->ai_protocol, params,
                    "Failed to create socket for connecting.", log) &&
         connectSocketInner(chosen->ai_addr, chosen->ai_addrlen, target.timeoutMs, params, log);
}

bool KestrumSocket::makeSocket(int family, int type, int protocol, SocketParams& params,
                               const char* complaint, LogBase& log) {
  ensureSocketClosed();
  // A program that the platform starts shall not hold the scale's only connection.
  m_socketFd = ::socket(family, type | SOCK_NONBLOCK | SOCK_CLOEXEC, protocol);
  if (!isOpen()) {
    const int error = errno;
    log.LogError(complaint);
    errno = error;
    log.LogLastErrorOS();
    return failConnect(ConnectFailReason::InternalError, params);
  }
  if (m_soSndBuf != 0) setOption(SOL_SOCKET, SO_SNDBUF, static_cast<int>(m_soSndBuf), log);
  if (m_soRcvBuf != 0) setOption(SOL_SOCKET, SO_RCVBUF, static_cast<int>(m_soRcvBuf), log);
  return true;
}

bool KestrumSocket::connectSocketInner(const sockaddr* address, socklen_t size,
                                       std::uint32_t timeoutMs, SocketParams& params,
                                       LogBase& log) {
  if (::connect(m_socketFd, address, size) != 0) {
    if (errno != EINPROGRESS) {
      log.LogLastErrorOS();
      return failConnect(ConnectFailReason::Rejected, params);
    }
    log.LogInfo("Waiting for the connect to complete...");
    if (!waitWriteableMsHB(timeoutMs, false, true, params, log)) {
      return failConnect(params.timedOut ? ConnectFailReason::Timeout : ConnectFailReason::Rejected,
                         params);
    }
    int error = 0;
    socklen_t errorSize = sizeof error;
    if (::getsockopt(m_socketFd, SOL_SOCKET, SO_ERROR, &error, &errorSize) != 0) {
      log.LogError("Failed to get SO_ERROR on socket.");
    } else if (error != 0) {
      log.LogError("getsockopt indicates an error.");
      errno = error;
      log.LogLastErrorOS();
      return failConnect(ConnectFailReason::Rejected, params);
    }
  }
  m_isConnected = true;
  m_finSent = false;
  log.LogInfo("socket connect successful.");
  return true;
}
