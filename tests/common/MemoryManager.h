#pragma once

#include <cstddef>
#include <map>
#include <memory>

#include "Platform.h"

namespace fixture {

/// The platform's memory: counts what it gives out, and can run out of it.
class MemoryManager final : public IMemoryManager {
 public:
  bool AllocMemory(void** memory, unsigned long bytes) override;
  void FreeMemory(void** memory) override;

  /// The n-th allocation from now on (the next one is 0) fails, and no other.
  void failAt(int n) { failAt_ = allocations_ + n; }
  void failAlways() { failing_ = true; }
  void recover() { failing_ = false, failAt_ = kNever; }

  /// Requests so far, failed ones included.
  int allocations() const { return allocations_; }
  /// Blocks that nobody has freed yet.
  std::size_t live() const { return blocks_.size(); }
  /// Blocks that were freed twice or never came from here.
  int wrongFrees() const { return wrongFrees_; }
  /// Size of a live block in bytes; 0 for any other pointer.
  std::size_t sizeOf(const void* memory) const;

 private:
  static constexpr int kNever = -1;

  std::map<const void*, std::pair<std::unique_ptr<std::byte[]>, std::size_t>> blocks_;
  int allocations_ = 0;
  int wrongFrees_ = 0;
  int failAt_ = kNever;
  bool failing_ = false;
};

}  // namespace fixture
