#pragma once

#include <cstdint>

#include "DataBuffer.h"

/// Bytes that are added at the end and taken from the front, without moving the rest each time.
class DataBufferView {
 public:
  std::uint32_t getViewSize() const { return m_bytes.getSize() - m_taken; }
  bool append(const void* p, std::uint32_t n);
  /// Moves the first `n` bytes, or all there are, to the end of `out`. False, and nothing moved,
  /// if memory is short.
  bool takeFront(std::uint32_t n, DataBuffer& out);
  void clear();

 private:
  DataBuffer m_bytes;
  std::uint32_t m_taken = 0;
};
