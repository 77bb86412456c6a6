#pragma once

#include <chrono>
#include <cstddef>

namespace fixture {

/// What this process uses at a moment.
struct Usage {
  std::size_t descriptors = 0;
  std::size_t threads = 0;
  std::size_t residentKib = 0;

  static Usage now();
};

/// Open descriptors of this process. A directory lists itself while it is read, each time.
std::size_t openDescriptors();

/// Processor time of the calling thread.
std::chrono::nanoseconds threadTime();

}  // namespace fixture
