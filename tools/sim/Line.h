#pragma once

#include <chrono>
#include <functional>
#include <span>

#include "ScaleState.h"

namespace sim {

enum class Direction { Received, Sent };
/// Sees every piece of bytes as it goes over a line.
using Observer = std::function<void(Direction, std::span<const std::uint8_t>)>;

/// Somebody at the scale's end of a line, kept going by a SimulationLoop.
class Line {
 public:
  using Clock = std::chrono::steady_clock;

  Line() = default;
  virtual ~Line() = default;
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  virtual int descriptor() const = 0;
  /// The events of poll(2) to wait for at the descriptor.
  virtual short events() const = 0;
  /// When `advance` has something to do; `Clock::time_point::max()` for nothing.
  virtual Clock::time_point deadline() const = 0;
  /// Takes what waits at the descriptor.
  virtual void receive(Clock::time_point now) = 0;
  /// Does what is due.
  virtual void advance(Clock::time_point now) = 0;
};

}  // namespace sim
