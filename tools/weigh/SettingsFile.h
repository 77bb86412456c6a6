#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "Records.h"

namespace weigh {

/// A scale that is registered, or of which a settings file tells.
struct NamedScale {
  /// Its number in the settings file; empty for the one of the options.
  std::string id;
  Connection connection;

  /// "/dev/ttyS0 9600", "192.168.0.200:20108".
  std::string line() const;
};

std::filesystem::path settingsFileOf(const std::filesystem::path& folder);

/// The scales of a folder's settings file by ascending element number; of those with the same id
/// the last, which is the one that the component keeps. Throws Failure where there is no such
/// document.
std::vector<NamedScale> scalesOf(const std::filesystem::path& folder);

/// Errors of a kind are told once, with the scales that have them.
class Complaints {
 public:
  void add(const NamedScale& scale, const host::LastError& error);
  /// Tells them; the exit code.
  ExitCode conclude() const;

 private:
  struct Kind {
    host::LastError error;
    Connection connection;
    std::vector<std::string> ids;
  };
  std::map<std::uint32_t, Kind> kinds_;
};

}  // namespace weigh
