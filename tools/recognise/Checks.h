#pragma once

#include <cstddef>

#include "FrameSearch.h"

namespace recognise {

/// How much a good frame proves.
struct Checks {
  std::size_t size = 0;
  /// Bytes that stand as the protocol wants them. All bytes of a frame with a checksum are such.
  std::size_t guarded = 0;
  /// Bytes that the reading depends on, the guarded ones among them. A frame of another protocol
  /// that passes by chance leaves most of its bytes unused.
  std::size_t used = 0;
};

/// For frames that are taken only.
Checks checksOf(const ProtocolSheet& sheet, Frame frame);

}  // namespace recognise
