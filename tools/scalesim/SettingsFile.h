#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// One scale of a settings file of the component.
struct SettingsEntry {
  /// Device id.
  int id;
  int model;
  /// Device path of a serial scale, host of a network scale.
  std::string port;
  /// 0 for a serial scale.
  int tcpPort;
};

/// The settings.xml of a simulation in its folder, removed at the end. The component reads scales
/// SCALES0 to SCALES99 from it.
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

/// Throws std::runtime_error if the folder holds a settings file that no simulation wrote.
void refuseForeignSettings(const std::filesystem::path& folder);
