#include "SimulationLoop.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace sim {

SimulationLoop::SimulationLoop() : wake_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (!wake_) fail("eventfd");
}

void SimulationLoop::wake() {
  const std::uint64_t one = 1;
  // Fails only when the counter is full, and then the loop is awake anyway.
  [[maybe_unused]] const ssize_t written = ::write(wake_.get(), &one, sizeof one);
}

void SimulationLoop::stop() {
  stopping_ = true;
  wake();
}

void SimulationLoop::enqueue(std::function<void()> work) {
  {
    const std::lock_guard lock(mutex_);
    if (over_) return work();
    calls_.push_back(std::move(work));
  }
  wake();
}

void SimulationLoop::runCalls() {
  std::vector<std::function<void()>> calls;
  {
    const std::lock_guard lock(mutex_);
    calls.swap(calls_);
    over_ = stopping_;
  }
  for (const auto& call : calls) call();
}

int SimulationLoop::timeoutMs() const {
  using Clock = Line::Clock;
  Clock::time_point earliest = Clock::time_point::max();
  for (const auto& line : lines_) earliest = std::min(earliest, line->deadline());
  constexpr int kForEver = -1;
  if (earliest == Clock::time_point::max()) return kForEver;
  const Clock::time_point now = Clock::now();
  if (earliest <= now) return 0;
  // Rounded up, so that what is due is due when poll returns.
  return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(earliest - now).count());
}

void SimulationLoop::run() {
  while (!stopping_) {
    std::vector<pollfd> waiting = {{wake_.get(), POLLIN, 0}};
    for (const Watch& watch : watches_) waiting.push_back({watch.fd, POLLIN, 0});
    // poll passes over negative descriptors, so lines that are away keep their places.
    for (const auto& line : lines_) waiting.push_back({line->descriptor(), line->events(), 0});
    if (::poll(waiting.data(), waiting.size(), timeoutMs()) < 0 && errno != EINTR) {
      fail("poll");
    }
    if (waiting.front().revents != 0) {
      std::uint64_t count = 0;
      [[maybe_unused]] const ssize_t taken = ::read(wake_.get(), &count, sizeof count);
    }
    const Line::Clock::time_point now = Line::Clock::now();
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      // Room for more to send shows by itself; all else is input, or an end that reading shows.
      const int shown = waiting[waiting.size() - lines_.size() + i].revents;
      if ((shown & ~POLLOUT) != 0) lines_[i]->receive(now);
      lines_[i]->advance(now);
    }
    // A watcher may add to or take from both lists, so these come last, by a list of their own.
    const std::vector<Watch> watches = watches_;
    for (std::size_t i = 0; i < watches.size(); ++i) {
      if (waiting[1 + i].revents != 0) watches[i].ready();
    }
    runCalls();
  }
  runCalls();
}

}  // namespace sim
