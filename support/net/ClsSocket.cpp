#include "ClsSocket.h"

#include <algorithm>
#include <chrono>
#include <new>

#include "BusyFlag.h"
#include "CkSettings.h"
#include "DataBuffer.h"
#include "Psdk.h"
#include "Socket2.h"
#include "StringBuffer.h"
#include "UrlHost.h"
#include "XString.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// The send loop cuts this down to what it sends at a time.
constexpr std::uint32_t kSendPacketSize = 65'535;
/// A request for one byte picks up a whole frame; the next requests cost no system call.
constexpr std::uint32_t kReceivePacketSize = 4096;
constexpr std::uint32_t kReceiveReserve = 1024;

}  // namespace

ClsSocket::ClsSocket() {
  m_tcp.soSndBuf = CkSettings::m_socketSendBufSize;
  m_tcp.soRcvBuf = CkSettings::m_socketRecvBufSize;
}

ClsSocket::~ClsSocket() = default;

ClsSocket* ClsSocket::createNewCls() { return new (std::nothrow) ClsSocket; }

// Connecting

bool ClsSocket::Connect(XString& hostname, int port, bool ssl, std::uint32_t maxWaitMs) {
  const CritSecExitor lock(this);
  const LogContextExitor context(*this, "Connect_Socket");
  m_connectFailReason = 0;
  const bool connected = connectTo(hostname, port, ssl, maxWaitMs);
  logSuccessFailure(connected);
  return connected;
}

void ClsSocket::giveUpConnect() {
  const CritSecExitor lock(this);
  m_connection.reset();
  m_connectFailReason = static_cast<int>(ConnectFailReason::InternalError);
}

bool ClsSocket::connectTo(XString& hostname, int port, bool ssl, std::uint32_t maxWaitMs) {
  StringBuffer host;
  host.setString(hostname.getUtf8());
  if (looksLikeUrl(host.view())) {
    m_log.LogError(
        "The 1st arg SHOULD be a hostname (i.e. a domain name or IP address).  It should NOT be a "
        "URL.");
    const std::optional<std::string> hostOnly = hostOfUrl(host.view());
    if (!hostOnly) {
      m_log.LogError("Sorry, unable to parse the malformed URL that was passed in arg1.");
      m_connectFailReason = static_cast<int>(ConnectFailReason::MalformedUrl);
      return false;
    }
    host.setString(hostOnly->c_str());
  }

  m_connection.reset();
  m_connection.reset(new (std::nothrow) Socket2);
  if (!m_connection) {
    m_log.MemoryAllocFailed(1, sizeof(Socket2));
    m_connectFailReason = static_cast<int>(ConnectFailReason::InternalError);
    return false;
  }
  m_tcp.connectTimeoutMs = maxWaitMs;
  SocketParams params;
  if (m_connection->socket2Connect(host, port, ssl, m_tcp, params, m_log)) return true;
  m_connection.reset();
  m_connectFailReason = static_cast<int>(params.connectFailReason);
  return false;
}

void ClsSocket::put_MaxReadIdleMs(std::uint32_t ms) {
  const CritSecExitor lock(this);
  m_maxReadIdleMs = ms;
}

void ClsSocket::put_MaxReadMs(std::uint32_t ms) {
  const CritSecExitor lock(this);
  m_maxReadMs = ms;
}

void ClsSocket::put_MaxSendIdleMs(std::uint32_t ms) {
  const CritSecExitor lock(this);
  m_maxSendIdleMs = ms;
}

// Sending

bool ClsSocket::SendBytes(const unsigned char* data, std::uint32_t size) {
  const BusyFlag sending(m_sending);
  if (!sending) {
    m_log.LogError("Another thread is already writing this socket.");
    m_sendFailReason = OtherThread;
    return false;
  }
  const CritSecExitor lock(this);
  const LogContextExitor context(*this, "SendBytes");
  m_sendFailReason = None;
  const bool sent = sendAll(data, size);
  logSuccessFailure(sent);
  return sent;
}

