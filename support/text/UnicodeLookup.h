#pragma once

#include <cstdint>

/// The code points of the 256 bytes of a code page. 0 means undefined, but for byte 0.
class UnicodeLookup {
 public:
  UnicodeLookup() = default;
  explicit UnicodeLookup(const std::uint16_t* codePoints) : codePoints_(codePoints) {}

  std::uint16_t operator[](unsigned char byte) const { return codePoints_[byte]; }
  static bool isDefined(unsigned char byte, std::uint16_t codePoint) {
    return codePoint != 0 || byte == 0;
  }

 private:
  const std::uint16_t* codePoints_ = nullptr;
};
