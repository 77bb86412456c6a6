#include "CkMemory.h"

#include <cstring>
#include <new>

CkBlock ckNewUnsignedChar(std::size_t n) noexcept {
  return CkBlock(new (std::nothrow) unsigned char[n]);
}

void ckWipe(void* p, std::size_t n) noexcept {
  if (p != nullptr && n != 0) explicit_bzero(p, n);
}
