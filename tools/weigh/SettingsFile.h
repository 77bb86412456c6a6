#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Options.h"
#include "SettingsEntry.h"

namespace weigh {

/// "/dev/ttyS0 9600", "192.168.0.200:20108".
std::string lineOf(const SettingsEntry& entry);
/// The same scale as parameters.
Connection connectionOf(const SettingsEntry& entry);

std::filesystem::path settingsFileOf(const std::filesystem::path& folder);

/// The scales of a folder's settings file by ascending element number; of those with the same id
/// the last, which is the one that the component keeps. Throws Failure where there is no such
/// document.
std::vector<SettingsEntry> readSettings(const std::filesystem::path& folder);

}  // namespace weigh
