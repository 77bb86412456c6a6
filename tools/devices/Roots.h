#pragma once

#include <filesystem>

namespace devices {

/// Where the facts are read from: the system's own places, or a tree like them.
struct Roots {
  std::filesystem::path dev = "/dev";
  std::filesystem::path sys = "/sys";
  std::filesystem::path proc = "/proc";
};

}  // namespace devices
