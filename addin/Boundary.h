#pragma once

#include "Cancellation.h"

/// Runs an operation of the boundary. Whatever it throws becomes `refused`, but for the end of a
/// cancelled thread, which nothing may stop.
template <typename Result, typename Operation>
Result guarded(Result refused, Operation operation) {
  return unlessThrown([&]() -> Result { return operation(); }, [&] { return refused; });
}
