#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Roots.h"

namespace devices {

/// A process that has a device open.
struct Holder {
  pid_t pid = 0;
  std::string name;
};

struct Holders {
  std::vector<Holder> processes;
  /// False if there are processes that this user may not look into.
  bool complete = true;
};

/// Who has a device open, this process aside. The program behind a pseudo-terminal, which plays
/// the scale there, isn't among them: it is the other end of the line.
Holders holdersOf(const std::filesystem::path& device, const Roots& roots = {});

}  // namespace devices
