#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "SettingsEntry.h"

/// The settings.xml of a simulation in its folder, removed at the end.
class SettingsFile {
 public:
  /// Throws std::runtime_error if the folder holds a settings file of somebody else, more scales
  /// are given than the component reads, or writing fails.
  SettingsFile(const std::filesystem::path& folder, const std::vector<SettingsEntry>& entries);
  ~SettingsFile();
  SettingsFile(const SettingsFile&) = delete;
  SettingsFile& operator=(const SettingsFile&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};
