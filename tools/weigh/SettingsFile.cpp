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
  return {.id = std::to_string(xml.GetAttrValueInt("fNum")),
          .model = xml.GetAttrValueInt("fType"),
          .network = network,
          .port = port.getUtf8(),
          .rate = xml.GetAttrValueInt(network ? "fTCPPort" : "fComBaudRate")};
}

}  // namespace

std::string SettingsEntry::line() const {
  return port + (network ? ":" : " ") + std::to_string(rate);
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