bool ClsSocket::sendAll(const unsigned char* data, std::uint32_t size) {
  if (!m_connection) {
    m_log.LogError("No connection is established");
    m_sendFailReason = NoConnection;
    return false;
  }
  if (size == 0) {
    m_log.LogError("Size of data to send is zero.");
    m_sendFailReason = NothingToSend;
    return false;
  }
  SocketParams params;
  std::uint32_t sent = 0;
  if (m_connection->s2_SendBytes2(data, size, kSendPacketSize, m_maxSendIdleMs, sent, m_log,
                                  params)) {
    return true;
  }
  if (params.timedOut) {
    m_sendFailReason = TimedOut;
    if (sent > 0) {
      m_log.LogError("Timeout after partial send.");
      m_log.LogDataUint32("numBytesSent", sent);
      m_log.LogDataUint32("numBytesUnsent", size - sent);
    }
  } else if (params.socketError) {
    m_sendFailReason = SocketError;
  } else if (params.disconnected) {
    // A peer that is gone ends the receiving: the send itself only failed.
    m_receiveFailReason = ClosedByPeer;
  }
  if (m_sendFailReason == None) m_sendFailReason = General;
  if (params.disconnected || !m_connection->isSock2Connected(m_log)) m_connection.reset();
  return false;
}

// Receiving

bool ClsSocket::ReceiveBytesN(std::uint32_t numBytes, DataBuffer& data) {
  const BusyFlag receiving(m_receiving);
  if (!receiving) {
    m_log.LogError("Another thread is already reading this socket.");
    m_receiveFailReason = OtherThread;
    return false;
  }
  const CritSecExitor lock(this);
  const LogContextExitor context(*this, "ReceiveBytesN");
  m_receiveFailReason = None;
  const bool received = receiveAll(numBytes, data);
  logSuccessFailure(received);
  return received;
}

bool ClsSocket::receiveAll(std::uint32_t wanted, DataBuffer& data) {
  if (wanted == 0) {
    m_log.LogInfo("The application requested 0 bytes.");
    return true;
  }
  if (!m_connection) {
    m_log.LogError("No connection is established");
    m_receiveFailReason = NoConnection;
    return false;
  }
  const std::uint64_t room = std::uint64_t{data.getSize()} + wanted + kReceiveReserve;
  if (ck64_TooBigForUnsigned32(room) || !data.ensureBuffer(static_cast<std::uint32_t>(room))) {
    m_log.LogError("Out of memory for receive buffer.");
    m_receiveFailReason = General;
    return false;
  }
  const std::uint32_t before = data.getSize();
  if (!m_connection->readAheadBuffer().takeFront(wanted, data)) {
    m_receiveFailReason = General;
    return false;
  }
  wanted -= data.getSize() - before;
  const Clock::time_point end = Clock::now() + milliseconds{m_maxReadMs};
  std::uint32_t idleMs = m_maxReadIdleMs;
  while (wanted > 0) {
    if (m_maxReadMs > 0) {
      const auto left = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
      if (left <= 0) {
        m_receiveFailReason = TimedOut;
        return false;
      }
      // Silence, too, lasts no longer than what is left. An idle limit of 0 is none.
      idleMs = static_cast<std::uint32_t>(left);
      if (m_maxReadIdleMs > 0) idleMs = std::min(idleMs, m_maxReadIdleMs);
    }
    if (!receiveSome(wanted, idleMs, data)) return false;
  }
  return true;
}

bool ClsSocket::receiveSome(std::uint32_t& wanted, std::uint32_t idleMs, DataBuffer& data) {
  const std::uint32_t before = data.getSize();
  SocketParams params;
  if (!m_connection->receiveBytes2a(data, kReceivePacketSize, idleMs, params, m_log)) {
    m_receiveFailReason = params.timedOut       ? TimedOut
                          : params.socketError  ? SocketError
                          : params.disconnected ? ClosedByPeer
                                                : General;
    return false;
  }
  const std::uint32_t got = data.getSize() - before;
  if (got > wanted) {
    const std::uint32_t surplus = got - wanted;
    const bool kept =
        m_connection->readAheadBuffer().append(data.getDataAt2(before + wanted), surplus);
    data.shorten(surplus);
    if (!kept) {
      // The next receive would go on behind the gap, and take the middle of a frame for its start.
      m_connection.reset();
      m_receiveFailReason = General;
      return false;
    }
    wanted = 0;
  } else {
    wanted -= got;
  }
  return true;
}

// State and end

bool ClsSocket::get_IsConnected() {
  const CritSecExitor lock(this);
  LogNull log;
  return m_connection && m_connection->isSock2Connected(log);
}

bool ClsSocket::Close(std::uint32_t maxWaitMs) {
  const BusyFlag closing(m_closing);
  if (!closing) return false;
  const CritSecExitor lock(this);
  const LogContextExitor context(*this, "Close");
  if (!m_connection) {
    m_log.LogInfo("No connection to close");
    return true;
  }
  m_connection->sockClose(maxWaitMs, m_log);
  m_connection.reset();
  return true;
}
