#include "ModelNotes.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include <nlohmann/json.hpp>

#include "Messages.h"

namespace notes {

namespace {

using Json = nlohmann::json;

constexpr unsigned char kFile[] = {
#include "ModelNotes.inc"
};

const Json* entryOf(int model) {
  static const Json kNotes = Json::parse(std::begin(kFile), std::end(kFile));
  for (const Json& entry : kNotes.at("models")) {
    if (entry.at("model") == model) return &entry;
  }
  return nullptr;
}

/// In the current language; empty where the entry has none.
std::string textOf(const Json& entry, const char* name) {
  const auto text = entry.find(name);
  if (text == entry.end()) return {};
  return std::string(translated(text->get_ref<const std::string&>()));
}

const Json& listOf(const Json& entry, const char* name) {
  static const Json kNone = Json::array();
  const auto list = entry.find(name);
  return list == entry.end() ? kNone : *list;
}

Certainty certaintyOf(const std::string& sure) {
  if (sure == "own") return Certainty::OwnManual;
  return sure == "sister" ? Certainty::SistersManual : Certainty::Inferred;
}

/// Two hexadecimal digits, of which '?' is any.
bool fits(std::string_view digits, std::uint8_t byte) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return (digits[0] == '?' || digits[0] == kDigits[byte >> 4]) &&
         (digits[1] == '?' || digits[1] == kDigits[byte & 0x0F]);
}

/// One place of a pattern: "20|2D" is either.
bool fitsAny(std::string_view place, std::uint8_t byte) {
  for (std::size_t at = 0; at + 2 <= place.size(); at += 3) {
    if (fits(place.substr(at, 2), byte)) return true;
  }
  return false;
}

/// Whether the bytes hold the pattern somewhere.
bool holds(std::span<const std::uint8_t> bytes, std::string_view pattern) {
  std::vector<std::string_view> places;
  while (!pattern.empty()) {
    const std::size_t size = std::min(pattern.find(' '), pattern.size());
    places.push_back(pattern.substr(0, size));
    pattern.remove_prefix(std::min(size + 1, pattern.size()));
  }
  const auto isThere = [](std::uint8_t byte, std::string_view place) {
    return fitsAny(place, byte);
  };
  return std::search(bytes.begin(), bytes.end(), places.begin(), places.end(), isThere) !=
         bytes.end();
}

/// The first entry of a list of the model's whose pattern the bytes hold; null for none.
const Json* entryThatFits(int model, const char* list, std::span<const std::uint8_t> bytes) {
  const Json* notes = entryOf(model);
  if (notes == nullptr) return nullptr;
  for (const Json& entry : listOf(*notes, list)) {
    const auto pattern = entry.find("pattern");
    if (pattern == entry.end()) continue;
    if (holds(bytes, pattern->get_ref<const std::string&>())) return &entry;
  }
  return nullptr;
}

WrongSetting wrongSettingOf(const Json& entry) {
  return {textOf(entry, "sign"), textOf(entry, "cause"), textOf(entry, "way_out")};
}

}  // namespace

std::optional<ModelNotes> notesOf(int model) {
  const Json* entry = entryOf(model);
  if (entry == nullptr) return std::nullopt;
  ModelNotes notes;
  notes.certainty = certaintyOf(entry->at("sure"));
  notes.paper = textOf(*entry, "paper");
  notes.line = textOf(*entry, "line");
  notes.cable = textOf(*entry, "cable");
  notes.unit = textOf(*entry, "unit");
  notes.deliveredFirst = entry->contains("baud");
  for (const Json& baud : listOf(*entry, notes.deliveredFirst ? "baud" : "bauds")) {
    notes.bauds.push_back(baud);
  }
  for (const Json& setting : listOf(*entry, "set")) {
    notes.settings.emplace_back(translated(setting.get_ref<const std::string&>()));
  }
  for (const Json& wrong : listOf(*entry, "wrong")) {
    notes.wrong.push_back(wrongSettingOf(wrong));
  }
  return notes;
}

std::optional<OtherFormat> otherFormatIn(int model, std::span<const std::uint8_t> bytes) {
  const Json* format = entryThatFits(model, "formats", bytes);
  if (format == nullptr) return std::nullopt;
  return OtherFormat{textOf(*format, "name"), textOf(*format, "way_out")};
}

std::optional<WrongSetting> misreadingIn(int model, std::span<const std::uint8_t> bytes) {
  const Json* wrong = entryThatFits(model, "wrong", bytes);
  if (wrong == nullptr) return std::nullopt;
  return wrongSettingOf(*wrong);
}

}  // namespace notes
