#include "RandomBytes.h"

#include <sys/random.h>

#include <algorithm>
#include <cstddef>

#include "DataBuffer.h"

bool appendRandomBytes(int n, DataBuffer& out) {
  if (n <= 0) return true;
  // The kernel hands out so many bytes in one piece, uninterrupted.
  constexpr std::size_t kPiece = 256;
  for (std::size_t left = static_cast<std::size_t>(n); left != 0;) {
    unsigned char piece[kPiece];
    const std::size_t wanted = std::min(left, kPiece);
    if (getrandom(piece, wanted, 0) != static_cast<ssize_t>(wanted)) return false;
    if (!out.append(piece, wanted)) return false;
    left -= wanted;
  }
  return true;
}
