#pragma once

#include <cstdint>

/// Why a connection did not come about. The numbers between belong to asynchronous calls and
/// application callbacks, which don't exist here.
enum class ConnectFailReason : int {
  None = 0,
  EmptyHostname = 1,
  DnsLookupFailed = 2,
  InternalError = 5,
  Timeout = 6,
  Rejected = 7,
  MalformedUrl = 8,
};

/// The line that the log gets for a reason.
const char* connectFailText(ConnectFailReason reason);

/// What became of one operation on a connection. Made for each; every loop that waits clears the
/// flags first.
struct SocketParams {
  bool timedOut = false;
  bool socketError = false;
  /// The peer closed the connection.
  bool disconnected = false;
  ConnectFailReason connectFailReason = ConnectFailReason::None;

  void clearFlags() { timedOut = socketError = disconnected = false; }
};

/// How a connection is made.
struct TcpSettings {
  /// 0 means 6 hours.
  std::uint32_t connectTimeoutMs = 30'000;
  bool tcpNoDelay = false;
  bool keepAlive = true;
  std::uint32_t soSndBuf = 0;
  std::uint32_t soRcvBuf = 0;
};
