#include "MemoryWatch.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

thread_local fixture::MemoryWatch t_watch;

/// What the allocator adds to a block.
constexpr std::size_t kOverhead = 16;
constexpr std::size_t kHeader = alignof(std::max_align_t);

void* take(std::size_t n) noexcept {
  if (!fixture::mayAllocate()) return nullptr;
  char* const block = static_cast<char*>(std::malloc(n + kHeader));
  if (block == nullptr) return nullptr;
  std::memcpy(block, &n, sizeof n);
  // Whoever looks for a secret looks at all of the block, written or not.
  if (!t_watch.secret.empty()) std::memset(block + kHeader, 0, n);
  ++t_watch.allocations;
  t_watch.inUse += n + kOverhead;
  t_watch.peak = std::max(t_watch.peak, t_watch.inUse);
  return block + kHeader;
}

void give(void* p) noexcept {
  if (p == nullptr) return;
  char* const block = static_cast<char*>(p) - kHeader;
  std::size_t n = 0;
  std::memcpy(&n, block, sizeof n);
  const std::string_view bytes(static_cast<const char*>(p), n);
  if (!t_watch.secret.empty() && bytes.find(t_watch.secret) != bytes.npos) ++t_watch.secretsFreed;
  t_watch.inUse -= n + kOverhead;
  std::free(block);
}

void* takeOrThrow(std::size_t n) {
  void* const p = take(n);
  if (p == nullptr) throw std::bad_alloc();
  return p;
}

}  // namespace

fixture::MemoryWatch& fixture::memoryWatch() { return t_watch; }

bool fixture::mayAllocate() {
  if (t_watch.left != 0) {
    if (t_watch.left > 0) --t_watch.left;
    return true;
  }
  ++t_watch.refused;
  if (t_watch.isPassing) t_watch.left = -1;
  return false;
}

void* operator new(std::size_t n) { return takeOrThrow(n); }
void* operator new[](std::size_t n) { return takeOrThrow(n); }
void* operator new(std::size_t n, const std::nothrow_t&) noexcept { return take(n); }
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept { return take(n); }
void operator delete(void* p) noexcept { give(p); }
void operator delete[](void* p) noexcept { give(p); }
void operator delete(void* p, std::size_t) noexcept { give(p); }
void operator delete[](void* p, std::size_t) noexcept { give(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { give(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { give(p); }
