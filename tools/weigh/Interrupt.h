#pragma once

#include <chrono>

namespace weigh {

/// While one exists, the first Ctrl-C or SIGTERM asks the program to come to its end; the second
/// ends it at once. One at a time.
class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  bool asked() const;
  /// Waits until `time`; true if the program was asked to end before.
  bool askedBefore(std::chrono::steady_clock::time_point time) const;
};

}  // namespace weigh
