#pragma once

#include <netdb.h>

#include <memory>

class LogBase;
class StringBuffer;
struct SocketParams;

/// From what the user typed as a host to addresses.
class HostnameResolve {
 public:
  using Addresses = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

  /// Which kinds of address the system is asked for.
  enum class Mode {
    Any,
    /// Also IPv4 addresses in their IPv6 form.
    AnyOrMapped,
    /// IPv6 only, IPv4 addresses in their IPv6 form.
    Ipv6OrMapped,
  };

  /// Drops white space, URL schemes, slashes, and brackets around an IPv6 address; "localhost"
  /// becomes 127.0.0.1. False with a reason if nothing is left.
  static bool normalizeConnectHostname(StringBuffer& host, SocketParams& params, LogBase& log);
  /// A numeric IPv4 address is its own answer; any other host must lie in the DnsCache.
  static bool dnsCacheLookup(const StringBuffer& host, StringBuffer& address);
  /// Asks the system, twice if the first answer is a failure. `status` is what the system said
  /// last; null if it failed.
  static Addresses getAddressInfo(const StringBuffer& host, int port, Mode mode, int& status,
                                  LogBase& log);
  /// The entry of a family that suits TCP best, null if there is none.
  static const addrinfo* findIpAddrInfo(const addrinfo* list, int family);
  /// "192.168.0.7", "::1".
  static void numericText(const addrinfo& entry, StringBuffer& text);

  /// The status that ends all further attempts: resolvers that count their errors upwards say so
  /// for a name that doesn't exist.
  static constexpr int kNoSuchName = 8;
};
