#include "SystemCalls.h"

#include <dlfcn.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

namespace {

using fixture::SystemCalls;

template <typename Function>
Function* real(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

/// What the test wants the call to give, or what the system gives.
template <typename Function, typename... Args>
auto call(const char* name, Args... args) {
  using Result = decltype(std::declval<Function*>()(args...));
  if (SystemCalls* const watch = SystemCalls::current;
      watch != nullptr && watch->instead.contains(name)) {
    const SystemCalls::Answer answer = watch->instead[name]();
    if (answer && *answer < 0) errno = static_cast<int>(-*answer);
    if (answer) return static_cast<Result>(*answer < 0 ? -1 : *answer);
  }
  return real<Function>(name)(args...);
}

std::string nameOf(const addrinfo& hints) {
  std::string name = hints.ai_family == AF_INET    ? " inet"
                     : hints.ai_family == AF_INET6 ? " inet6"
                                                   : " any";
  for (const auto& [flag, flagName] :
       {std::pair{AI_NUMERICSERV, " numericserv"}, std::pair{AI_NUMERICHOST, " numerichost"},
        std::pair{AI_ALL, " all"}, std::pair{AI_V4MAPPED, " v4mapped"}}) {
    if ((hints.ai_flags & flag) != 0) name += flagName;
  }
  return name;
}

/// A list made of one getaddrinfo answer per numeric address, which freeaddrinfo() can free.
int numericList(const std::vector<std::string>& addresses, const char* service, addrinfo** list) {
  addrinfo hints = {};
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
  hints.ai_socktype = SOCK_STREAM;
  *list = nullptr;
  for (const std::string& address : addresses) {
    const int status =
        real<decltype(::getaddrinfo)>("getaddrinfo")(address.c_str(), service, &hints, list);
    if (status != 0) return status;
    while (*list != nullptr) list = &(*list)->ai_next;
  }
  return 0;
}

}  // namespace

extern "C" {

int socket(int family, int type, int protocol) noexcept {
  return call<decltype(::socket)>("socket", family, type, protocol);
}

int connect(int fd, const sockaddr* address, socklen_t size) {
  if (SystemCalls* const watch = SystemCalls::current) {
    std::array<char, NI_MAXHOST> text = {};
    ::getnameinfo(address, size, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
    watch->noted.push_back(std::string("connect ") + text.data());
  }
  return call<decltype(::connect)>("connect", fd, address, size);
}

int getaddrinfo(const char* host, const char* service, const addrinfo* hints, addrinfo** list) {
  if (SystemCalls* const watch = SystemCalls::current) {
    watch->noted.push_back(std::string("getaddrinfo ") + host + nameOf(*hints));
    if (const auto& resolved = watch->resolved) {
      return resolved->status != 0 ? resolved->status
                                   : numericList(resolved->addresses, service, list);
    }
  }
  return real<decltype(::getaddrinfo)>("getaddrinfo")(host, service, hints, list);
}

ssize_t send(int fd, const void* data, size_t n, int flags) {
  if (SystemCalls* const watch = SystemCalls::current) {
    watch->noted.push_back("send " + std::to_string(n));
  }
  return call<decltype(::send)>("send", fd, data, n, flags);
}

ssize_t recv(int fd, void* data, size_t n, int flags) {
  return call<decltype(::recv)>("recv", fd, data, n, flags);
}

int poll(pollfd* descriptors, nfds_t n, int ms) {
  return call<decltype(::poll)>("poll", descriptors, n, ms);
}

}  // extern "C"
