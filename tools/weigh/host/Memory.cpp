#include "Memory.h"

#include <cstdlib>

namespace host {

Memory::~Memory() {
  for (void* block : blocks_) std::free(block);
}

bool Memory::AllocMemory(void** memory, unsigned long bytes) {
  if (memory == nullptr) return false;
  void* block = std::malloc(bytes == 0 ? 1 : bytes);
  if (block == nullptr) return false;
  blocks_.insert(block);
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

}  // namespace host
