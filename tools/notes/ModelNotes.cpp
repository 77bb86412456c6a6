#include "ModelNotes.h"

#include <algorithm>
#include <string_view>

#include <nlohmann/json.hpp>

#include "Messages.h"
#include "Models.h"
#include "Text.h"

namespace notes {

namespace {

using Json = nlohmann::json;

constexpr unsigned char kFile[] = {
#include "ModelNotes.inc"
};

/// Empty for a model of which no paper was found.
const Json& notesOf(int model) {
  static const Json kNotes = Json::parse(std::begin(kFile), std::end(kFile));
  static const Json kNone = Json::object();
  for (const Json& entry : kNotes.at("models")) {
    if (entry.at("model") == model) return entry;
  }
  return kNone;
}

std::string inThisLanguage(const Json& text) {
  return std::string(translated(text.get_ref<const std::string&>()));
}

/// Empty where the entry has none.
std::string textOf(const Json& entry, const char* name) {
  return entry.contains(name) ? inThisLanguage(entry[name]) : "";
}

const Json& listOf(const Json& entry, const char* name) {
  static const Json kNone = Json::array();
  return entry.contains(name) ? entry[name] : kNone;
}

/// One place of a pattern: two hexadecimal digits, of which '?' is any; "20|2D" is either.
bool fits(std::uint8_t byte, std::string_view place) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto same = [](char digit, unsigned nibble) {
    return digit == '?' || digit == kDigits[nibble];
  };
  return std::ranges::any_of(partsOf(place, '|'), [&](std::string_view digits) {
    return same(digits[0], byte >> 4U) && same(digits[1], byte & 0x0FU);
  });
}

/// Whether the bytes hold the pattern somewhere.
bool holds(std::span<const std::uint8_t> bytes, std::string_view pattern) {
  const std::vector<std::string_view> places = partsOf(pattern, ' ');
  return std::search(bytes.begin(), bytes.end(), places.begin(), places.end(), fits) != bytes.end();
}

/// The first entry of a list of the model's whose pattern the bytes hold; null for none.
const Json* entryThatFits(int model, const char* list, std::span<const std::uint8_t> bytes) {
  for (const Json& entry : listOf(notesOf(model), list)) {
    if (entry.contains("pattern") && holds(bytes, entry["pattern"].get_ref<const std::string&>()))
      return &entry;
  }
  return nullptr;
}

std::string certaintyText(const Json& sure) {
  if (sure == "own") return say("the manual of this very series");
  if (sure == "sister") return say("the manual of a sister");
  return say("only the frame fits; nothing proves that it is this scale");
}

std::string unitText(const ProtocolSheet& sheet) {
  switch (sheet.weightUnit) {
    case WeightUnit::Kilogram:
      return say(
          "The number of the display, in kilograms if that is what it shows: coefficient 1.");
    case WeightUnit::Gram: return say("Grams: coefficient 0.001 for kilograms.");
    case WeightUnit::AsShown: break;
  }
  return say(
      "The digits of the display without their point: find the coefficient by a known weight.");
}

/// What an answer of this protocol says nothing of, or nothing that the driver looks at.
std::string untoldText(const ProtocolSheet& sheet) {
  std::vector<std::string> untold;
  if (sheet.motion.told != Motion::Told::ByFrame) untold.push_back(say("whether the weight moves"));
  if (!showsOverload(sheet)) untold.push_back(say("an overload"));
  untold.push_back(say("the unit"));
  return joined(untold);
}

/// As delivered, with the other speeds; where that isn't known, with those that can be set.
std::string lineText(const Json& notes) {
  std::string text = textOf(notes, "line");
  const Json& delivered = listOf(notes, "baud");
  const Json& known = delivered.empty() ? listOf(notes, "bauds") : delivered;
  const auto bauds = known.get<std::vector<int>>();
  if (bauds.empty()) return text.empty() ? say("not known; try 9600, 4800 and 2400 baud") : text;
  if (!text.empty()) text += ", ";
  if (delivered.empty()) return text + say("one of {0} baud", joined(bauds));
  text += say("{0} baud", bauds.front());
  return bauds.size() == 1 ? text : text + say(" (also {0})", joined(std::span(bauds).subspan(1)));
}

/// "- Cable: ..."
void addRow(std::string& page, const std::string& name, const std::string& text) {
  page += fmt::format("- **{}**: {}\n", name, text);
}

}  // namespace

std::vector<std::string> settingsOf(int model) {
  std::vector<std::string> settings;
  for (const Json& setting : listOf(notesOf(model), "set"))
    settings.push_back(inThisLanguage(setting));
  return settings;
}

std::optional<OtherFormat> otherFormatIn(int model, std::span<const std::uint8_t> bytes) {
  const Json* format = entryThatFits(model, "formats", bytes);
  if (format == nullptr) return std::nullopt;
  return OtherFormat{textOf(*format, "name"), textOf(*format, "way_out")};
}

std::optional<WrongSetting> misreadingIn(int model, std::span<const std::uint8_t> bytes) {
  const Json* wrong = entryThatFits(model, "wrong", bytes);
  if (wrong == nullptr) return std::nullopt;
  return WrongSetting{textOf(*wrong, "sign"), textOf(*wrong, "cause"), textOf(*wrong, "way_out")};
}

std::string pageOf(const ScalesModel& model, int headingLevel) {
  std::string page = fmt::format("{:#<{}} {}\n\n", "", headingLevel, model.pageText());
  if (model.sheet == nullptr)
    return page + say("This model needs no scale, or has no driver.") + "\n";
  const ProtocolSheet& sheet = *model.sheet;
  const Json& notes = notesOf(model.number);
  const bool known = !notes.empty();
  const std::string cable = textOf(notes, "cable");
  const std::string unit = textOf(notes, "unit");
  addRow(page, say("The driver's line"), sheet.line.text());
  addRow(page, say("As delivered"),
         known ? lineText(notes)
               : say("no paper of this scale was found; `weigh find` tries the speeds"));
  if (known) addRow(page, say("Cable"), cable.empty() ? say("no paper says") : cable);
  addRow(page, say("Weight"), unitText(sheet) + (unit.empty() ? "" : " " + unit));
  addRow(page, say("Not told by this protocol"), untoldText(sheet));
  if (!known) return page;
  addRow(page, say("Known from"),
         fmt::format("{} ({})", textOf(notes, "paper"), certaintyText(notes["sure"])));
  page += "\n" + say("On the scale:") + "\n\n";
  const std::vector<std::string> settings = settingsOf(model.number);
  if (settings.empty()) page += say("No paper says what to set.") + "\n";
  for (std::size_t i = 0; i < settings.size(); ++i)
    page += fmt::format("{}. {}\n", i + 1, settings[i]);
  const Json& wrong = listOf(notes, "wrong");
  if (!wrong.empty()) page += "\n" + say("When something is wrong:") + "\n\n";
  for (const Json& row : wrong) {
    page += fmt::format("- {} {} *{}*\n", textOf(row, "sign"), textOf(row, "cause"),
                        textOf(row, "way_out"));
  }
  return page;
}

}  // namespace notes
