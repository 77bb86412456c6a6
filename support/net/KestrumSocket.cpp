#include "KestrumSocket.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <thread>

#include "BusyFlag.h"
#include "Cancellation.h"
#include "LogBase.h"
#include "Psdk.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::uint32_t kSendForever_ms = 21'600'000;
constexpr std::uint32_t kReceiveForever_ms = 201'600'000;
constexpr std::uint32_t kLongestFarewell_ms = 30'000;
constexpr std::uint32_t kFarewellOfDestructor_ms = 10;

constexpr std::uint32_t kSmallestChunk = 1024;
constexpr std::uint32_t kLargestChunk = 16'800;
constexpr std::uint32_t kLargestReceive = 1'048'576;
constexpr milliseconds kPauseAfterNothingSent(1);

constexpr std::uint32_t kBufferStep = 4096;
constexpr std::uint32_t kLargestBuffer = 8'388'608;

bool isTryAgain(int error) { return error == EINTR || error == EAGAIN; }

void reportSocketError(int error, SocketParams& params, LogBase& log) {
  const bool byPeer = error == EPIPE || error == ECONNRESET;
  (byPeer ? params.disconnected : params.socketError) = true;
  errno = error;
  log.LogLastErrorOS();
}

}  // namespace

KestrumSocket::~KestrumSocket() {
  const CancellationHeld held;
  LogNull log;
  terminateConnection(kFarewellOfDestructor_ms, log);
}

// After a wait the object may be somebody else's memory.
bool KestrumSocket::isAlive() const {
  if (m_validity.isAlive()) return true;
  Psdk::badObjectFound();
  return false;
}

// Sending

bool KestrumSocket::sockSend(const unsigned char* data, std::uint32_t size,
                             std::uint32_t packetSize, std::uint32_t idleMs, std::uint32_t& sent,
                             LogBase& log, SocketParams& params) {
  params.clearFlags();
  sent = 0;
  if (!isOpen()) {
    log.LogError("No socket exists for sending.");
    return false;
  }
  const BusyFlag sending(m_sendBusy);
  if (!sending) {
    log.LogError("Another thread is already sending on this socket.");
    return false;
  }
  if (m_closeBusy) {
    log.LogError("Another thread is closing this socket.");
    return false;
  }
  const milliseconds idleLimit{idleMs == 0 ? kSendForever_ms : idleMs};
  Clock::time_point lastSent = Clock::now();
  const std::uint32_t chunk =
      packetSize == 0 ? kLargestChunk : std::clamp(packetSize, kSmallestChunk, kLargestChunk);

  while (sent < size) {
    // Without MSG_NOSIGNAL a scale that resets the connection would end the platform's process.
    const ssize_t n = ::send(m_socketFd, data + sent, std::min(chunk, size - sent), MSG_NOSIGNAL);
    const int error = errno;
    if (n > 0) {
      sent += static_cast<std::uint32_t>(n);
      lastSent = Clock::now();
    } else if (n == 0 || error == EAGAIN || error == EINPROGRESS) {
      // A wait may end well again and again without a byte going out.
      const auto left = std::chrono::ceil<milliseconds>(lastSent + idleLimit - Clock::now());
      params.timedOut = left <= milliseconds{0};
      if (!params.timedOut && n == 0) {
        std::this_thread::sleep_for(kPauseAfterNothingSent);
      } else if (params.timedOut || !waitWriteableMsHB(static_cast<std::uint32_t>(left.count()),
                                                       idleMs == kPolling, false, params, log)) {
        log.LogError(params.timedOut ? "Socket send idle timeout" : "Socket send failed.");
        return false;
      }
    } else {
      log.LogError("Error sending on socket (1)");
      reportSocketError(error, params, log);
      ensureSocketClosed();
      return false;
    }
  }
  return true;
}

// Receiving

