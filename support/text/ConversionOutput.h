#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "DataBuffer.h"

/// The end of a DataBuffer as a place where a conversion writes without checks: input is taken in
/// pieces, and each piece begins with room for the most that it can become. A loop says what its
/// characters grow to at most; what that comes to for a piece is worked out here alone.
class ConversionOutput {
 public:
  /// No character, and no run of bytes that is converted as one, becomes more than `written` bytes
  /// for each `read` bytes that it takes.
  struct Growth {
    std::size_t written;
    std::size_t read;
  };

  struct Piece {
    const unsigned char* stop;  ///< characters that begin before it belong to the piece
    unsigned char* to;          ///< where to write; null if there is no memory
  };

  /// Input is converted in pieces of this many bytes.
  static constexpr std::size_t kPiece = 32768;

  ConversionOutput(DataBuffer& out, const unsigned char* end, Growth growth)
      : out_(out), end_(end), growth_(growth) {}

  /// The piece that begins at `p`, which is before the end of the input.
  Piece begin(const unsigned char* p) {
    const std::size_t left = static_cast<std::size_t>(end_ - p);
    const std::size_t piece = std::min(left, kPiece);
    start_ = makeRoom(out_, mostOf(piece), mostOf(left));
    return {p + piece, start_};
  }

  /// Keeps what was written up to `end`, which closes the piece, at its stop or before.
  void keep(const unsigned char* end) {
    out_.addToSize(static_cast<std::uint32_t>(end - start_));
    start_ = nullptr;
  }

  /// The end of the buffer with room for `need` bytes behind it and, as far as that isn't much and
  /// memory isn't short, for `later` ones. Null if there is no memory. However often it is asked
  /// for more, bytes are moved a few times only.
  static unsigned char* makeRoom(DataBuffer& out, std::size_t need, std::size_t later) {
    constexpr std::size_t kMuch = std::size_t{64} << 20;
    constexpr std::size_t kMost = std::numeric_limits<std::uint32_t>::max();
    const std::size_t used = out.getSize();
    if (need > kMost - used) return nullptr;
    if (used + need > out.getBufSize()) {
      const std::size_t wanted = used + std::max({need, std::min(later, kMuch), used / 2});
      if (!out.ensureBuffer(static_cast<std::uint32_t>(std::min(wanted, kMost))) &&
          !out.ensureBuffer(static_cast<std::uint32_t>(used + need))) {
        return nullptr;
      }
    }
    return out.getData2() + used;
  }

 private:
  /// The last character of a piece may reach beyond its stop, and a store without a branch writes
  /// a byte too many.
  static constexpr std::size_t kLongestCharacter = 16;

  std::size_t mostOf(std::size_t n) const {
    return (n + growth_.read - 1) / growth_.read * growth_.written + kLongestCharacter;
  }

  DataBuffer& out_;
  const unsigned char* end_;
  Growth growth_;
  unsigned char* start_ = nullptr;
};
