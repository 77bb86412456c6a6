#pragma once

#include <gtest/gtest.h>

#include "MemoryWatch.h"

namespace fixture {

/// Calls `use` with 0, 1, 2 ... allocations to let it have by a `MemoryShortage`, until they are
/// enough.
template <typename Use>
void withMoreAndMoreMemory(Use use) {
  constexpr int kMost = 1000;
  int allocations = 0;
  do use(allocations);
  while (memoryWatch().refused != 0 && ++allocations < kMost);
  EXPECT_GT(allocations, 0) << "memory was never short";
  EXPECT_LT(allocations, kMost) << "memory was never enough";
}

}  // namespace fixture
