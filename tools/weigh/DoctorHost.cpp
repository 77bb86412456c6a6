#include <netdb.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <future>
#include <memory>
#include <thread>

#include "Doctor.h"
#include "Text.h"

namespace weigh {

namespace {

/// How far a connection came, and what it failed with.
struct Reached {
  /// 0, or what getaddrinfo failed with.
  int name = 0;
  /// An errno.
  int error = 0;
};

Reached reach(const std::string& host, const std::string& port, std::chrono::seconds longest) {
  addrinfo hints = {};
  // The component connects to the first address of this kind.
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  const int name = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &list);
  if (name != 0) return {.name = name, .error = errno};
  const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(list, &::freeaddrinfo);
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (socket < 0) return {.error = errno};
  // A connection takes no longer than what is sent may.
  const timeval most = {.tv_sec = longest.count(), .tv_usec = 0};
  ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &most, sizeof most);
  const int error = ::connect(socket, list->ai_addr, list->ai_addrlen) == 0 ? 0 : errno;
  ::close(socket);
  return {.error = error == EINPROGRESS ? ETIMEDOUT : error};
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

  // Neither call can be ended, so they have a thread of their own, which is left behind if the user
  // has enough, or if a name server takes too long.
  std::packaged_task<Reached()> task(
      [host, port] { return reach(host, std::to_string(port), kLongestConnect); });
  std::future<Reached> outcome = task.get_future();
  std::thread(std::move(task)).detach();
  const auto end = std::chrono::steady_clock::now() + 2 * kLongestConnect;
  constexpr std::chrono::milliseconds kSlice{100};
  while (outcome.wait_for(kSlice) != std::future_status::ready) {
    if (Ending::asked()) return std::nullopt;
    if (std::chrono::steady_clock::now() >= end) return noSuchName(::gai_strerror(EAI_AGAIN));
  }
  const auto [name, error] = outcome.get();
  if (name != 0)
    return noSuchName(name == EAI_SYSTEM ? std::strerror(error) : ::gai_strerror(name));
  if (error == 0) return std::nullopt;
  if (error == ETIMEDOUT) {
    return Finding{.code = "no-answer",
                   .cause = say("{0} did not answer on TCP port {1} within {2} s.", host, port,
                                kLongestConnect.count()),
                   .remedy = say("Is the scale or its converter switched on, is the address right, "
                                 "does a firewall stand between?")};
  }
  if (error == ECONNREFUSED) {
    return Finding{.code = "refused",
                   .cause = say("{0} is there but refuses TCP port {1}.", host, port),
                   .remedy = say("Set the port that the scale or its converter listens on, and see "
                                 "that no other program has its only connection.")};
  }
  return Finding{
      .code = "unreachable",
      .cause = say("{0} can't be reached: {1}.", host, std::strerror(error)),
      .remedy = say("Check network cable, address and mask on both sides; `ping {0}` must answer.",
                    shellWord(host))};
}

}  // namespace weigh
