#include "ScaleLine.h"

#include <poll.h>

#include <algorithm>
#include <system_error>

namespace sim {

namespace {

using std::chrono::milliseconds;

/// How long a serial line that hung up stays away.
constexpr milliseconds kAbsence{500};
/// A scale that got half a request forgets it after this silence. Far above the pauses that the
/// component makes inside its requests.
constexpr milliseconds kRequestSilence{1000};
/// What is sent without end goes out in pieces of this size, or, at a given speed, this often.
constexpr std::size_t kEndlessPiece = 4096;
constexpr milliseconds kEndlessTick{10};

}  // namespace

ScaleLine::ScaleLine(Scale scale, std::unique_ptr<Endpoint> endpoint, Faults faults)
    : scale_(std::move(scale)),
      endpoint_(std::move(endpoint)),
      faults_(faults),
      misbehaviour_(faults) {}

void ScaleLine::setFaults(Faults faults) {
  faults_ = faults;
  misbehaviour_ = Misbehaviour(faults);
  nextEndless_ = Clock::time_point::min();
  if (sendsWithoutEnd()) queue_.clear();
}

void ScaleLine::goAway() {
  queue_.clear();
  returns_ = Clock::time_point::max();
  scale_.forgetPartOfRequest();
  endpoint_->goAway();
}

void ScaleLine::comeBack() {
  endpoint_->comeBack();
  returns_ = Clock::time_point::max();
}

bool ScaleLine::wantsToStream() const {
  return scale_.model().streams() && queue_.empty() && endpoint_->hasListener() &&
         !sendsWithoutEnd();
}

short ScaleLine::events() const {
  const bool waitsForRoom = sendsWithoutEnd() && faults_.bytesPerSecond == 0;
  return static_cast<short>(waitsForRoom ? POLLIN | POLLOUT : POLLIN);
}

ScaleLine::Clock::time_point ScaleLine::deadline() const {
  Clock::time_point earliest = returns_;
  if (!queue_.empty()) earliest = std::min(earliest, queue_.front().due);
  if (wantsToStream()) earliest = std::min(earliest, nextFrame_);
  if (sendsWithoutEnd() && faults_.bytesPerSecond > 0 && endpoint_->hasListener()) {
    earliest = std::min(earliest, nextEndless_);
  }
  return earliest;
}

void ScaleLine::receive(Clock::time_point now) {
  const Bytes arrived = endpoint_->receive();
  if (arrived.empty() || now - kRequestSilence > lastInput_) scale_.forgetPartOfRequest();
  if (arrived.empty()) return;
  lastInput_ = now;
  if (observer_) observer_(Direction::Received, arrived);
  if (sendsWithoutEnd()) return;
  for (Scale::Answer& answer : scale_.receive(arrived)) {
    if (answer.action == Action::Weigh) {
      sendFrame(std::move(answer.bytes), now);
    } else if (!faults_.silent) {
      enqueue(std::move(answer.bytes), milliseconds{0}, now, false);
    }
  }
}

void ScaleLine::advance(Clock::time_point now) {
  if (returns_ <= now) {
    try {
      comeBack();
    } catch (const std::system_error&) {
      // Somebody put a file in the link's place, or no pseudo-terminal is free: try again later.
      returns_ = now + kAbsence;
    }
  }
  if (wantsToStream() && nextFrame_ <= now) {
    sendFrame(scale_.frame(), now);
    nextFrame_ = lastDue(now) + endpoint_->streamInterval();
  }
  if (sendsWithoutEnd() && endpoint_->hasListener()) sendWithoutEnd(now);
  while (!queue_.empty() && queue_.front().due <= now) {
    const Outgoing out = std::move(queue_.front());
    queue_.pop_front();
    if (out.hangUp) {
      hangUp(now);
      return;
    }
    if (observer_ && endpoint_->hasListener()) observer_(Direction::Sent, out.bytes);
    endpoint_->send(out.bytes);
  }
}

/// Not seen by the observer: a record of it would have no end either.
void ScaleLine::sendWithoutEnd(Clock::time_point now) {
  std::size_t count = kEndlessPiece;
  if (faults_.bytesPerSecond > 0) {
    if (now < nextEndless_) return;
    const auto everyTick = faults_.bytesPerSecond * kEndlessTick / std::chrono::seconds{1};
    count = static_cast<std::size_t>(std::max<std::int64_t>(everyTick, 1));
    nextEndless_ = now + std::chrono::seconds{1} * count / faults_.bytesPerSecond;
  }
  const Bytes bytes = misbehaviour_.endless(scale_.frame(), count);
  misbehaviour_.sentEndless(endpoint_->fill(bytes));
}

ScaleLine::Clock::time_point ScaleLine::lastDue(Clock::time_point now) const {
  return queue_.empty() ? now : std::max(now, queue_.back().due);
}

void ScaleLine::sendFrame(Bytes frame, Clock::time_point now) {
  Transmission out = misbehaviour_.transmit(scale_.model(), std::move(frame));
  for (Transmission::Piece& piece : out.pieces) {
    enqueue(std::move(piece.bytes), piece.pause, now, false);
  }
  if (out.hangUp) enqueue({}, endpoint_->graceBeforeHangUp(), now, true);
}

void ScaleLine::enqueue(Bytes bytes, milliseconds pause, Clock::time_point now, bool hangUp) {
  queue_.push_back({lastDue(now) + pause, std::move(bytes), hangUp});
}

void ScaleLine::hangUp(Clock::time_point now) {
  queue_.clear();
  scale_.forgetPartOfRequest();
  endpoint_->hangUp();
  if (endpoint_->isAway()) returns_ = now + kAbsence;
}

}  // namespace sim
