#pragma once

#include <chrono>
#include <cstddef>

/// What this process uses at a moment.
struct Usage {
  std::size_t descriptors = 0;
  std::size_t threads = 0;
  std::size_t residentKib = 0;

  static Usage now();
};

/// Processor time of the calling thread.
std::chrono::nanoseconds threadTime();
