#include "LongWork.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <iostream>
#include <system_error>

#include "Messages.h"
#include "Output.h"
#include "Text.h"

namespace weigh {

namespace {

constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};

// What the handlers use, made before: they may not allocate.

/// A pipe, so that a signal that comes just before the wait ends it too.
std::array<int, 2> g_pipe = {-1, -1};
std::array<char, PATH_MAX> g_file = {};
std::array<char, 256> g_notice = {};
volatile std::sig_atomic_t g_asked = 0;

extern "C" void noteSignal(int signal) {
  const int keep = errno;
  if (g_asked != 0) {
    if (g_file[0] != 0) ::unlink(g_file.data());
    std::signal(signal, SIG_DFL);
    ::raise(signal);
    return;
  }
  g_asked = 1;
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = ::write(g_pipe[1], &byte, sizeof byte);
  ::alarm(1);
  errno = keep;
}

extern "C" void tellToWait(int /*signal*/) {
  const int keep = errno;
  [[maybe_unused]] const ssize_t written =
      ::write(STDERR_FILENO, g_notice.data(), std::strlen(g_notice.data()));
  errno = keep;
}

constexpr const char* kWipe = "\r\x1B[K";

template <std::size_t size>
void keep(std::array<char, size>& place, const std::string& text) {
  // One that doesn't fit is none: half a path is another file.
  place.fill(0);
  if (text.size() < size) std::ranges::copy(text, place.begin());
}

}  // namespace

Ending::Ending() {
  if (::pipe2(g_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
    throw std::system_error(errno, std::generic_category(), "pipe");
  keep(g_notice,
       "\nweigh: " + say("ending when the scale's answer is through; Ctrl-C ends at once") + "\n");
  struct sigaction action = {};
  // Calls of the component go on.
  action.sa_flags = SA_RESTART;
  action.sa_handler = noteSignal;
  for (const int signal : kSignals) ::sigaction(signal, &action, nullptr);
  action.sa_handler = tellToWait;
  ::sigaction(SIGALRM, &action, nullptr);
}

Ending::~Ending() {
  ::alarm(0);
  for (const int signal : kSignals) std::signal(signal, SIG_DFL);
  for (int& end : g_pipe) {
    ::close(end);
    end = -1;
  }
}

bool Ending::asked() { return g_asked != 0; }

bool Ending::askedBefore(std::chrono::steady_clock::time_point time) {
  using std::chrono::milliseconds;
  for (;;) {
    const auto now = std::chrono::steady_clock::now();
    if (asked()) return true;
    if (time <= now) return false;
    constexpr std::int64_t kLongest_ms = 60000;
    const std::int64_t left = std::chrono::ceil<milliseconds>(time - now).count();
    pollfd end = {.fd = g_pipe[0], .events = POLLIN, .revents = 0};
    ::poll(&end, 1, static_cast<int>(std::min(left, kLongest_ms)));
  }
}

void Ending::takeAway(const std::filesystem::path& file) { keep(g_file, file.string()); }

Progress::Progress(std::chrono::milliseconds longest)
    : longest_(std::chrono::ceil<std::chrono::seconds>(longest)),
      onTerminal_(::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
  if (onTerminal_) std::cerr << kWipe << std::flush;
}

void Progress::show(const std::string& what) {
  if (!onTerminal_) return;
  const auto passed =
      std::chrono::floor<std::chrono::seconds>(std::chrono::steady_clock::now() - start_).count();
  const std::string line =
      longest_.count() == 0 ? say("{0} ... {1} s", what, passed)
                            : say("{0} ... {1} s of at most {2}", what, passed, longest_.count());
  // A line that wraps could not be wiped.
  std::cerr << kWipe << clipped(visible(line), screenSize(STDERR_FILENO).columns - 1) << std::flush;
}

}  // namespace weigh
