#pragma once

#include <netdb.h>
#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace fixture {

/// Watches the system calls that the socket layer makes, and answers in the system's place where a
/// test wants it. The program's own definitions of these calls come before libc's, so that the
/// layer under test needs no seam for this. Only calls of the thread that made the watch count.
class SystemCalls {
 public:
  SystemCalls();
  ~SystemCalls();
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  /// In order: "socket inet", "connect 127.0.0.1", "getaddrinfo scale any numericserv", "send 14".
  const std::vector<std::string>& all() const { return calls_; }
  /// Those that begin with a word.
  std::vector<std::string> only(const std::string& word) const;
  std::size_t count(const std::string& word) const { return only(word).size(); }
  void forget() { calls_.clear(); }

  /// What getaddrinfo answers instead of the system: addresses, or a status other than 0.
  struct Resolved {
    int status = 0;
    std::vector<std::string> addresses = {};
  };
  std::function<Resolved(const std::string& host)> resolver;
  /// What a send of `n` bytes gives instead of the system; a negative value is that errno, and
  /// kAskSystem leaves it to the system.
  static constexpr ssize_t kAskSystem = -1'000'000;
  std::function<ssize_t(std::size_t n)> sender;
  std::function<ssize_t(std::size_t n)> receiver;
  /// An errno that socket fails with; 0 leaves it to the system.
  int noSocket = 0;
  /// An errno that connect fails with at once; 0 leaves it to the system.
  std::function<int()> connecter;
  /// An errno that poll fails with; 0 leaves it to the system.
  std::function<int()> poller;
  /// The type argument of each socket call.
  std::vector<int> socketTypes;

  void note(std::string call) { calls_.push_back(std::move(call)); }
  /// The calling thread's watch, null if there is none.
  static SystemCalls* current();

 private:
  std::vector<std::string> calls_;
};

}  // namespace fixture
