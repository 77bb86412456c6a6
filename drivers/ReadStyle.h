#pragma once

#include <cstddef>
#include <variant>

#include "Bytes.h"

/// What silence costs of a read's budget: the budget falls by the sleeps, not by the clock.
inline constexpr int kSilence_ms = 50;
/// What a wrong byte costs a reader that hunts through a stream: nothing to speak of, but a
/// stream that never brings the right one must end too.
inline constexpr int kHuntedByte_ms = 1;

/// Byte by byte up to a start byte, then the rest of the frame. For a scale that is asked: a
/// wrong byte costs as much as silence.
struct StartByteRead {
  std::size_t length = 0;
  Bytes start = {};
};

/// The same for a scale that transmits by itself: a wrong byte costs 1 ms and no sleep.
struct HuntingRead {
  std::size_t length = 0;
  Bytes start = {};
};

/// So many bytes, whatever they are.
struct LengthRead {
  std::size_t length = 0;
  /// The reader stops at `length` plus this many bytes. It never asks for more than `length`, so
  /// with 1 here it asks for nothing and sleeps until the budget is spent.
  std::size_t excessBound = 0;
};

/// Up to `capacity` bytes, until at least `minLength` have come and the end is there. A network
/// port gives all that is asked for or nothing, so over TCP only an answer of exactly `capacity`
/// bytes can come in.
struct TerminatorRead {
  enum class End { AnyOf, Sequence };

  std::size_t capacity = 0;
  std::size_t minLength = 0;
  Bytes end = {};
  End match = End::AnyOf;
};

using ReadStyle = std::variant<StartByteRead, HuntingRead, LengthRead, TerminatorRead>;

/// The longest frame of any style.
inline constexpr std::size_t kMaxFrame = 300;
