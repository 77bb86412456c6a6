#include "SettingsFile.h"

#include "Failure.h"
#include "Texts.h"

namespace weigh {

namespace fs = std::filesystem;

std::string lineOf(const SettingsEntry& entry) {
  return entry.port() + (entry.isSerial() ? " " : ":") + std::to_string(entry.rate());
}

Connection connectionOf(const SettingsEntry& entry) {
  Connection connection;
  connection.model = entry.model;
  connection.network = !entry.isSerial();
  (connection.network ? connection.host : connection.device) = entry.port();
  (connection.network ? connection.tcpPort : connection.baud) = entry.rate();
  connection.leave = entry.leaveConnection != 0;
  connection.coeff = entry.coefficient;
  return connection;
}

fs::path settingsFileOf(const fs::path& folder) { return folder / kSettingsFile; }

std::vector<SettingsEntry> readSettings(const fs::path& folder) {
  const fs::path file = settingsFileOf(folder);
  std::error_code error;
  if (!fs::exists(file, error)) {
    throw Failure(kWrongUsage, fill(text::kNoSettings, {file.string()}),
                  say(text::kNoSettingsRemedy));
  }
  // By the component's own reader, so that both see the same in a damaged document.
  const auto all = ::readSettings(file);
  if (!all) {
    throw Failure(kWrongUsage, fill(text::kBadSettings, {file.string()}),
                  say(text::kEmptySettingsRemedy));
  }
  std::vector<SettingsEntry> entries;
  for (const SettingsEntry& entry : *all) {
    std::erase_if(entries,
                  [&](const SettingsEntry& other) { return other.number == entry.number; });
    entries.push_back(entry);
  }
  if (entries.empty()) {
    throw Failure(kWrongUsage, fill(text::kEmptySettings, {file.string()}),
                  say(text::kEmptySettingsRemedy));
  }
  return entries;
}

}  // namespace weigh
