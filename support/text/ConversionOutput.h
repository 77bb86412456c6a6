#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "DataBuffer.h"

/// The end of a DataBuffer as a place to write to, for conversions that know how much a piece of
/// input can become at most. A piece is written without further checks and then kept.
class ConversionOutput {
 public:
  /// Input is converted in pieces of this many bytes.
  static constexpr std::size_t kPiece = 32768;

  explicit ConversionOutput(DataBuffer& out) : out_(out) {}

  /// Room for `need` bytes now and, as far as that isn't much, for `later` bytes in all. Null if
  /// there is no memory.
  unsigned char* reserve(std::size_t need, std::size_t later) {
    constexpr std::size_t kMuch = std::size_t{64} << 20;
    constexpr std::size_t kMost = std::numeric_limits<std::uint32_t>::max();
    const std::size_t used = out_.getSize();
    if (used + need > kMost) return nullptr;
    if (used + need > out_.getBufSize()) {
      const std::size_t wanted = used + std::max({need, std::min(later, kMuch), used / 2});
      if (!out_.ensureBuffer(static_cast<std::uint32_t>(std::min(wanted, kMost)))) {
        return nullptr;
      }
    }
    start_ = out_.getData2() + used;
    return start_;
  }

  /// Keeps what was written up to `end`.
  void keep(const unsigned char* end) {
    out_.addToSize(static_cast<std::uint32_t>(end - start_));
    start_ = nullptr;
  }

 private:
  DataBuffer& out_;
  unsigned char* start_ = nullptr;
};
