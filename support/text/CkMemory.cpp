#include "CkMemory.h"

#include <atomic>
#include <cstring>
#include <new>

namespace {

std::atomic<std::uint32_t> g_shortages{0};

}  // namespace

CkBlock ckNewUnsignedChar(std::size_t n) noexcept {
  CkBlock block(new (std::nothrow) unsigned char[n]);
  if (block == nullptr) ckNoteMemoryShortage();
  return block;
}

std::uint32_t ckMemoryShortages() noexcept { return g_shortages.load(std::memory_order_relaxed); }

void ckNoteMemoryShortage() noexcept { g_shortages.fetch_add(1, std::memory_order_relaxed); }

void ckWipe(void* p, std::size_t n) noexcept {
  if (p != nullptr && n != 0) explicit_bzero(p, n);
}
