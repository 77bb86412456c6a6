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
    : Line(std::move(endpoint), kRequestSilence),
      scale_(std::move(scale)),
      faults_(faults),
      misbehaviour_(faults) {}

void ScaleLine::setFaults(Faults faults) {
  faults_ = faults;
  misbehaviour_ = Misbehaviour(faults);
  nextEndless_ = Clock::time_point::min();
  if (sendsWithoutEnd()) dropQueue();
}

void ScaleLine::goAway() {
  dropQueue();
  returns_ = Clock::time_point::max();
  scale_.forgetPartOfRequest();
  line().goAway();
}

void ScaleLine::comeBack() {
  line().comeBack();
  returns_ = Clock::time_point::max();
}

short ScaleLine::events() const {
  const bool waitsForRoom = sendsWithoutEnd() && faults_.bytesPerSecond == 0;
  return static_cast<short>(waitsForRoom ? POLLIN | POLLOUT : POLLIN);
}

ScaleLine::Clock::time_point ScaleLine::deadline() const {
  const bool paced = sendsWithoutEnd() && faults_.bytesPerSecond > 0 && endpoint().hasListener();
  return std::min({Line::deadline(), returns_, paced ? nextEndless_ : Clock::time_point::max()});
}

void ScaleLine::hear(const Bytes& arrived, Clock::time_point now) {
  if (sendsWithoutEnd()) return;
  for (Scale::Answer& answer : scale_.receive(arrived)) {
    if (isFull()) continue;
    if (answer.action == Action::Weigh) {
      sendFrame(std::move(answer.bytes), now);
    } else if (!faults_.silent) {
      enqueue(std::move(answer.bytes), milliseconds{0}, now);
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
  if (sendsWithoutEnd() && endpoint().hasListener()) sendWithoutEnd(now);
  Line::advance(now);
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
  misbehaviour_.sentEndless(line().fill(bytes));
}

void ScaleLine::sendFrame(Bytes frame, Clock::time_point now) {
  const Transmission out = misbehaviour_.transmit(scale_.model(), std::move(frame));
  if (out.byteByByte > milliseconds{0}) {
    for (const std::uint8_t byte : out.bytes) enqueue({byte}, out.byteByByte, now);
  } else if (!out.bytes.empty()) {
    enqueue(out.bytes, milliseconds{0}, now);
  }
  if (out.hangUp) enqueue({}, endpoint().graceBeforeHangUp, now);
}

void ScaleLine::hangUp(Clock::time_point now) {
  dropQueue();
  scale_.forgetPartOfRequest();
  line().hangUp();
  if (endpoint().isAway()) returns_ = now + kAbsence;
}

}  // namespace sim
