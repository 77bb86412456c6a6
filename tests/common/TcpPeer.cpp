#include "TcpPeer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <utility>

namespace fixture {

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

TcpPeer::TcpPeer(TcpScript script)
    : listener_(Descriptor::checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listener_.get(), generic, size) != 0) throwErrno("bind");
  if (::listen(listener_.get(), 8) != 0) throwErrno("listen");
  if (::getsockname(listener_.get(), generic, &size) != 0) throwErrno("getsockname");
  port_ = ntohs(address.sin_port);
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
