#include "TcpPeer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <utility>

namespace fixture {

Descriptor boundToLoopback(int& port) {
  Descriptor fd = Descriptor::checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(fd.get(), generic, size) != 0) throwErrno("bind");
  if (::getsockname(fd.get(), generic, &size) != 0) throwErrno("getsockname");
  port = ntohs(address.sin_port);
  return fd;
}

SilentPort::SilentPort() : listener_(boundToLoopback(port_)) {
  if (::listen(listener_.get(), 0) != 0) throwErrno("listen");
  sockaddr_in address = {};
  socklen_t size = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (::getsockname(listener_.get(), generic, &size) != 0) throwErrno("getsockname");
  for (Descriptor& client : queued_) {
    client = Descriptor::checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0),
                                 "socket");
    (void)::connect(client.get(), generic, size);
  }
}

void TcpWire::hangUp() {
  end();
  connection_.reset();
}

void TcpWire::halfClose() { ::shutdown(fd(), SHUT_WR); }

void TcpWire::reset() {
  const linger atOnce = {1, 0};
  ::setsockopt(fd(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  hangUp();
}

TcpPeer::TcpPeer(TcpScript script) : listener_(boundToLoopback(port_)) {
  if (::listen(listener_.get(), 8) != 0) throwErrno("listen");
  player_ = std::thread([this, script = std::move(script)] { run(script); });
}

TcpPeer::~TcpPeer() { stop(); }

void TcpPeer::stop() {
  if (!player_.joinable()) return;
  stop_.raise();
  player_.join();
  listener_.reset();
}

void TcpPeer::run(const TcpScript& script) {
  while (true) {
    std::array<pollfd, 2> waiting = {
        {{listener_.get(), POLLIN, 0}, {stop_.descriptor(), POLLIN, 0}}};
    if (::poll(waiting.data(), waiting.size(), -1) < 0) continue;
    if (waiting[1].revents != 0) return;
    Descriptor connection(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!connection.isOpen()) continue;
    ++connections_;
    TcpWire wire(std::move(connection), stop_);
    script(wire);
  }
}

}  // namespace fixture
