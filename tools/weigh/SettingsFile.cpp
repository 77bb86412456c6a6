#include "SettingsFile.h"

#include <algorithm>

#include "CkString.h"
#include "CkXml.h"
#include "Failure.h"
#include "Texts.h"

namespace weigh {

namespace fs = std::filesystem;

namespace {

constexpr int kMaxEntries = 100;

SettingsEntry entryAt(CkXml& xml) {
  const bool network = xml.GetAttrValueInt("fIsComPort") == 0;
  CkString port;
  xml.GetAttrValue(network ? "fHost" : "fComPortName", port);
  CkString coeff;
  xml.GetAttrValue("fCoeff", coeff);
  return {.id = std::to_string(xml.GetAttrValueInt("fNum")),
          .model = xml.GetAttrValueInt("fType"),
          .network = network,
          .port = port.getUtf8(),
          .rate = xml.GetAttrValueInt(network ? "fTCPPort" : "fComBaudRate"),
          .leave = xml.GetAttrValueInt("fLeaveConnect") != 0,
          .coeff = coeff.getUtf8()};
}

}  // namespace

std::string SettingsEntry::line() const {
  return port + (network ? ":" : " ") + std::to_string(rate);
}

Connection SettingsEntry::connection() const {
  Connection connection;
  connection.model = model;
  connection.network = network;
  (network ? connection.host : connection.device) = port;
  (network ? connection.tcpPort : connection.baud) = rate;
  connection.leave = leave;
  connection.coeff = coeff;
  return connection;
}

fs::path settingsFileOf(const fs::path& folder) { return folder / "settings.xml"; }

std::vector<SettingsEntry> readSettings(const fs::path& folder) {
  const fs::path file = settingsFileOf(folder);
  std::error_code error;
  if (!fs::exists(file, error)) {
    throw Failure(kWrongUsage, fill(text::kNoSettings, {file.string()}),
                  say(text::kNoSettingsRemedy));
  }
  // By the component's own reader, so that both see the same in a damaged document.
  CkXml xml;
  xml.put_Utf8(true);
  if (!xml.LoadXmlFile(file.c_str())) {
    throw Failure(kWrongUsage, fill(text::kBadSettings, {file.string()}),
                  say(text::kEmptySettingsRemedy));
  }
  std::vector<SettingsEntry> entries;
  for (int i = 0; i < kMaxEntries; ++i) {
    xml.GetRoot2();
    if (!xml.FindChild2(("SCALES" + std::to_string(i)).c_str())) continue;
    SettingsEntry entry = entryAt(xml);
    std::erase_if(entries, [&](const SettingsEntry& other) { return other.id == entry.id; });
    entries.push_back(std::move(entry));
  }
  if (entries.empty()) {
    throw Failure(kWrongUsage, fill(text::kEmptySettings, {file.string()}),
                  say(text::kEmptySettingsRemedy));
  }
  return entries;
}

}  // namespace weigh
