#pragma once

#include <vector>

#include "FrameSearch.h"

namespace recognise {

/// Why a driver refused what it read, derived by asking its protocol again about changed frames.
struct Refusal {
  enum class Reason {
    /// Nothing was read.
    Silence,
    /// The bytes ended before the frame did.
    TooShort,
    /// The terminator is missing.
    NoEnd,
    /// The frame is good once the bytes of `wrong` are others.
    WrongBytes,
    /// Any byte may be the wrong one: the checksum doesn't agree.
    Checksum,
    /// More bytes are wrong than can be told.
    ManyBytes,
  };
  struct WrongByte {
    /// From 0.
    std::size_t position;
    std::uint8_t is;
    /// What the protocol would take there.
    std::vector<std::uint8_t> wanted;
  };

  Reason reason = Reason::ManyBytes;
  /// Bytes that there are, and that a frame has; for a terminator the fewest.
  std::size_t size = 0;
  std::size_t wantedSize = 0;
  std::vector<WrongByte> wrong;
};

/// For bytes that a driver has read as a frame, its start byte found, and `isGood` refused.
Refusal refusalOf(const ProtocolSheet& sheet, Frame frame);

/// What the bytes of a good frame are for.
struct FrameField {
  enum class Name { Weight, Price, Cost, Stable, Code };
  Name name;
  /// Positions from 0, ascending.
  std::vector<std::size_t> bytes;
};
/// The parts of the reading with the bytes that they depend on, found by changing them; parts that
/// no byte speaks of are left out. Under a checksum no byte can be changed alone: then weight and
/// stability stand without bytes.
std::vector<FrameField> fieldsOf(const ProtocolSheet& sheet, Frame frame);

}  // namespace recognise
