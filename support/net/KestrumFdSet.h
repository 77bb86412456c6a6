#pragma once

#include <cstdint>

/// Waits for one descriptor, by select() or, for those that don't fit its sets, by poll().
class KestrumFdSet {
 public:
  enum class For {
    Reading,
    Writing,
    /// Writing, or the exceptional condition that a failed connect raises.
    Connecting,
  };
  enum class Answer {
    Ready,
    /// Only the exceptional condition holds.
    Exception,
    /// Reported as ready, but for nothing that was asked.
    Unexpected,
    NotReady,
    /// A signal came.
    Interrupted,
    /// errno tells why.
    Failed,
  };

  /// True for a descriptor beyond FD_SETSIZE, which would lie outside a set of select().
  static bool needsPoll(int fd);
  static Answer fdSelect(int fd, For what, std::uint32_t ms);
  /// Waits the whole time at once. A failing poll() is nothing but not ready.
  static Answer fdSocketWait(int fd, For what, std::uint32_t ms);
};
