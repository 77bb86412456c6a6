#include "ReplayLine.h"

#include <poll.h>

#include <algorithm>

namespace sim {

namespace {

using std::chrono::milliseconds;

/// Between the pieces of an answer: so short that no reader takes it for the end.
constexpr milliseconds kBetweenPieces{10};
/// A request that was begun is forgotten after this silence: longer than a driver waits between two
/// attempts, which are one request if the first of them wasn't answered.
constexpr milliseconds kRequestSilence{5000};

}  // namespace

ReplayLine::ReplayLine(std::vector<exchange::Turn> turns, std::unique_ptr<Endpoint> endpoint)
    : turns_(std::move(turns)), endpoint_(std::move(endpoint)) {}

short ReplayLine::events() const { return POLLIN; }

Line::Clock::time_point ReplayLine::deadline() const {
  if (!queue_.empty()) return queue_.front().due;
  return streams() && endpoint_->hasListener() ? nextStream_ : Clock::time_point::max();
}

void ReplayLine::receive(Clock::time_point now) {
  const Bytes arrived = endpoint_->receive();
  if (arrived.empty() || now - kRequestSilence > lastInput_) came_.clear();
  if (arrived.empty()) return;
  lastInput_ = now;
  if (observer_) observer_(Direction::Received, arrived);
  if (streams()) return;
  for (const std::uint8_t byte : arrived) {
    came_.push_back(byte);
    // By their number and not by what they are: part of a request may be what the scale sent last.
    if (came_.size() == turns_[turn_].request.size()) answer(now);
  }
}

void ReplayLine::answer(Clock::time_point now) {
  const exchange::Turn& turn = turns_[turn_];
  if (came_ != turn.request && stranger_) stranger_(came_, turn.request);
  Clock::time_point due = queue_.empty() ? now : std::max(now, queue_.back().due + kBetweenPieces);
  for (const Bytes& piece : turn.answer) {
    queue_.push_back({due, piece});
    due += kBetweenPieces;
  }
  came_.clear();
  turn_ = (turn_ + 1) % turns_.size();
}

void ReplayLine::advance(Clock::time_point now) {
  while (!queue_.empty() && queue_.front().due <= now) {
    send(queue_.front().bytes);
    queue_.pop_front();
  }
  if (!streams() || nextStream_ > now || !endpoint_->hasListener()) return;
  Bytes all;
  for (const Bytes& piece : turns_.front().answer)
    all.insert(all.end(), piece.begin(), piece.end());
  send(all);
  nextStream_ = now + endpoint_->streamInterval();
}

void ReplayLine::send(const Bytes& bytes) {
  if (observer_ && endpoint_->hasListener()) observer_(Direction::Sent, bytes);
  endpoint_->send(bytes);
}

}  // namespace sim
