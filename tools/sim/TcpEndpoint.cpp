#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "Endpoint.h"

namespace sim {

namespace {

constexpr const char* kLoopback = "127.0.0.1";
/// The component empties a network line until nothing has come for 100 ms; a scale that leaves no
/// longer gaps would keep it there for ever.
constexpr std::chrono::milliseconds kStreamInterval{250};

/// The socket functions take every kind of address by a pointer to the plainest.
sockaddr* plain(sockaddr_in& address) {
  void* any = &address;
  return static_cast<sockaddr*>(any);
}

/// A socket at the port on the loopback interface; 0 is replaced by the port that was found.
FileDescriptor boundTo(std::uint16_t& port) {
  FileDescriptor bound(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP));
  if (!bound) fail("socket");
  const int on = 1;
  ::setsockopt(bound.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  const std::string name = std::string(kLoopback) + ":" + std::to_string(port);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  ::inet_pton(AF_INET, kLoopback, &address.sin_addr);
  if (::bind(bound.get(), plain(address), sizeof address) != 0) fail(name);
  socklen_t size = sizeof address;
  if (::getsockname(bound.get(), plain(address), &size) != 0) fail(name);
  port = ntohs(address.sin_port);
  return bound;
}

}  // namespace

TcpEndpoint::TcpEndpoint(std::uint16_t port)
    : Endpoint(std::chrono::milliseconds{0}, kStreamInterval),
      port_(port),
      reservation_(boundTo(port_)) {
  comeBack();
}

std::string TcpEndpoint::address() const {
  return std::string(kLoopback) + ":" + std::to_string(port_);
}

void TcpEndpoint::comeBack() {
  if (listener_) return;
  FileDescriptor listener = boundTo(port_);
  if (::listen(listener.get(), SOMAXCONN) != 0) fail(address());
  listener_ = std::move(listener);
}

void TcpEndpoint::hangUp() { client_.reset(); }

void TcpEndpoint::goAway() {
  client_.reset();
  listener_.reset();
}

Bytes TcpEndpoint::receive() {
  if (!client_) {
    client_ =
        FileDescriptor(::accept4(listener_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (client_) {
      const int on = 1;
      ::setsockopt(client_.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    return {};
  }
  std::array<std::uint8_t, 4096> chunk = {};
  const ssize_t got = ::recv(client_.get(), chunk.data(), chunk.size(), 0);
  if (got > 0) return {chunk.begin(), chunk.begin() + got};
  // Closing at once matters: a host waits for it when it closes its own side.
  if (got == 0 || (errno != EAGAIN && errno != EINTR)) client_.reset();
  return {};
}

std::size_t TcpEndpoint::fill(std::span<const std::uint8_t> bytes) {
  const ssize_t taken =
      client_ ? ::send(client_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) : 0;
  return static_cast<std::size_t>(std::max<ssize_t>(taken, 0));
}

}  // namespace sim
