#pragma once

#include <span>
#include <string_view>

#include "Trial.h"

/// One way in which a scale or its line fails.
struct Fault {
  std::string_view name;
  /// Keeps a core busy, so that only few may run at a time.
  bool busy = false;
  /// Brings the fault about, polls while it lasts, and ends it. The matrix then polls once more
  /// and wants the right reading.
  void (*run)(Trial& trial) = nullptr;
};

std::span<const Fault> faultTable();
