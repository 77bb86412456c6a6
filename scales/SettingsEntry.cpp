#include "SettingsEntry.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <new>

#include "CkMemory.h"
#include "CkString.h"
#include "CkXml.h"
#include "WholeText.h"

namespace {

struct NumberAttribute {
  const char* name;
  std::int32_t SettingsEntry::*field;
};
constexpr std::array<NumberAttribute, 6> kNumbers = {
    {{"fNum", &SettingsEntry::number},
     {"fType", &SettingsEntry::model},
     {"fIsComPort", &SettingsEntry::isComPort},
     {"fComBaudRate", &SettingsEntry::baudRate},
     {"fTCPPort", &SettingsEntry::tcpPort},
     {"fLeaveConnect", &SettingsEntry::leaveConnection}}};

struct TextAttribute {
  const char* name;
  std::string SettingsEntry::*field;
};
constexpr std::array<TextAttribute, 3> kTexts = {{{"fComPortName", &SettingsEntry::comPortName},
                                                  {"fHost", &SettingsEntry::host},
                                                  {"fCoeff", &SettingsEntry::coefficient}}};

std::string tagOf(std::size_t index) { return "SCALES" + std::to_string(index); }

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&': result += "&amp;"; break;
      case '<': result += "&lt;"; break;
      case '"': result += "&quot;"; break;
      default: result += c;
    }
  }
  return result;
}

/// A file with bytes in it that may be read.
bool hasContent(const std::string& path) {
  struct stat facts = {};
  return ::stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) && facts.st_size > 0 &&
         ::access(path.c_str(), R_OK) == 0;
}

}  // namespace

std::optional<std::vector<SettingsEntry>> readSettings(const std::string& path) {
  const std::uint32_t shortages = ckMemoryShortages();
  CkXml xml;
  xml.put_Utf8(true);
  if (!xml.LoadXmlFile(path.c_str())) {
    // Of a file that is there the reader makes a document, whatever is in it.
    if (hasContent(path)) throw std::bad_alloc();
    return std::nullopt;
  }
  std::vector<SettingsEntry> entries;
  for (std::size_t i = 0; i < kMostSettingsEntries; ++i) {
    xml.GetRoot2();
    if (!xml.FindChild2(tagOf(i).c_str())) continue;
    SettingsEntry& entry = entries.emplace_back();
    for (const auto& [name, field] : kNumbers) entry.*field = xml.GetAttrValueInt(name);
    for (const auto& [name, field] : kTexts) {
      CkString text;
      xml.GetAttrValue(name, text);
      entry.*field = utf8Of(text);
    }
  }
  // A document ends where memory did, an attribute that couldn't be asked for reads as missing:
  // what was read then isn't taken for the whole, even if there is memory again.
  if (ckMemoryShortages() != shortages) throw std::bad_alloc();
  return entries;
}

std::string settingsDocument(std::string_view root, std::span<const SettingsEntry> entries) {
  std::string document = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  document.append("<").append(root).append(">\n");
  for (std::size_t i = 0; i < entries.size(); ++i) {
    document.append("  <").append(tagOf(i));
    const auto add = [&](const char* name, const std::string& value) {
      document.append(" ").append(name).append("=\"").append(value).append("\"");
    };
    for (const auto& [name, field] : kNumbers) add(name, std::to_string(entries[i].*field));
    for (const auto& [name, field] : kTexts) add(name, escaped(entries[i].*field));
    document.append("/>\n");
  }
  return document.append("</").append(root).append(">\n");
}
