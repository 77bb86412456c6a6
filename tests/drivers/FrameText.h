#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "ProtocolSheet.h"
#include "Wire.h"

using FrameBytes = fixture::Bytes;

/// Bytes from a text as it stands on a protocol sheet: bytes in hexadecimal and characters between
/// single quotes, "06 01 02 'S  1.250'". Blanks and bars between them only set apart. Throws
/// std::invalid_argument for anything else.
FrameBytes frameBytes(std::string_view text);

/// A frame in a heap block of just its length, so that the address sanitizer sees a read of the
/// first byte behind it.
class TightFrame {
 public:
  explicit TightFrame(Frame bytes);
  operator Frame() const { return {block_.get(), size_}; }

 private:
  std::size_t size_;
  std::unique_ptr<std::uint8_t[]> block_;
};
