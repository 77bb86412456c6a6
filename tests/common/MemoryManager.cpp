#include "MemoryManager.h"

#include <algorithm>
#include <utility>

namespace fixture {

bool MemoryManager::AllocMemory(void** memory, unsigned long bytes) {
  const bool fails = failing_ || allocations_ == failAt_;
  ++allocations_;
  if (fails) return false;
  // A block of exactly this size, so that the address sanitizer sees the first byte too far; its
  // content is whatever a platform may leave in it.
  std::unique_ptr<std::byte[]> block(new std::byte[bytes]);
  std::fill_n(block.get(), bytes, std::byte{0xA5});
  *memory = block.get();
  const void* key = block.get();
  blocks_.emplace(key, std::pair(std::move(block), bytes));
  return true;
}

void MemoryManager::FreeMemory(void** memory) {
  if (memory == nullptr || *memory == nullptr) return;
  if (blocks_.erase(*memory) == 0) ++wrongFrees_;
  *memory = nullptr;
}

std::size_t MemoryManager::sizeOf(const void* memory) const {
  const auto found = blocks_.find(memory);
  return found == blocks_.end() ? 0 : found->second.second;
}

}  // namespace fixture
