#pragma once

#include <cstring>

#include "Memory.h"

namespace fixture {

/// The platform's memory that can run out.
class MemoryManager final : public host::Memory {
 public:
  /// A block's content is whatever a platform may leave in it.
  bool AllocMemory(void** memory, unsigned long bytes) override {
    constexpr int kJunk = 0xA5;
    const bool fails = failing_ || allocations_ == failAt_;
    ++allocations_;
    if (fails || !Memory::AllocMemory(memory, bytes)) return false;
    std::memset(*memory, kJunk, bytes);
    return true;
  }

  /// The n-th allocation from now on (the next one is 0) fails, and no other.
  void failAt(int n) { failAt_ = allocations_ + n; }
  void failAlways() { failing_ = true; }

  /// Requests so far, failed ones included.
  int allocations() const { return allocations_; }

 private:
  static constexpr int kNever = -1;

  int allocations_ = 0;
  int failAt_ = kNever;
  bool failing_ = false;
};

}  // namespace fixture
