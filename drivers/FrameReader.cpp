#include "FrameReader.h"

#include <chrono>
#include <memory>

#include "ProtocolSheet.h"
#include "Sleep.h"

namespace {

class Reader {
 public:
  Reader(COrbComLanPort& port, int& budget_ms, std::span<std::uint8_t> frame)
      : port_(port), budget_ms_(budget_ms), frame_(frame) {}

  std::size_t operator()(const StartByteRead& style) {
    while (budgetLeft() && count_ < style.length) {
      if (count_ > 0) {
        readUpTo(style.length);
      } else if (port_.read(frame_.data(), 1) != 1) {
        waitOutSilence();
      } else if (style.start.contains(frame_[0])) {
        count_ = 1;
      } else {
        payWrongByte(style.wrongByte);
      }
    }
    return count_;
  }

  std::size_t operator()(const LengthRead& style) {
    while (budgetLeft() && (count_ < style.length || style.asksOn)) readUpTo(style.length);
    return count_;
  }

  std::size_t operator()(const TerminatorRead& style) {
    while (budgetLeft() && !isWhole(style, frame_.first(count_))) readUpTo(style.capacity);
    return count_;
  }

 private:
  bool budgetLeft() const { return budget_ms_ >= 1; }

  void waitOutSilence() {
    orbSleep_mSec(kSilence_ms);
    budget_ms_ -= kSilence_ms;
  }

  void readUpTo(std::size_t length) {
    const int got = port_.read(frame_.data() + count_, length - count_);
    if (got > 0) {
      count_ += static_cast<std::size_t>(got);
    } else {
      waitOutSilence();
    }
  }

  void payWrongByte(StartByteRead::WrongByte wrongByte) {
    switch (wrongByte) {
      case StartByteRead::WrongByte::CostsAsSilence: waitOutSilence(); return;
      case StartByteRead::WrongByte::CostsOne_ms: budget_ms_ -= 1; return;
    }
  }

  COrbComLanPort& port_;
  int& budget_ms_;
  std::span<std::uint8_t> frame_;
  std::size_t count_ = 0;
};

}  // namespace

bool drain(COrbComLanPort& port, std::size_t readSize) {
  using Clock = std::chrono::steady_clock;
  using std::chrono::milliseconds;
  const auto scratch = std::make_unique_for_overwrite<unsigned char[]>(readSize);
  // By the clock and not by a number of reads: a network connection that was flooded holds
  // megabytes, and a read that leaves them there finds garbage for many polls.
  const Clock::time_point end = Clock::now() + milliseconds{kLongestDrain_ms};
  const auto left = [&] { return std::chrono::ceil<milliseconds>(end - Clock::now()); };
  // A connection whose receiver was full may pause for longer than the silence that ends a network
  // read, until its sender asks for room again: what comes behind a flood has the whole time. The
  // buffer of a serial line, whose reads don't wait, is too small for a full read.
  bool flooded = false;
  int got = 0;
  do {
    got = port.read(scratch.get(), readSize, static_cast<int>(left().count()));
    flooded |= got == static_cast<int>(readSize);
  } while ((got > 0 || flooded) && left() > milliseconds{0});
  return left() <= milliseconds{0} &&
         port.read(scratch.get(), std::min(readSize, kBacklog), kBacklog_ms) > 0;
}

std::size_t readFrame(COrbComLanPort& port, const ReadStyle& style, int& budget_ms,
                      std::span<std::uint8_t> frame) {
  return std::visit(Reader(port, budget_ms, frame), style);
}
