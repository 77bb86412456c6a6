#pragma once

#include <cstddef>
#include <cstdlib>
#include <unordered_map>

#include "Platform.h"

namespace host {

/// The platform's memory, with an account of every block. It must outlive the component that it
/// is given to. Used by one thread.
class Memory : public IMemoryManager {
 public:
  Memory() = default;
  /// Frees what nobody did.
  ~Memory() override {
    for (const auto& [block, size] : blocks_) std::free(const_cast<void*>(block));
  }
  Memory(const Memory&) = delete;
  Memory& operator=(const Memory&) = delete;

  bool AllocMemory(void** memory, unsigned long bytes) override {
    if (memory == nullptr) return false;
    void* block = std::malloc(bytes == 0 ? 1 : bytes);
    if (block == nullptr) return false;
    blocks_.emplace(block, bytes);
    *memory = block;
    return true;
  }
  void FreeMemory(void** memory) override {
    if (memory == nullptr || *memory == nullptr) return;
    if (blocks_.erase(*memory) == 0) {
      ++foreignFrees_;
      return;
    }
    std::free(*memory);
    *memory = nullptr;
  }

  /// Blocks that were handed out and not freed yet.
  std::size_t live() const { return blocks_.size(); }
  /// Bytes of a block that is live; 0 for any other pointer.
  std::size_t sizeOf(const void* memory) const {
    const auto found = blocks_.find(memory);
    return found == blocks_.end() ? 0 : found->second;
  }
  /// Attempts to free what this manager never gave, or gave and took back already.
  std::size_t foreignFrees() const { return foreignFrees_; }

 private:
  std::unordered_map<const void*, std::size_t> blocks_;
  std::size_t foreignFrees_ = 0;
};

}  // namespace host
