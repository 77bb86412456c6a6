#pragma once

#include <cstdint>

#include "DataBufferView.h"
#include "KestrumCritSec.h"
#include "KestrumSocket.h"
#include "SocketParams.h"
#include "ValidityWord.h"

class DataBuffer;
class LogBase;
class StringBuffer;

/// One connection to a host, from its making to its end. A send and a receive may run at the same
/// time. Operations return false on failure and tell the reason in `SocketParams` and the log.
class Socket2 {
 public:
  Socket2() = default;
  Socket2(const Socket2&) = delete;
  Socket2& operator=(const Socket2&) = delete;
  ~Socket2();

  /// Plain TCP only: with `ssl` it fails. White space around the host doesn't count.
  bool socket2Connect(const StringBuffer& host, int port, bool ssl, const TcpSettings& settings,
                      SocketParams& params, LogBase& log);
  bool s2_SendBytes2(const unsigned char* data, std::uint32_t size, std::uint32_t packetSize,
                     std::uint32_t idleMs, std::uint32_t& sent, LogBase& log, SocketParams& params);
  /// Appends what one receive of up to `size` bytes gives.
  bool receiveBytes2a(DataBuffer& buffer, std::uint32_t size, std::uint32_t idleMs,
                      SocketParams& params, LogBase& log);
  bool isSock2Connected(LogBase& log) { return m_socket.sockIsConnected(log); }
  void sockClose(std::uint32_t maxWaitMs, LogBase& log);

  /// Bytes that came behind those which were asked for.
  DataBufferView& readAheadBuffer() { return m_readAheadBuffer; }

 private:
  bool connect2(StringBuffer& host, int port, const TcpSettings& settings, SocketParams& params,
                LogBase& log);
  bool isAlive() const;

  ValidityWord<std::uint32_t, 0x3CCDA1E9> m_validity;
  KestrumSocket m_socket;
  DataBufferView m_readAheadBuffer;
  KestrumCritSec m_sendLock;
  KestrumCritSec m_recvLock;
};
