#include "Line.h"

#include <poll.h>

#include <algorithm>

namespace sim {

short Line::events() const { return POLLIN; }

bool Line::wantsToStream() const { return streams() && queue_.empty() && endpoint_->hasListener(); }

Line::Clock::time_point Line::deadline() const {
  if (!queue_.empty()) return queue_.front().due;
  return wantsToStream() ? nextFrame_ : Clock::time_point::max();
}

Line::Clock::time_point Line::lastDue(Clock::time_point now) const {
  return queue_.empty() ? now : std::max(now, queue_.back().due);
}

void Line::receive(Clock::time_point now) {
  const Bytes arrived = endpoint_->receive();
  if (!endpoint_->hasListener()) dropQueue();
  if (arrived.empty() || now - requestSilence_ > lastInput_) forgetPartOfRequest();
  if (arrived.empty()) return;
  lastInput_ = now;
  if (observer_) observer_(Direction::Received, arrived);
  hear(arrived, now);
}

void Line::advance(Clock::time_point now) {
  if (wantsToStream() && nextFrame_ <= now) {
    sendUnasked(now);
    nextFrame_ = lastDue(now) + endpoint_->streamInterval;
  }
  while (!queue_.empty() && queue_.front().due <= now) {
    const Bytes bytes = std::move(queue_.front().bytes);
    queue_.pop_front();
    waiting_ -= bytes.size();
    if (bytes.empty()) return hangUp(now);
    if (observer_ && endpoint_->hasListener()) observer_(Direction::Sent, bytes);
    endpoint_->send(bytes);
  }
}

bool Line::isFull() const {
  constexpr std::size_t kMostWaiting = 4096;
  return waiting_ >= kMostWaiting;
}

void Line::enqueue(Bytes bytes, std::chrono::milliseconds pause, Clock::time_point now) {
  const Clock::time_point due = lastDue(now) + pause;
  waiting_ += bytes.size();
  queue_.push_back({due, std::move(bytes)});
}

void Line::dropQueue() {
  queue_.clear();
  waiting_ = 0;
}

}  // namespace sim
