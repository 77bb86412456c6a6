#pragma once

#include <vector>

#include "FrameSearch.h"

namespace recognise {

/// Why a driver refused what it read.
struct Refusal {
  enum class Reason {
    /// Nothing was read.
    Silence,
    /// The bytes ended before the frame did.
    TooShort,
    /// The terminator is missing.
    NoEnd,
    /// Those of `wrong` aren't as the protocol wants them.
    WrongBytes,
    /// The checksum, the one byte of `wrong`, doesn't agree.
    Checksum,
  };
  struct WrongByte {
    /// From 0.
    std::size_t position;
    std::uint8_t is;
    /// What the protocol would take there.
    std::vector<std::uint8_t> wanted;
  };

  Reason reason = Reason::Silence;
  /// Bytes that there are, and that a frame has; for a terminator the fewest.
  std::size_t size = 0;
  std::size_t wantedSize = 0;
  std::vector<WrongByte> wrong;
};

/// For bytes that a driver has read as a frame, its start byte found, and refused.
Refusal refusalOf(const ProtocolSheet& sheet, Frame frame);

}  // namespace recognise
