#pragma once

#include <termios.h>

#include <vector>

namespace fixture {

/// What was asked of `tcsetattr` in this process while the object lives. A pseudo-terminal drops
/// parity and frame length, so what a real line would get shows only in the request. There is one
/// object at a time.
class RequestedSettings {
 public:
  RequestedSettings();
  ~RequestedSettings();
  RequestedSettings(const RequestedSettings&) = delete;
  RequestedSettings& operator=(const RequestedSettings&) = delete;

  const std::vector<termios>& all() const { return requests_; }
  void clear() { requests_.clear(); }
  /// From now on every request is refused.
  void refuse() { refusing_ = true; }

  /// Called for each request; true to pass it on.
  bool take(const termios& settings);

 private:
  std::vector<termios> requests_;
  bool refusing_ = false;
};

}  // namespace fixture
