#include "ReplayLine.h"

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
    : Line(std::move(endpoint), kRequestSilence), turns_(std::move(turns)) {}

void ReplayLine::hear(const Bytes& arrived, Clock::time_point now) {
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
  milliseconds pause{0};
  for (const Bytes& piece : turn.answer) {
    if (!isFull()) enqueue(piece, pause, now);
    pause = kBetweenPieces;
  }
  came_.clear();
  turn_ = (turn_ + 1) % turns_.size();
}

void ReplayLine::sendUnasked(Clock::time_point now) {
  Bytes all;
  for (const Bytes& piece : turns_.front().answer)
    all.insert(all.end(), piece.begin(), piece.end());
  enqueue(std::move(all), milliseconds{0}, now);
}

}  // namespace sim
