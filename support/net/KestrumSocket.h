#pragma once

#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <cstdint>

#include "HostnameResolve.h"
#include "KestrumFdSet.h"
#include "SocketParams.h"
#include "StringBuffer.h"
#include "ValidityWord.h"

class LogBase;

/// A plain TCP socket. Non-blocking for life: the waits are loops over short slices, in which a
/// close from another thread is noticed. One thread may send while another receives.
///
/// Operations return false on failure and tell the reason in `SocketParams` and the log. Times are
/// milliseconds; an idle limit of 0 means 6 hours for connecting and sending and 56 hours for
/// receiving, kPolling one try without waiting.
class KestrumSocket {
 public:
  static constexpr std::uint32_t kPolling = 0xABCD0123;

  KestrumSocket() = default;
  KestrumSocket(const KestrumSocket&) = delete;
  KestrumSocket& operator=(const KestrumSocket&) = delete;
  /// Ends a connection that is still open, with 10 ms for the peer.
  ~KestrumSocket();

  /// Connects to the one address that suits best, in up to four attempts.
  bool connectSocket(const StringBuffer& host, int port, const TcpSettings& settings,
                     SocketParams& params, LogBase& log);
  /// Sends all bytes, in pieces of `packetSize`, which is held between 1024 and 16800 (0: 16800).
  /// `sent` counts what went out, also after a failure. Fails when no byte has gone out for
  /// `idleMs`.
  bool sockSend(const unsigned char* data, std::uint32_t size, std::uint32_t packetSize,
                std::uint32_t idleMs, std::uint32_t& sent, LogBase& log, SocketParams& params);
  /// One receive of up to `size` bytes.
  bool sockRecv_nb(unsigned char* buffer, std::uint32_t size, std::uint32_t idleMs,
                   std::uint32_t& received, SocketParams& params, LogBase& log);
  /// Finds out whether the peer closed, and then closes too.
  bool sockIsConnected(LogBase& log);

  /// Says goodbye and reads on until the peer does too, at most `maxWaitMs`; 0 means 30 s.
  void terminateConnection(std::uint32_t maxWaitMs, LogBase& log);
  /// For a peer that closed first.
  void passiveClose(LogBase& log);
  /// Closes without a goodbye.
  void ensureSocketClosed();

  // Sizes of the system's buffers, rounded down to 4096. Below 4096 nothing happens, above 8 MiB it
  // is 8 MiB. Connecting has set those of its settings, so that the peer sees a large window from
  // the start, but for a size outside of these limits.
  void setSoSndBuf(std::uint32_t size, LogBase& log);
  void setSoRcvBuf(std::uint32_t size, LogBase& log);
  void setTcpNoDelay(bool on, LogBase& log);
  void SetKeepAlive(bool on, LogBase& log);

  /// -1 without a connection.
  int getSocketFd() const { return m_socketFd; }

 private:
  bool isAlive() const;
  bool isOpen() const { return m_socketFd >= 0; }

  // Connecting ------------------------------------------------------------------------------------

  struct Target {
    const StringBuffer& host;
    int port;
    std::uint32_t timeoutMs;
  };
  bool connectLocalhost(const Target& target, SocketParams& params, LogBase& log);
  bool connectResolved(const Target& target, bool useCache, HostnameResolve::Mode mode,
                       bool& foundInCache, SocketParams& params, LogBase& log);
  bool makeSocket(int family, int type, int protocol, SocketParams& params, const char* complaint,
                  LogBase& log);
  bool connectSocketInner(const sockaddr* address, socklen_t size, std::uint32_t timeoutMs,
                          SocketParams& params, LogBase& log);
  bool failConnect(ConnectFailReason reason, SocketParams& params);

  // Waiting ---------------------------------------------------------------------------------------

  bool waitWriteableMsHB(std::uint32_t timeoutMs, bool polling, bool connecting,
                         SocketParams& params, LogBase& log);
  bool waitReadableMsHB(std::uint32_t timeoutMs, bool polling, SocketParams& params);
  bool isWaitBroken(int fd, SocketParams& params) const;

  // Closing ---------------------------------------------------------------------------------------

  using Clock = std::chrono::steady_clock;
  void receiveAfterFin(Clock::time_point end);
  void waitForTransfers(Clock::time_point end) const;
  void closeDescriptor(LogBase& log);
  void bufferSizesAtMaking(const TcpSettings& settings);
  void setBufferSize(std::uint32_t& current, std::uint32_t size, int option, LogBase& log);
  void setOption(int level, int option, int value, LogBase& log);

  ValidityWord<std::uint32_t, 0x4901FB2A> m_validity;
  std::atomic<bool> m_sendBusy{false};
  std::atomic<bool> m_recvBusy{false};
  std::atomic<bool> m_closeBusy{false};
  std::uint32_t m_soSndBuf = 0;
  std::uint32_t m_soRcvBuf = 0;
  std::atomic<bool> m_isConnected{false};
  std::atomic<bool> m_finSent{false};
  std::atomic<int> m_socketFd{-1};
  /// The address connected to, or tried last.
  StringBuffer m_lastConnectedIp;
  int m_gaiStatus = 0;
};
