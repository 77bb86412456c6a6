#include "CkSocket.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string>

#include "CkString.h"

namespace {

using Addresses = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

Addresses resolve(const char* host, int port) {
  addrinfo hints = {};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  CkString name(host);
  if (::getaddrinfo(name.getUtf8(), std::to_string(port).c_str(), &hints, &found) != 0) {
    found = nullptr;
  }
  return {found, ::freeaddrinfo};
}

bool isBusy(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

}  // namespace

CkSocket::~CkSocket() { Close(0); }

bool CkSocket::await(short events, int ms) const {
  pollfd waiting = {fd_, events, 0};
  int ready = 0;
  do {
    ready = ::poll(&waiting, 1, ms);
  } while (ready < 0 && errno == EINTR);
  return ready > 0;
}

bool CkSocket::Connect(const char* host, int port, bool ssl, int maxWaitMs) {
  Close(0);
  if (ssl || host == nullptr || *host == 0) return false;
  const Addresses addresses = resolve(host, port);
  for (const addrinfo* a = addresses.get(); a != nullptr; a = a->ai_next) {
    fd_ = ::socket(a->ai_family, a->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, a->ai_protocol);
    if (fd_ < 0) continue;
    if (::connect(fd_, a->ai_addr, a->ai_addrlen) == 0) return true;
    int error = errno;
    if (error == EINPROGRESS && await(POLLOUT, maxWaitMs)) {
      socklen_t size = sizeof error;
      if (::getsockopt(fd_, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0) return true;
    }
    Close(0);
  }
  return false;
}

bool CkSocket::SendBytes(CkByteData& data) {
  const unsigned char* next = data.getBytes();
  unsigned long left = data.getSize();
  while (fd_ >= 0 && left > 0) {
    // Without MSG_NOSIGNAL a scale that resets the connection would end the platform's process.
    const ssize_t sent = ::send(fd_, next, left, MSG_NOSIGNAL);
    if (sent > 0) {
      next += sent;
      left -= static_cast<unsigned long>(sent);
    } else if (sent < 0 && !isBusy(errno)) {
      return false;
    } else if (!await(POLLOUT, maxSendIdleMs_)) {
      return false;
    }
  }
  return fd_ >= 0;
}

bool CkSocket::ReceiveBytesN(unsigned long n, CkByteData& data) {
  data.clear();
  std::array<unsigned char, 4096> chunk = {};
  while (fd_ >= 0 && data.getSize() < n) {
    if (!await(POLLIN, maxReadIdleMs_)) return false;
    const ssize_t got =
        ::recv(fd_, chunk.data(), std::min<std::size_t>(chunk.size(), n - data.getSize()), 0);
    if (got > 0) {
      data.append2(chunk.data(), static_cast<unsigned long>(got));
    } else if (got == 0 || !isBusy(errno)) {
      return false;
    }
  }
  return fd_ >= 0;
}

bool CkSocket::get_IsConnected() {
  if (fd_ < 0) return false;
  unsigned char byte = 0;
  const ssize_t got = ::recv(fd_, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
  return got > 0 || (got < 0 && isBusy(errno));
}

void CkSocket::Close(int /*maxWaitMs*/) {
  if (fd_ < 0) return;
  ::close(fd_);
  fd_ = -1;
}
