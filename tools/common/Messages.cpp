#include "Messages.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <span>
#include <unordered_map>
#include <utility>

namespace {

constexpr unsigned char kRussianCatalogue[] = {
#include "ru.mo.inc"
};
constexpr unsigned char kUkrainianCatalogue[] = {
#include "uk.mo.inc"
};

/// Translations by their originals. The plural forms of a message are apart by zeros.
using Catalogue = std::unordered_map<std::string_view, std::string_view>;

/// Reads what msgfmt wrote: a head of 32-bit numbers, and tables of length and offset of the
/// originals and of their translations.
Catalogue catalogueIn(std::span<const unsigned char> file) {
  const auto number = [&](std::size_t offset) {
    std::uint32_t value = 0;
    std::memcpy(&value, file.data() + offset, sizeof value);
    return std::size_t{value};
  };
  const auto text = [&](std::size_t row) -> std::string_view {
    return {reinterpret_cast<const char*>(file.data()) + number(row + 4), number(row)};
  };
  constexpr std::size_t kCount = 8;
  constexpr std::size_t kOriginals = 12;
  constexpr std::size_t kTranslations = 16;
  constexpr std::size_t kRowSize = 8;
  Catalogue catalogue;
  for (std::size_t row = 0; row < number(kCount) * kRowSize; row += kRowSize) {
    // Behind a zero stands the English plural.
    const std::string_view original = text(number(kOriginals) + row);
    catalogue.emplace(original.substr(0, original.find('\0')), text(number(kTranslations) + row));
  }
  return catalogue;
}

/// In the current language; empty where there is none, as always in English.
std::string_view find(std::string_view original) {
  static const std::array<Catalogue, 3> kCatalogues = {Catalogue(), catalogueIn(kRussianCatalogue),
                                                       catalogueIn(kUkrainianCatalogue)};
  const Catalogue& catalogue = kCatalogues.at(static_cast<std::size_t>(currentLanguage()));
  const auto found = catalogue.find(original);
  return found == catalogue.end() ? std::string_view() : found->second;
}

Language languageFromEnvironment() {
  static constexpr std::array<const char*, 3> kVariables = {"LC_ALL", "LC_MESSAGES", "LANG"};
  static constexpr std::array<std::pair<std::string_view, Language>, 3> kLocales = {
      {{"uk", Language::Ukrainian}, {"ru", Language::Russian}, {"be", Language::Russian}}};
  for (const char* variable : kVariables) {
    const char* value = std::getenv(variable);
    if (value == nullptr || *value == 0) continue;
    // "uk", "uk_UA.UTF-8", "uk.UTF-8"
    const std::string_view locale(value, std::strcspn(value, "_.@"));
    const auto found = std::ranges::find(kLocales, locale, &decltype(kLocales)::value_type::first);
    return found == kLocales.end() ? Language::English : found->second;
  }
  return Language::English;
}

Language& current() {
  static Language language = languageFromEnvironment();
  return language;
}

/// Which of its three forms a number takes in Russian and in Ukrainian alike.
std::size_t slavicForm(std::uint64_t count) {
  const std::uint64_t last = count % 10;
  const bool teens = count % 100 / 10 == 1;
  if (last == 1 && !teens) return 0;
  return last >= 2 && last <= 4 && !teens ? 1 : 2;
}

}  // namespace

bool languageByName(std::string_view name, Language& language) {
  static constexpr std::array<std::string_view, 3> kNames = {"en", "ru", "uk"};
  const auto found = std::ranges::find(kNames, name);
  if (found == kNames.end()) return false;
  language = static_cast<Language>(found - kNames.begin());
  return true;
}

void useLanguage(Language language) { current() = language; }

Language currentLanguage() { return current(); }

std::string_view translated(std::string_view english, std::string_view context) {
  constexpr char kContextEnd = '\4';
  // By no text at all a catalogue has its own head.
  if (english.empty()) return english;
  std::string key(context);
  if (!context.empty()) key += kContextEnd;
  const std::string_view found = find(key.append(english));
  return found.empty() ? english : found;
}

std::string_view messages::form(std::string_view one, std::string_view many, std::int64_t count) {
  std::string_view forms = find(one);
  if (forms.empty()) return count == 1 ? one : many;
  for (std::size_t skip = slavicForm(static_cast<std::uint64_t>(std::abs(count))); skip > 0; --skip)
    forms.remove_prefix(std::min(forms.find('\0'), forms.size() - 1) + 1);
  return forms.substr(0, forms.find('\0'));
}

std::string messages::fill(std::string_view pattern, std::string_view english,
                           fmt::format_args values) {
  try {
    return fmt::vformat(pattern, values);
  } catch (const fmt::format_error&) {
    // A translation that doesn't fit is no reason to say nothing.
    return fmt::vformat(english, values);
  }
}
