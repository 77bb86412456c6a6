#include "KestrumFdSet.h"

#include <poll.h>
#include <sys/select.h>

#include <algorithm>
#include <cerrno>
#include <climits>

namespace {

/// poll() counts in int, which a wait of a month exceeds.
constexpr std::uint32_t kLongestPoll_ms = INT_MAX;

short pollEvents(KestrumFdSet::For what) {
  switch (what) {
    case KestrumFdSet::For::Reading: return POLLIN;
    case KestrumFdSet::For::Writing: return POLLOUT;
    case KestrumFdSet::For::Connecting: return POLLOUT | POLLPRI;
  }
  return 0;
}

}  // namespace

bool KestrumFdSet::needsPoll(int fd) { return fd >= FD_SETSIZE; }

KestrumFdSet::Answer KestrumFdSet::fdSelect(int fd, For what, std::uint32_t ms) {
  fd_set wanted;
  FD_ZERO(&wanted);
  FD_SET(fd, &wanted);
  fd_set exceptional = wanted;
  timeval limit = {static_cast<time_t>(ms / 1000), static_cast<suseconds_t>(ms % 1000 * 1000)};
  const int ready = ::select(fd + 1, what == For::Reading ? &wanted : nullptr,
                             what == For::Reading ? nullptr : &wanted,
                             what == For::Connecting ? &exceptional : nullptr, &limit);
  if (ready == 0) return Answer::NotReady;
  if (ready < 0) return errno == EINTR ? Answer::Interrupted : Answer::Failed;
  if (FD_ISSET(fd, &wanted)) return Answer::Ready;
  return what == For::Connecting && FD_ISSET(fd, &exceptional) ? Answer::Exception
                                                               : Answer::Unexpected;
}

KestrumFdSet::Answer KestrumFdSet::fdSocketWait(int fd, For what, std::uint32_t ms) {
  pollfd waiting = {fd, pollEvents(what), 0};
  const int ready = ::poll(&waiting, 1, static_cast<int>(std::min(ms, kLongestPoll_ms)));
  if (ready > 0) return Answer::Ready;
  return ready < 0 && errno == EINTR ? Answer::Interrupted : Answer::NotReady;
}
