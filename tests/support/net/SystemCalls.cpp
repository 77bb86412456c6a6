#include "SystemCalls.h"

#include <arpa/inet.h>
#include <dlfcn.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace fixture {

namespace {

thread_local SystemCalls* t_watch = nullptr;

template <typename Function>
Function* real(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

std::string familyName(int family) {
  return family == AF_INET ? "inet" : family == AF_INET6 ? "inet6" : "any";
}

std::string addressText(const sockaddr* address) {
  std::array<char, INET6_ADDRSTRLEN> text = {};
  if (address->sa_family == AF_INET) {
    ::inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(address)->sin_addr, text.data(),
                text.size());
  } else if (address->sa_family == AF_INET6) {
    ::inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr, text.data(),
                text.size());
  }
  return text.data();
}

std::string flagNames(int flags) {
  std::string names;
  for (const auto& [flag, name] :
       {std::pair{AI_NUMERICSERV, " numericserv"}, std::pair{AI_NUMERICHOST, " numerichost"},
        std::pair{AI_ALL, " all"}, std::pair{AI_V4MAPPED, " v4mapped"}}) {
    if ((flags & flag) != 0) names += name;
  }
  return names;
}

/// A list made of one getaddrinfo answer per numeric address, which freeaddrinfo() can free.
int numericList(const std::vector<std::string>& addresses, const char* service, addrinfo** list) {
  addrinfo hints = {};
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo** end = list;
  for (const std::string& address : addresses) {
    const int status =
        real<decltype(::getaddrinfo)>("getaddrinfo")(address.c_str(), service, &hints, end);
    if (status != 0) return status;
    while (*end != nullptr) end = &(*end)->ai_next;
  }
  return 0;
}

}  // namespace

SystemCalls::SystemCalls() { t_watch = this; }

SystemCalls::~SystemCalls() { t_watch = nullptr; }

SystemCalls* SystemCalls::current() { return t_watch; }

std::vector<std::string> SystemCalls::only(const std::string& word) const {
  std::vector<std::string> found;
  std::copy_if(calls_.begin(), calls_.end(), std::back_inserter(found),
               [&](const std::string& call) { return (call + " ").starts_with(word + " "); });
  return found;
}

}  // namespace fixture

using fixture::SystemCalls;

extern "C" {

int socket(int family, int type, int protocol) noexcept {
  if (SystemCalls* watch = SystemCalls::current()) {
    watch->note("socket " + fixture::familyName(family));
    watch->socketTypes.push_back(type);
    if (watch->noSocket != 0) {
      errno = watch->noSocket;
      return -1;
    }
  }
  return fixture::real<decltype(::socket)>("socket")(family, type, protocol);
}

int connect(int fd, const sockaddr* address, socklen_t size) {
  if (SystemCalls* watch = SystemCalls::current()) {
    watch->note("connect " + fixture::addressText(address));
    if (const int error = watch->connecter ? watch->connecter() : 0; error != 0) {
      errno = error;
      return -1;
    }
  }
  return fixture::real<decltype(::connect)>("connect")(fd, address, size);
}

int getaddrinfo(const char* host, const char* service, const addrinfo* hints, addrinfo** list) {
  if (SystemCalls* watch = SystemCalls::current()) {
    watch->note(std::string("getaddrinfo ") + host + " " + fixture::familyName(hints->ai_family) +
                fixture::flagNames(hints->ai_flags));
    if (watch->resolver) {
      const SystemCalls::Resolved answer = watch->resolver(host);
      *list = nullptr;
      return answer.status != 0 ? answer.status
                                : fixture::numericList(answer.addresses, service, list);
    }
  }
  return fixture::real<decltype(::getaddrinfo)>("getaddrinfo")(host, service, hints, list);
}

ssize_t send(int fd, const void* data, size_t n, int flags) {
  if (SystemCalls* watch = SystemCalls::current()) {
    watch->note("send " + std::to_string(n));
    const ssize_t instead = watch->sender ? watch->sender(n) : SystemCalls::kAskSystem;
    if (instead >= 0) return instead;
    if (instead != SystemCalls::kAskSystem) {
      errno = static_cast<int>(-instead);
      return -1;
    }
  }
  return fixture::real<decltype(::send)>("send")(fd, data, n, flags);
}

ssize_t recv(int fd, void* data, size_t n, int flags) {
  if (SystemCalls* watch = SystemCalls::current()) {
    const ssize_t instead = watch->receiver ? watch->receiver(n) : SystemCalls::kAskSystem;
    if (instead >= 0) return instead;
    if (instead != SystemCalls::kAskSystem) {
      errno = static_cast<int>(-instead);
      return -1;
    }
  }
  return fixture::real<decltype(::recv)>("recv")(fd, data, n, flags);
}

int poll(pollfd* descriptors, nfds_t n, int ms) {
  if (SystemCalls* watch = SystemCalls::current()) {
    if (const int error = watch->poller ? watch->poller() : 0; error != 0) {
      errno = error;
      return -1;
    }
  }
  return fixture::real<decltype(::poll)>("poll")(descriptors, n, ms);
}

}  // extern "C"
