#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <span>

#include "Endpoint.h"
#include "ScaleState.h"

namespace sim {

enum class Direction { Received, Sent };
/// Sees every piece of bytes as it goes over a line.
using Observer = std::function<void(Direction, std::span<const std::uint8_t>)>;

/// Somebody at the scale's end of a line, kept going by a SimulationLoop. What is to be sent waits
/// in a queue for its time; a host that asks faster than it is answered loses answers, as with a
/// scale whose buffer is full, and one that has left gets none.
class Line {
 public:
  using Clock = std::chrono::steady_clock;

  virtual ~Line() = default;
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  const Endpoint& endpoint() const { return *endpoint_; }
  void setObserver(Observer observer) { observer_ = std::move(observer); }

  int descriptor() const { return endpoint_->descriptor(); }
  /// The events of poll(2) to wait for at the descriptor.
  virtual short events() const;
  /// When `advance` has something to do; `Clock::time_point::max()` for nothing.
  virtual Clock::time_point deadline() const;
  /// Takes what waits at the descriptor.
  void receive(Clock::time_point now);
  /// Does what is due.
  virtual void advance(Clock::time_point now);

 protected:
  /// A request that has come in part is forgotten after `requestSilence`.
  Line(std::unique_ptr<Endpoint> endpoint, std::chrono::milliseconds requestSilence)
      : endpoint_(std::move(endpoint)), requestSilence_(requestSilence) {}

  virtual void hear(const Bytes& arrived, Clock::time_point now) = 0;
  virtual void forgetPartOfRequest() = 0;
  /// Whether `sendUnasked` is to be called from time to time.
  virtual bool streams() const = 0;
  virtual void sendUnasked(Clock::time_point now) = 0;
  /// What an entry of the queue without bytes stands for.
  virtual void hangUp(Clock::time_point /*now*/) {}

  Endpoint& line() { return *endpoint_; }
  /// So much is waiting that nothing more may be added.
  bool isFull() const;
  /// Puts bytes behind all others in the queue, `pause` after them.
  void enqueue(Bytes bytes, std::chrono::milliseconds pause, Clock::time_point now);
  void dropQueue();

 private:
  struct Outgoing {
    Clock::time_point due;
    Bytes bytes;
  };

  bool wantsToStream() const;
  Clock::time_point lastDue(Clock::time_point now) const;

  std::unique_ptr<Endpoint> endpoint_;
  std::chrono::milliseconds requestSilence_;
  Observer observer_;
  std::deque<Outgoing> queue_;
  /// Bytes in the queue.
  std::size_t waiting_ = 0;
  Clock::time_point nextFrame_ = Clock::time_point::min();
  Clock::time_point lastInput_ = Clock::time_point::min();
};

}  // namespace sim
