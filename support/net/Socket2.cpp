#include "Socket2.h"

#include <cstdint>

#include "DataBuffer.h"
#include "LogBase.h"
#include "Psdk.h"
#include "StringBuffer.h"

namespace {

constexpr int kLastPort = 65535;

}  // namespace

Socket2::~Socket2() = default;

// After a wait the object may be somebody else's memory.
bool Socket2::isAlive() const {
  if (m_validity.isAlive()) return true;
  Psdk::badObjectFound();
  return false;
}

bool Socket2::socket2Connect(const StringBuffer& host, int port, bool ssl,
                             const TcpSettings& settings, SocketParams& params, LogBase& log) {
  m_readAheadBuffer.clear();
  StringBuffer trimmed;
  trimmed.setString(host);
  trimmed.trim2();
  log.LogDataSb("hostname", trimmed);
  log.LogDataLong("port", port);
  if (ssl) {
    log.LogError("TLS isn't available here: the scale has to speak plain TCP.");
    params.connectFailReason = ConnectFailReason::InternalError;
  } else if (port < 0 || port > kLastPort) {
    // The system would cut the number down and connect to some other port.
    log.LogError("The port has to lie between 0 and 65535.");
    params.connectFailReason = ConnectFailReason::InternalError;
  } else if (connect2(trimmed, port, settings, params, log)) {
    return true;
  }
  log.LogError(connectFailText(params.connectFailReason));
  return false;
}

bool Socket2::connect2(StringBuffer& host, int port, const TcpSettings& settings,
                       SocketParams& params, LogBase& log) {
  if (!m_socket.connectSocket(host, port, settings, params, log)) return false;
  m_socket.setSoSndBuf(settings.soSndBuf, log);
  m_socket.setSoRcvBuf(settings.soRcvBuf, log);
  if (settings.tcpNoDelay) m_socket.setTcpNoDelay(true, log);
  if (settings.keepAlive) m_socket.SetKeepAlive(true, log);
  return true;
}

bool Socket2::s2_SendBytes2(const unsigned char* data, std::uint32_t size, std::uint32_t packetSize,
                            std::uint32_t idleMs, std::uint32_t& sent, LogBase& log,
                            SocketParams& params) {
  const CritSecExitor lock(&m_sendLock);
  return m_socket.sockSend(data, size, packetSize, idleMs, sent, log, params) && isAlive();
}

bool Socket2::receiveBytes2a(DataBuffer& buffer, std::uint32_t size, std::uint32_t idleMs,
                             SocketParams& params, LogBase& log) {
  const CritSecExitor lock(&m_recvLock);
  unsigned char* room = buffer.getAppendPtr(size);
  if (room == nullptr) {
    log.LogError("Unable to allocate memory for reading the socket.");
    return false;
  }
  std::uint32_t received = 0;
  const bool ok = m_socket.sockRecv_nb(room, size, idleMs, received, params, log) && isAlive();
  if (ok) buffer.addToSize(received);
  return ok;
}

void Socket2::sockClose(std::uint32_t maxWaitMs, LogBase& log) {
  m_socket.terminateConnection(maxWaitMs, log);
}
