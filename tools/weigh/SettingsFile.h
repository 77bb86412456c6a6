#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Options.h"

namespace weigh {

/// What a settings file says of one scale, as far as the tool shows it.
struct SettingsEntry {
  std::string id;
  int model;
  bool network;
  /// Device path or host.
  std::string port;
  /// Line speed or TCP port.
  int rate;
  bool leave;
  /// As it stands in the file.
  std::string coeff;

  /// "/dev/ttyS0 9600", "192.168.0.200:20108".
  std::string line() const;
  /// The same as parameters.
  Connection connection() const;
};

std::filesystem::path settingsFileOf(const std::filesystem::path& folder);

/// The scales of a folder's settings file by ascending element number; of those with the same id
/// the last, which is the one that the component keeps. Throws Failure where there is no such
/// document.
std::vector<SettingsEntry> readSettings(const std::filesystem::path& folder);

}  // namespace weigh