bool KestrumSocket::sockRecv_nb(unsigned char* buffer, std::uint32_t size, std::uint32_t idleMs,
                                std::uint32_t& received, SocketParams& params, LogBase& log) {
  params.clearFlags();
  received = 0;
  if (!isOpen()) {
    log.LogError("This socket is not connected");
    params.socketError = true;
    m_isConnected = false;
    return false;
  }
  const BusyFlag receiving(m_recvBusy);
  if (!receiving) {
    log.LogError("Another thread is already receiving on this socket.");
    return false;
  }
  if (m_closeBusy) {
    log.LogError("Another thread is closing this socket.");
    return false;
  }
  if (size == 0) return true;
  const std::uint32_t timeoutMs = idleMs == 0 ? kReceiveForever_ms : idleMs;

  for (const bool mayWait : {true, false}) {
    const ssize_t n = ::recv(m_socketFd, buffer, std::min(size, kLargestReceive), 0);
    const int error = errno;
    if (n > 0) {
      received = static_cast<std::uint32_t>(n);
      return true;
    }
    if (n == 0) {
      log.LogInfo("Connection closed by peer.");
      passiveClose(log);
      params.disconnected = true;
      return false;
    }
    if (!isTryAgain(error)) {
      log.LogError("Failed to receive data on the TCP socket");
      errno = error;
      log.LogLastErrorOS();
      params.socketError = true;
      m_isConnected = false;
      return false;
    }
    if (mayWait && !waitReadableMsHB(timeoutMs, idleMs == kPolling, params)) return false;
  }
  // The wait said that there is something, and there wasn't.
  params.timedOut = true;
  return false;
}

bool KestrumSocket::sockIsConnected(LogBase& log) {
  if (!isOpen()) {
    m_isConnected = false;
    return false;
  }
  if (!m_isConnected || m_closeBusy) return false;
  if (m_sendBusy || m_recvBusy) return true;
  unsigned char byte = 0;
  const ssize_t n = ::recv(m_socketFd, &byte, 1, MSG_PEEK);
  if (n > 0) return true;
  if (n == 0) {
    passiveClose(log);
    return false;
  }
  if (isTryAgain(errno)) return true;
  log.LogLastErrorOS();
  return false;
}

// Waiting

// Another thread closed the socket meanwhile.
bool KestrumSocket::isWaitBroken(int fd, SocketParams& params) const {
  if (isAlive() && !m_closeBusy && m_socketFd == fd) return false;
  params.socketError = true;
  return true;
}

bool KestrumSocket::waitWriteableMsHB(std::uint32_t timeoutMs, bool polling, bool connecting,
                                      SocketParams& params, LogBase& log) {
  constexpr std::uint32_t kSlice_ms = 50;
  using Answer = KestrumFdSet::Answer;
  params.clearFlags();
  const int fd = m_socketFd;
  if (fd < 0) {
    params.socketError = true;
    return false;
  }
  const auto what = connecting ? KestrumFdSet::For::Connecting : KestrumFdSet::For::Writing;
  if (polling) timeoutMs = 0;

  std::uint32_t waited = 0;
  do {
    const bool atOnce = KestrumFdSet::needsPoll(fd);
    const std::uint32_t slice = atOnce ? timeoutMs : std::min(kSlice_ms, timeoutMs - waited);
    const Answer answer = atOnce ? KestrumFdSet::fdSocketWait(fd, what, slice)
                                 : KestrumFdSet::fdSelect(fd, what, slice);
    if (isWaitBroken(fd, params)) return false;
    switch (answer) {
      case Answer::Ready: return true;
      case Answer::Exception: log.LogError("Connection attempt failed."); return false;
      case Answer::Unexpected:
        log.LogError("Socket select for writeability returned unexpected result;");
        return true;
      case Answer::Failed:
        // The caller finds the trouble in its next call.
        log.LogLastErrorOS();
        return !atOnce;
      case Answer::NotReady:
      case Answer::Interrupted: waited += slice;
    }
  } while (waited < timeoutMs);
  params.timedOut = true;
  log.LogError(connecting ? "timeout waiting for connect to complete;"
                          : "socket is not ready for writing;");
  return false;
}

bool KestrumSocket::waitReadableMsHB(std::uint32_t timeoutMs, bool polling, SocketParams& params) {
  constexpr std::uint32_t kSlice_ms = 333;
  using Answer = KestrumFdSet::Answer;
  params.clearFlags();
  const int fd = m_socketFd;
  if (fd < 0) {
    params.socketError = true;
    return false;
  }
  if (polling) timeoutMs = 0;
  const bool atOnce = KestrumFdSet::needsPoll(fd);
  const auto wait = atOnce ? KestrumFdSet::fdSocketWait : KestrumFdSet::fdSelect;
  // By the clock: a host whose timers interrupt every slice would wait for no answer at all.
  const Clock::time_point end = Clock::now() + milliseconds{timeoutMs};
  // The first slice is half a slice: a scale that answers is soon there.
  std::uint32_t slice =
      atOnce || polling ? timeoutMs : std::max(std::min(kSlice_ms, timeoutMs) / 2, 1U);
  for (;;) {
    const Answer answer = wait(fd, KestrumFdSet::For::Reading, slice);
    if (isWaitBroken(fd, params)) return false;
    if (answer == Answer::Failed) return false;
    if (answer != Answer::NotReady && answer != Answer::Interrupted) return true;
    const auto left = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
    if (left <= 0 || (atOnce && answer == Answer::NotReady)) break;
    slice = static_cast<std::uint32_t>(atOnce ? left : std::min<long>(left, kSlice_ms));
  }
  params.timedOut = true;
  return false;
}

