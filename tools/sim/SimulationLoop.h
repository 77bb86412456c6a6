#pragma once

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <vector>

#include "FileDescriptor.h"
#include "Line.h"

namespace sim {

/// Runs any number of lines on one thread, around one poll(2).
class SimulationLoop {
 public:
  SimulationLoop();

  /// Before `run`, or on its thread. Returns the line, which the loop owns.
  template <typename Kind>
  Kind& add(std::unique_ptr<Kind> line) {
    Kind& added = *line;
    lines_.push_back(std::move(line));
    return added;
  }
  /// Calls `ready` whenever `fd` has input or has ended. Before `run`, or on its thread.
  void watch(int fd, std::function<void()> ready) { watches_.push_back({fd, std::move(ready)}); }
  void unwatch(int fd) {
    std::erase_if(watches_, [&](const Watch& watch) { return watch.fd == fd; });
  }

  /// Returns after `stop`.
  void run();
  /// From any thread, and from a signal's handler.
  void stop();
  /// Runs `work` on the loop's thread and hands on what it returns or throws. Not to be called on
  /// the loop's own thread, nor before `run` is certain to be called.
  template <typename Work>
  auto call(Work work) {
    const auto task = std::make_shared<std::packaged_task<decltype(work())()>>(std::move(work));
    enqueue([task] { (*task)(); });
    return task->get_future().get();
  }

 private:
  struct Watch {
    int fd;
    std::function<void()> ready;
  };

  void enqueue(std::function<void()> work);
  int timeoutMs() const;
  void runCalls();
  void wake();

  std::vector<std::unique_ptr<Line>> lines_;
  std::vector<Watch> watches_;
  FileDescriptor wake_;
  std::atomic<bool> stopping_ = false;
  std::mutex mutex_;
  std::vector<std::function<void()>> calls_;
  bool over_ = false;
};

}  // namespace sim
