#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "Doctor.h"
#include "Text.h"

namespace weigh {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// How soon an interruption is noticed.
constexpr milliseconds kSlice{100};

/// What a host name leads to.
struct Address {
  /// 0, or what getaddrinfo failed with.
  int status = 0;
  int systemError = 0;
  sockaddr_storage address = {};
  socklen_t size = 0;
};

Address addressOf(const std::string& host, const std::string& port) {
  addrinfo hints = {};
  // The component connects to the first address of this kind.
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  Address result;
  result.status = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &list);
  result.systemError = errno;
  if (result.status != 0) return result;
  const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(list, &::freeaddrinfo);
  result.size = list->ai_addrlen;
  std::memcpy(&result.address, list->ai_addr, result.size);
  return result;
}

/// One name on its way to the name server and back. The system's call can't be ended, so it has a
/// thread of its own, which is left behind if it takes too long.
class Question {
 public:
  Question(const std::string& host, const std::string& port) {
    std::packaged_task<Address()> task([host, port] { return addressOf(host, port); });
    answer_ = task.get_future();
    std::thread(std::move(task)).detach();
  }

  /// False as long as there is no answer.
  bool waitFor(milliseconds time) { return answer_.wait_for(time) == std::future_status::ready; }
  Address take() { return answer_.get(); }

 private:
  std::future<Address> answer_;
};

class Connecting {
 public:
  explicit Connecting(const Address& to)
      : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
    const auto* address = reinterpret_cast<const sockaddr*>(&to.address);
    const bool failed = socket_ < 0 || ::connect(socket_, address, to.size) != 0;
    error_ = failed ? errno : 0;
  }
  ~Connecting() {
    if (socket_ >= 0) ::close(socket_);
  }
  Connecting(const Connecting&) = delete;
  Connecting& operator=(const Connecting&) = delete;

  /// False as long as it is neither connected nor refused.
  bool waitFor(milliseconds time) {
    if (error_ != EINPROGRESS) return true;
    pollfd ready = {.fd = socket_, .events = POLLOUT, .revents = 0};
    if (::poll(&ready, 1, static_cast<int>(time.count())) <= 0) return false;
    socklen_t size = sizeof error_;
    ::getsockopt(socket_, SOL_SOCKET, SO_ERROR, &error_, &size);
    return true;
  }
  /// 0 for a connection.
  int error() const { return error_; }

 private:
  int socket_;
  int error_;
};

enum class Wait { Done, TooLong, Interrupted };

/// Waits in slices for what the network does.
template <typename Work>
Wait waitFor(Work& work) {
  const Clock::time_point end = Clock::now() + kLongestConnect;
  while (Clock::now() < end) {
    if (Ending::asked()) return Wait::Interrupted;
    if (work.waitFor(kSlice)) return Wait::Done;
  }
  return Wait::TooLong;
}

}  // namespace

std::optional<Finding> hostTrouble(const Connection& connection) {
  const std::string& host = connection.host;
  const int port = connection.tcpPort;
  const auto noSuchName = [&](const char* why) {
    return Finding{
        .code = "no-such-name",
        .cause = say("The host name {0} leads to no address: {1}.", host, why),
        .remedy =
            say("Check the spelling, or give the address in numbers, such as 192.168.0.200.")};
  };

  Question question(host, std::to_string(port));
  const Wait named = waitFor(question);
  if (named == Wait::Interrupted) return std::nullopt;
  if (named == Wait::TooLong) return noSuchName(::gai_strerror(EAI_AGAIN));
  const Address address = question.take();
  if (address.status == EAI_SYSTEM) return noSuchName(std::strerror(address.systemError));
  if (address.status != 0) return noSuchName(::gai_strerror(address.status));

  Connecting connecting(address);
  const Wait connected = waitFor(connecting);
  if (connected == Wait::Interrupted) return std::nullopt;
  if (connected == Wait::TooLong || connecting.error() == ETIMEDOUT) {
    return Finding{.code = "no-answer",
                   .cause = say("{0} did not answer on TCP port {1} within {2} s.", host, port,
                                kLongestConnect.count()),
                   .remedy = say("Is the scale or its converter switched on, is the address right, "
                                 "does a firewall stand between?")};
  }
  if (connecting.error() == 0) return std::nullopt;
  if (connecting.error() == ECONNREFUSED) {
    return Finding{.code = "refused",
                   .cause = say("{0} is there but refuses TCP port {1}.", host, port),
                   .remedy = say("Set the port that the scale or its converter listens on, and see "
                                 "that no other program has its only connection.")};
  }
  return Finding{
      .code = "unreachable",
      .cause = say("{0} can't be reached: {1}.", host, std::strerror(connecting.error())),
      .remedy = say("Check network cable, address and mask on both sides; `ping {0}` must answer.",
                    shellWord(host))};
}

}  // namespace weigh