// Closing

void KestrumSocket::terminateConnection(std::uint32_t maxWaitMs, LogBase& log) {
  if (!isOpen()) return;
  const BusyFlag closing(m_closeBusy);
  if (!closing) return;
  if (!m_finSent) {
    m_finSent = true;
    if (::shutdown(m_socketFd, SHUT_WR) != 0) {
      log.LogError("error on socket shutdown.");
      log.LogLastErrorOS();
      closeDescriptor(log);
      return;
    }
  }
  const milliseconds limit{maxWaitMs == 0 ? kLongestFarewell_ms
                                          : std::min(maxWaitMs, kLongestFarewell_ms)};
  const Clock::time_point end = Clock::now() + limit;
  waitForTransfers(end);
  receiveAfterFin(end);
  closeDescriptor(log);
}

// A thread that still sends or receives notices the closing within a slice of its wait. Were the
// descriptor gone before, its number could be another connection's when that thread uses it.
void KestrumSocket::waitForTransfers(Clock::time_point end) const {
  while ((m_recvBusy || m_sendBusy) && Clock::now() < end) {
    std::this_thread::sleep_for(milliseconds{1});
  }
}

// Reads without a pause until the peer's FIN, so that what the scale still says draws no reset.
void KestrumSocket::receiveAfterFin(Clock::time_point end) {
  std::array<unsigned char, 32> dropped = {};
  for (;;) {
    const ssize_t n = ::recv(m_socketFd, dropped.data(), dropped.size(), 0);
    if (n == 0 || (n < 0 && !isTryAgain(errno))) return;
    if (Clock::now() >= end) return;
  }
}

void KestrumSocket::passiveClose(LogBase& log) {
  if (!isOpen()) return;
  if (::shutdown(m_socketFd, SHUT_RDWR) != 0) log.LogError("error on socket shutdown.");
  closeDescriptor(log);
}

void KestrumSocket::ensureSocketClosed() {
  LogNull log;
  closeDescriptor(log);
}

void KestrumSocket::closeDescriptor(LogBase& log) {
  const int fd = m_socketFd.exchange(-1);
  m_isConnected = false;
  m_finSent = false;
  if (fd >= 0 && ::close(fd) != 0) log.LogError("error on closesocket.");
}

// Options

void KestrumSocket::setOption(int level, int option, int value, LogBase& log) {
  if (!isOpen()) return;
  if (::setsockopt(m_socketFd, level, option, &value, sizeof value) != 0) log.LogLastErrorOS();
}

void KestrumSocket::bufferSizesAtMaking(const TcpSettings& settings) {
  const auto atMaking = [](std::uint32_t size) {
    return size > kLargestBuffer ? 0 : size / kBufferStep * kBufferStep;
  };
  m_soSndBuf = atMaking(settings.soSndBuf);
  m_soRcvBuf = atMaking(settings.soRcvBuf);
}

void KestrumSocket::setBufferSize(std::uint32_t& current, std::uint32_t size, int option,
                                  LogBase& log) {
  if (size < kBufferStep) return;
  size = std::min(size, kLargestBuffer) / kBufferStep * kBufferStep;
  if (size == current) return;
  current = size;
  setOption(SOL_SOCKET, option, static_cast<int>(size), log);
}

void KestrumSocket::setSoSndBuf(std::uint32_t size, LogBase& log) {
  setBufferSize(m_soSndBuf, size, SO_SNDBUF, log);
}

void KestrumSocket::setSoRcvBuf(std::uint32_t size, LogBase& log) {
  setBufferSize(m_soRcvBuf, size, SO_RCVBUF, log);
}

void KestrumSocket::setTcpNoDelay(bool on, LogBase& log) {
  setOption(IPPROTO_TCP, TCP_NODELAY, on ? 1 : 0, log);
}

void KestrumSocket::SetKeepAlive(bool on, LogBase& log) {
  setOption(SOL_SOCKET, SO_KEEPALIVE, on ? 1 : 0, log);
}
