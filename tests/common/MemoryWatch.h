#pragma once

#include <cstddef>
#include <string_view>

namespace fixture {

/// The memory of this thread: what it takes, what is freed with a secret in it, and a shortage.
struct MemoryWatch {
  int allocations = 0;
  /// Bytes in blocks that aren't freed yet, with what an allocator adds to each.
  std::size_t inUse = 0;
  std::size_t peak = 0;
  /// Allocations that still succeed; negative for all.
  int left = -1;
  /// Whether the shortage that follows is that of one block, and is over with it.
  bool isPassing = false;
  /// Allocations that found no memory.
  int refused = 0;
  /// Blocks that were freed with this text in them are counted, if it isn't empty.
  std::string_view secret = {};
  int secretsFreed = 0;
};

MemoryWatch& memoryWatch();

/// Counts an allocation of this thread; false if it finds no memory.
bool mayAllocate();

/// Lets so many allocations of this thread succeed, and no more while it lives; of a passing
/// shortage all but the next.
class MemoryShortage {
 public:
  explicit MemoryShortage(int allocations, bool isPassing = false) {
    memoryWatch().left = allocations;
    memoryWatch().isPassing = isPassing;
    memoryWatch().refused = 0;
  }
  ~MemoryShortage() { memoryWatch().left = -1; }
  MemoryShortage(const MemoryShortage&) = delete;
  MemoryShortage& operator=(const MemoryShortage&) = delete;

  bool isHit() const { return memoryWatch().refused != 0; }
};

}  // namespace fixture
