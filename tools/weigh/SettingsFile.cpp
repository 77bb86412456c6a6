#include "SettingsFile.h"

#include "SettingsEntry.h"
#include "Text.h"

namespace weigh {

namespace fs = std::filesystem;

namespace {

NamedScale named(const SettingsEntry& entry) {
  Connection connection;
  connection.model = entry.model;
  connection.network = !entry.isSerial();
  (connection.network ? connection.host : connection.device) = entry.port();
  (connection.network ? connection.tcpPort : connection.baud) = entry.rate();
  connection.leave = entry.leaveConnection != 0;
  connection.coeff = entry.coefficient;
  return {.id = entry.id(), .connection = connection};
}

}  // namespace

std::string NamedScale::line() const {
  return connection.network ? connection.address()
                            : fmt::format("{} {}", connection.device, connection.baud);
}

fs::path settingsFileOf(const fs::path& folder) { return folder / kSettingsFile; }

std::vector<NamedScale> scalesOf(const fs::path& folder) {
  const fs::path file = settingsFileOf(folder);
  const auto elements = [] {
    return say(
        "Scales are elements SCALES0 to SCALES99 under the root, each with its number in "
        "fNum.");
  };
  std::error_code error;
  if (!fs::exists(file, error)) {
    throw Failure(kWrongUsage, say("there is no {0}", file.string()),
                  say("Name the component's folder: the one whose settings.xml lists the scales."));
  }
  // By the component's own reader, so that both see the same in a damaged document.
  const auto entries = readSettings(file);
  if (!entries) throw Failure(kWrongUsage, say("{0} can't be read", file.string()), elements());
  std::vector<NamedScale> scales;
  for (const SettingsEntry& entry : *entries) {
    std::erase_if(scales, [&](const NamedScale& other) { return other.id == entry.id(); });
    scales.push_back(named(entry));
  }
  if (scales.empty())
    throw Failure(kWrongUsage, say("{0} names no scale", file.string()), elements());
  return scales;
}

void Complaints::add(const NamedScale& scale, const host::LastError& error) {
  Kind& kind = kinds_.try_emplace(error.code, Kind{error, scale.connection, {}}).first->second;
  if (!scale.id.empty()) kind.ids.push_back(scale.id);
}

ExitCode Complaints::conclude() const {
  for (const auto& [code, kind] : kinds_) {
    const std::string error = errorText(kind.error);
    complain(kind.ids.empty() ? error : say("{0} (scales {1})", error, joined(kind.ids)),
             remedyFor(code, kind.connection));
  }
  return kinds_.empty() ? kGood : kFailed;
}

}  // namespace weigh
