#include "CkSocket.h"

#include <cstdint>

#include "Cancellation.h"
#include "ClsSocket.h"
#include "DataBuffer.h"
#include "XString.h"

namespace {

/// Runs an operation of the inner object and keeps its result as that of the last method. Short
/// memory is a failure like any other.
template <typename Operation>
bool run(ClsSocket* socket, Operation operation) {
  if (socket == nullptr) return false;
  socket->put_LastMethodSuccess(false);
  const bool ok = unlessThrown([&] { return operation(*socket); }, [] { return false; });
  socket->put_LastMethodSuccess(ok);
  return ok;
}

}  // namespace

CkSocket::CkSocket() : CkMultiByteBase(ClsSocket::createNewCls()) {}

CkSocket::~CkSocket() = default;

ClsSocket* CkSocket::impl() const { return static_cast<ClsSocket*>(aliveBase()); }

bool CkSocket::Connect(const char* hostname, int port, bool ssl, int maxWaitMs) {
  return run(impl(), [&](ClsSocket& socket) {
    const auto giveUp = [&] {
      socket.giveUpConnect();
      return false;
    };
    return unlessThrown(
        [&] {
          XString host;
          return setArgument(host, hostname)
                     ? socket.Connect(host, port, ssl, static_cast<std::uint32_t>(maxWaitMs))
                     : giveUp();
        },
        giveUp);
  });
}

void CkSocket::put_MaxReadIdleMs(int ms) {
  if (ClsSocket* socket = impl()) socket->put_MaxReadIdleMs(static_cast<std::uint32_t>(ms));
}

void CkSocket::put_MaxReadMs(int ms) {
  if (ClsSocket* socket = impl()) socket->put_MaxReadMs(static_cast<std::uint32_t>(ms));
}

void CkSocket::put_MaxSendIdleMs(int ms) {
  if (ClsSocket* socket = impl()) socket->put_MaxSendIdleMs(static_cast<std::uint32_t>(ms));
}

bool CkSocket::SendBytes(CkByteData& data) {
  return run(impl(), [&](ClsSocket& socket) {
    return socket.SendBytes(data.getBytes(), static_cast<std::uint32_t>(data.getSize()));
  });
}

bool CkSocket::ReceiveBytesN(unsigned long numBytes, CkByteData& data) {
  return run(impl(), [&](ClsSocket& socket) {
    DataBuffer* bytes = data.getImpl();
    return bytes != nullptr && socket.ReceiveBytesN(static_cast<std::uint32_t>(numBytes), *bytes);
  });
}

bool CkSocket::get_IsConnected() {
  ClsSocket* socket = impl();
  return socket != nullptr && socket->get_IsConnected();
}

bool CkSocket::Close(int maxWaitMs) {
  return run(impl(), [&](ClsSocket& socket) {
    return socket.Close(static_cast<std::uint32_t>(maxWaitMs));
  });
}

int CkSocket::get_ConnectFailReason() {
  const ClsSocket* socket = impl();
  return socket == nullptr ? 0 : socket->get_ConnectFailReason();
}

int CkSocket::get_SendFailReason() {
  const ClsSocket* socket = impl();
  return socket == nullptr ? 0 : socket->get_SendFailReason();
}

int CkSocket::get_ReceiveFailReason() {
  const ClsSocket* socket = impl();
  return socket == nullptr ? 0 : socket->get_ReceiveFailReason();
}
