#pragma once

#include <cstddef>
#include <limits>
#include <unordered_set>

#include "Platform.h"

namespace host {

/// The platform's memory, with an account of every block. It must outlive the component that it
/// is given to. Used by one thread.
class Memory final : public IMemoryManager {
 public:
  Memory() = default;
  /// Frees what nobody did.
  ~Memory() override;
  Memory(const Memory&) = delete;
  Memory& operator=(const Memory&) = delete;

  bool AllocMemory(void** memory, unsigned long bytes) override;
  void FreeMemory(void** memory) override;

  /// Blocks that were handed out and not freed yet.
  std::size_t live() const { return blocks_.size(); }
  /// Blocks handed out in all.
  std::size_t allocations() const { return allocations_; }
  /// Attempts to free what this manager never gave, or gave and took back already.
  std::size_t foreignFrees() const { return foreignFrees_; }
  /// Gives `count` more blocks and fails from then on.
  void failAfter(std::size_t count) { left_ = count; }

 private:
  std::unordered_set<void*> blocks_;
  std::size_t allocations_ = 0;
  std::size_t foreignFrees_ = 0;
  std::size_t left_ = std::numeric_limits<std::size_t>::max();
};

}  // namespace host
