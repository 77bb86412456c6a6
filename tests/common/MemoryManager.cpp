#include "MemoryManager.h"

#include <cstring>

namespace fixture {

bool MemoryManager::AllocMemory(void** memory, unsigned long bytes) {
  constexpr int kJunk = 0xA5;
  const bool fails = failing_ || allocations_ == failAt_;
  ++allocations_;
  if (fails || !Memory::AllocMemory(memory, bytes)) return false;
  std::memset(*memory, kJunk, bytes);
  return true;
}

}  // namespace fixture
