#pragma once

#include <vector>

#include "PublicApi.h"

/// An owned block of bytes.
class ORBELO_PUBLIC CkByteData {
 public:
  void clear();
  /// Number of bytes.
  unsigned long getSize() const;
  /// The bytes, valid until the next write; never null, also when the block is empty.
  const unsigned char* getBytes() const;
  /// Adds `n` bytes from `p`. A null `p` adds nothing.
  void append2(const void* p, unsigned long n);

 private:
  std::vector<unsigned char> bytes_;
};
