#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <span>

#include "Descriptor.h"
#include "HexBytes.h"

namespace fixture {

/// The scale's end of a line: what a script sends and receives on. Every wait ends when the line
/// does or when the test is over, so that a script never hangs.
class Wire {
 public:
  Wire(int fd, const StopSignal& stop) : fd_(fd), stop_(stop) {}
  virtual ~Wire() = default;
  Wire(const Wire&) = delete;
  Wire& operator=(const Wire&) = delete;

  /// Waits for `count` bytes; fewer if the line or the test ended before.
  Bytes receive(std::size_t count);
  /// Waits for the first bytes and takes what is there; none if the line or the test ended.
  Bytes receiveSome();
  /// Sends the bytes; false if the line ended before.
  bool send(std::span<const std::uint8_t> data);
  /// Lets time pass; false if the test ended meanwhile.
  bool pause(int ms);
  /// True until the line or the test has ended.
  bool isAlive() const { return alive_; }

  /// Ends the line: a pseudo-terminal vanishes, a TCP connection closes in good order.
  virtual void hangUp() = 0;

 protected:
  void end() { alive_ = false; }
  int fd() const { return fd_; }

 private:
  /// Waits until the line is ready; false once the test is over or the time has passed.
  bool await(short events, int ms) const;

  int fd_;
  const StopSignal& stop_;
  /// Two threads of a script may use one line.
  std::atomic<bool> alive_ = true;
};

/// What a scale does on its line, from the first byte to the last; runs on a thread of its own.
using Script = std::function<void(Wire&)>;

/// Answers each such request with the same frame, for as long as the line lives. Bytes that
/// aren't the request are dropped one by one.
Script answering(Bytes request, Bytes answer);

/// Sends the bytes at once and then stays silent.
Script sending(Bytes data);

/// Receives what comes and says nothing.
Script silent();

/// What the scale's side received, collected across threads.
class Received {
 public:
  void add(std::span<const std::uint8_t> data);
  Bytes all() const;
  /// Waits until `count` bytes have come or two seconds have passed, and gives what has come.
  Bytes waitFor(std::size_t count) const;

 private:
  mutable std::mutex mutex_;
  Bytes data_;
};

/// Receives into `log`, for as long as the line lives.
Script recording(Received& log);

}  // namespace fixture
