#include "NetTesting.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <ostream>

#include <gtest/gtest.h>

namespace fixture {

namespace {

sockaddr_in loopback(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

Descriptor bound(int& port) {
  Descriptor fd = Descriptor::checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(fd.get(), generic, size) != 0) throwErrno("bind");
  if (::getsockname(fd.get(), generic, &size) != 0) throwErrno("getsockname");
  port = ntohs(address.sin_port);
  return fd;
}

}  // namespace

int refusingPort() {
  int port = 0;
  // Bound for as long as the process lives, so that nobody else listens there.
  static const Descriptor holder = bound(port);
  static const int held = port;
  return held;
}

SilentPort::SilentPort() : listener_(bound(port_)) {
  if (::listen(listener_.get(), 0) != 0) throwErrno("listen");
  const sockaddr_in address = loopback(port_);
  for (Descriptor& client : queued_) {
    client = Descriptor::checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0),
                                 "socket");
    (void)::connect(client.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  }
}

void connectTo(CkSocket& socket, int port) {
  ASSERT_TRUE(socket.Connect("127.0.0.1", port, false, 10'000)) << socket.lastErrorText();
  socket.put_MaxReadIdleMs(100);
  socket.put_MaxSendIdleMs(7000);
}

bool sendBytes(CkSocket& socket, std::string_view bytes) {
  CkByteData data;
  data.append2(bytes.data(), bytes.size());
  return socket.SendBytes(data);
}

ReceivedBytes receiveBytes(CkSocket& socket, unsigned long n) {
  CkByteData data;
  const bool ok = socket.ReceiveBytesN(n, data);
  return {ok, std::string(data.getData() == nullptr ? "" : data.getData(), data.getSize())};
}

void PrintTo(const ReceivedBytes& received, std::ostream* out) {
  *out << (received.ok ? "ok" : "failed") << " with " << testing::PrintToString(received.bytes);
}

}  // namespace fixture
