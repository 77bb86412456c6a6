#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <system_error>

#include "Endpoint.h"

namespace sim {

namespace {

constexpr const char* kLoopback = "127.0.0.1";

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

/// The socket functions take every kind of address by a pointer to the plainest.
sockaddr* plain(sockaddr_in& address) {
  void* any = &address;
  return static_cast<sockaddr*>(any);
}

}  // namespace

TcpEndpoint::TcpEndpoint(std::uint16_t port) : port_(port) {
  comeBack();
}

std::string TcpEndpoint::address() const {
  return std::string(kLoopback) + ":" + std::to_string(port_);
}

void TcpEndpoint::comeBack() {
  if (listener_) return;
  FileDescriptor listener(
      ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP));
  if (!listener) fail("socket");
  const int on = 1;
  ::setsockopt(listener.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in bound = {};
  bound.sin_family = AF_INET;
  bound.sin_port = htons(port_);
  ::inet_pton(AF_INET, kLoopback, &bound.sin_addr);
  if (::bind(listener.get(), plain(bound), sizeof bound) != 0) fail(address());
  if (::listen(listener.get(), SOMAXCONN) != 0) fail(address());
  socklen_t size = sizeof bound;
  if (::getsockname(listener.get(), plain(bound), &size) != 0) fail(address());
  port_ = ntohs(bound.sin_port);
  listener_ = std::move(listener);
}

void TcpEndpoint::hangUp() {
  client_.reset();
}

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

void TcpEndpoint::send(std::span<const std::uint8_t> bytes) {
  while (client_ && !bytes.empty()) {
    const ssize_t sent = ::send(client_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return;
    bytes = bytes.subspan(static_cast<std::size_t>(sent));
  }
}

std::chrono::milliseconds TcpEndpoint::graceBeforeHangUp() const {
  return std::chrono::milliseconds{0};
}

std::chrono::milliseconds TcpEndpoint::streamInterval() const {
  // The component empties a network line until nothing has come for 100 ms; a scale that leaves
  // no longer gaps would keep it there for ever.
  return std::chrono::milliseconds{250};
}

}  // namespace sim
