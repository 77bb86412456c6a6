#include <sys/time.h>

#include <chrono>
#include <csignal>

#include <gtest/gtest.h>

#include "Sleep.h"

namespace {

// A timer of the host must not end a driver's pause, or the answer is asked for before it is there.
TEST(Sleep, GoesOnAfterASignal) {
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  ASSERT_EQ(::sigaction(SIGALRM, &action, nullptr), 0);
  constexpr itimerval kEveryTwoMilliseconds = {{0, 2000}, {0, 2000}};
  ASSERT_EQ(::setitimer(ITIMER_REAL, &kEveryTwoMilliseconds, nullptr), 0);
  const auto start = std::chrono::steady_clock::now();
  orbSleep_mSec(50);
  const auto slept = std::chrono::steady_clock::now() - start;
  constexpr itimerval kNever = {};
  ::setitimer(ITIMER_REAL, &kNever, nullptr);
  EXPECT_GE(slept, std::chrono::milliseconds(50));
}

}  // namespace
