#include "Sleep.h"

#include <cerrno>
#include <cstdint>
#include <ctime>

void orbSleep_mSec(int ms) {
  constexpr std::uint32_t kMicrosecondsPerSecond = 1'000'000;
  constexpr long kNanosecondsPerSecond = 1'000'000'000;
  // The product wraps at 32 bits.
  const std::uint32_t us = static_cast<std::uint32_t>(ms) * 1000U;
  timespec end = {};
  ::clock_gettime(CLOCK_MONOTONIC, &end);
  end.tv_sec += us / kMicrosecondsPerSecond;
  end.tv_nsec += static_cast<long>(us % kMicrosecondsPerSecond) * 1000;
  if (end.tv_nsec >= kNanosecondsPerSecond) {
    ++end.tv_sec;
    end.tv_nsec -= kNanosecondsPerSecond;
  }
  while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) continue;
}
