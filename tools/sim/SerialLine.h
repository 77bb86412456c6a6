#pragma once

#include <span>

#include "ScaleModel.h"

namespace sim {

/// How one end of a serial line is set.
struct LineEnd {
  int bitsPerSecond = 0;
  Framing settings = {};
};

/// What a receiver makes of bytes without gaps between them: the bytes themselves where both ends
/// are set alike, otherwise what it finds by taking the level of the line in the middle of what it
/// holds for bits. Such a receiver is `strict` if it drops bytes with a wrong parity or stop bit,
/// as scales do; hosts take all.
enum class Receiver { Strict, TakesAll };
Bytes received(std::span<const std::uint8_t> bytes, const LineEnd& sender, const LineEnd& receiver,
               Receiver manner);

}  // namespace sim
