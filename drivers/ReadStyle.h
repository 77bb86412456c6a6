#pragma once

#include <cstddef>
#include <variant>

#include "ByteRow.h"

/// The longest that a driver waits for an answer.
inline constexpr int kLongestBudget_ms = 500;

/// What silence costs of a read's budget: the budget falls by the sleeps, not by the clock.
inline constexpr int kSilence_ms = 50;

/// Byte by byte up to a start byte, then the rest of the frame.
struct StartByteRead {
  enum class WrongByte {
    /// For a scale that is asked: 50 ms, and a sleep.
    CostsAsSilence,
    /// For a scale that transmits by itself, whose stream is hunted through: 1 ms and no sleep. A
    /// stream that never brings the right byte must end too.
    CostsOne_ms,
  };

  std::size_t length;
  ByteRow start;
  WrongByte wrongByte;
};

/// So many bytes, whatever they are.
struct LengthRead {
  std::size_t length;
  /// With the whole frame in, the reader asks on for nothing and sleeps until the budget is spent.
  bool asksOn = false;
};

/// Up to `capacity` bytes, until at least `minLength` have come and the end is there. A network
/// port gives all that is asked for or nothing, so over TCP only an answer of exactly `capacity`
/// bytes can come in.
struct TerminatorRead {
  enum class Match {
    /// Any of the end bytes stands last.
    AnyOf,
    /// All of them stand last.
    Sequence,
  };

  std::size_t capacity;
  std::size_t minLength;
  ByteRow end;
  Match match;
};

using ReadStyle = std::variant<StartByteRead, LengthRead, TerminatorRead>;

/// The longest frame of any style.
inline constexpr std::size_t kMaxFrame = 300;
