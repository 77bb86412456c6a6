#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fixture {

/// Watches the system calls that the socket layer makes, and answers in the system's place where a
/// test wants it. The program's own definitions of these calls come before libc's, so that the
/// layer under test needs no seam for this. Only calls of the thread that made the watch count.
struct SystemCalls {
  SystemCalls() { current = this; }
  ~SystemCalls() { current = nullptr; }
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  /// In order: "connect 127.0.0.1", "getaddrinfo scale any numericserv", "send 14".
  std::vector<std::string> noted;

  /// What socket, connect, send, recv or poll gives instead of the system, by its name: a negative
  /// value is that errno, and none leaves it to the system.
  using Answer = std::optional<ssize_t>;
  std::map<std::string_view, std::function<Answer()>> instead;

  /// What getaddrinfo answers instead of the system: addresses, or a status other than 0.
  struct Resolved {
    int status = 0;
    std::vector<std::string> addresses = {};
  };
  std::optional<Resolved> resolved;

  /// The calling thread's watch, null if there is none.
  static inline thread_local SystemCalls* current = nullptr;
};

}  // namespace fixture
