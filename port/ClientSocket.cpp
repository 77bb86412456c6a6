#include "ClientSocket.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

namespace {

constexpr int kFailed = -1;

/// What select() is told, so that it looks at no descriptor.
constexpr int kNoDescriptors = 0;
constexpr timeval kSendLimit = {0, 1'000'000};
constexpr timeval kReceiveLimit = {0, 10};

/// A set with the socket in it; empty for a descriptor that no set can hold.
fd_set setOf(int descriptor) {
  fd_set set;
  FD_ZERO(&set);
  if (descriptor >= 0 && descriptor < FD_SETSIZE) FD_SET(descriptor, &set);
  return set;
}

}  // namespace

COrbSocket::COrbSocket(bool tcp) { create(tcp); }

COrbSocket::~COrbSocket() { destroy(); }

void COrbSocket::create(bool tcp) {
  destroy();
  fd = ::socket(AF_INET, (tcp ? SOCK_STREAM : SOCK_DGRAM) | SOCK_CLOEXEC, 0);
}

void COrbSocket::destroy() {
  if (!isValid()) return;
  ::close(fd);
  fd = kNone;
}

void COrbSocket::setup(int descriptor) {
  destroy();
  fd = descriptor;
}

void COrbSocket::setBlocking(bool blocking) {
  int nonBlocking = blocking ? 0 : 1;
  ::ioctl(fd, FIONBIO, &nonBlocking);
}

int COrbSocket::send(const unsigned char* data, int size, int flags) {
  if (!isValid()) return kFailed;
  int left = size;
  timeval limit = kSendLimit;
  while (left > 0) {
    fd_set writable = setOf(fd);
    if (::select(kNoDescriptors, nullptr, &writable, nullptr, &limit) <= 0) break;
    const ssize_t sent =
        ::send(fd, data + (size - left), static_cast<std::size_t>(left), flags | MSG_NOSIGNAL);
    if (sent < 0) return kFailed;
    left -= static_cast<int>(sent);
  }
  return size - left;
}

int COrbSocket::receive(unsigned char* data, int size, int flags) {
  if (!isValid()) return kFailed;
  int left = size;
  ssize_t received = 1;
  while (left > 0 && received != 0) {
    fd_set readable = setOf(fd);
    timeval limit = kReceiveLimit;
    if (::select(kNoDescriptors, &readable, nullptr, nullptr, &limit) <= 0) break;
    received = ::recv(fd, data + (size - left), static_cast<std::size_t>(left), flags);
    if (received < 0) return kFailed;
    left -= static_cast<int>(received);
  }
  return size - left;
}

int COrbClientSocket::connect(const char* host, unsigned short port) {
  if (host == nullptr) return kFailed;
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = ::inet_addr(host);
  if (address.sin_addr.s_addr == INADDR_NONE) {
    const hostent* found = ::gethostbyname(host);
    if (found == nullptr || found->h_addrtype != AF_INET || found->h_addr_list[0] == nullptr) {
      return kFailed;
    }
    std::memcpy(&address.sin_addr, found->h_addr_list[0], sizeof address.sin_addr);
  }
  return ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

int COrbClientSocket::reset() {
  destroy();
  create(true);
  return 0;
}
