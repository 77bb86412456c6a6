#include "Interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>

namespace weigh {

namespace {

constexpr std::array<int, 2> kSignals = {SIGINT, SIGTERM};

/// A pipe, so that a signal that comes just before the wait ends it too.
std::array<int, 2> g_pipe = {-1, -1};

extern "C" void noteSignal(int) {
  const int keep = errno;
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = ::write(g_pipe[1], &byte, sizeof byte);
  errno = keep;
}

}  // namespace

Interrupt::Interrupt() {
  if (::pipe2(g_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    throw std::system_error(errno, std::generic_category(), "pipe");
  }
  struct sigaction action = {};
  action.sa_handler = noteSignal;
  // Calls of the component go on; the default comes back for the second signal.
  action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
  for (const int signal : kSignals) ::sigaction(signal, &action, nullptr);
}

Interrupt::~Interrupt() {
  for (const int signal : kSignals) std::signal(signal, SIG_DFL);
  for (int& end : g_pipe) {
    ::close(end);
    end = -1;
  }
}

bool Interrupt::asked() const { return askedBefore(std::chrono::steady_clock::time_point::min()); }

bool Interrupt::askedBefore(std::chrono::steady_clock::time_point time) const {
  using std::chrono::milliseconds;
  for (;;) {
    const auto now = std::chrono::steady_clock::now();
    const bool over = time <= now;
    const std::int64_t left = over ? 0 : std::chrono::ceil<milliseconds>(time - now).count();
    constexpr std::int64_t kLongest_ms = 60000;
    pollfd end = {.fd = g_pipe[0], .events = POLLIN, .revents = 0};
    if (::poll(&end, 1, static_cast<int>(std::min(left, kLongest_ms))) > 0) return true;
    if (over) return false;
  }
}

}  // namespace weigh
