#include "Memory.h"

#include <cstdlib>

namespace host {

Memory::~Memory() {
  for (const auto& [block, size] : blocks_) std::free(const_cast<void*>(block));
}

bool Memory::AllocMemory(void** memory, unsigned long bytes) {
  if (memory == nullptr) return false;
  void* block = std::malloc(bytes == 0 ? 1 : bytes);
  if (block == nullptr) return false;
  blocks_.emplace(block, bytes);
  *memory = block;
  return true;
}

void Memory::FreeMemory(void** memory) {
  if (memory == nullptr || *memory == nullptr) return;
  if (blocks_.erase(*memory) == 0) {
    ++foreignFrees_;
    return;
  }
  std::free(*memory);
  *memory = nullptr;
}

std::size_t Memory::sizeOf(const void* memory) const {
  const auto found = blocks_.find(memory);
  return found == blocks_.end() ? 0 : found->second;
}

}  // namespace host
