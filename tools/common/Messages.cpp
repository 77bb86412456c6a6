#include "Messages.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

constexpr unsigned char kRussianCatalogue[] = {
#include "ru.mo.inc"
};
constexpr unsigned char kUkrainianCatalogue[] = {
#include "uk.mo.inc"
};

/// A compiled catalogue as msgfmt writes it: a head of seven 32-bit numbers, then tables of length
/// and offset of the originals, which are sorted, and of their translations.
class Catalogue {
 public:
  template <std::size_t size>
  explicit constexpr Catalogue(const unsigned char (&data)[size]) : data_(data) {}

  /// Empty where there is none. The plural forms of a message are apart by zeros.
  std::string_view find(std::string_view key) const {
    constexpr std::uint32_t kCount = 2;
    constexpr std::uint32_t kOriginals = 3;
    constexpr std::uint32_t kTranslations = 4;
    std::uint32_t low = 0;
    std::uint32_t high = number(kCount * 4);
    while (low < high) {
      const std::uint32_t middle = (low + high) / 2;
      // Behind a zero stands the English plural.
      std::string_view original = text(number(kOriginals * 4), middle);
      original = original.substr(0, original.find('\0'));
      if (original == key) return text(number(kTranslations * 4), middle);
      (original < key ? low : high) = original < key ? middle + 1 : middle;
    }
    return {};
  }

 private:
  std::uint32_t number(std::size_t offset) const {
    std::uint32_t value = 0;
    std::memcpy(&value, data_ + offset, sizeof value);
    return value;
  }
  std::string_view text(std::uint32_t table, std::uint32_t row) const {
    constexpr std::uint32_t kRowSize = 8;
    const std::size_t at = table + std::size_t{row} * kRowSize;
    return {reinterpret_cast<const char*>(data_) + number(at + 4), number(at)};
  }

  const unsigned char* data_;
};

const Catalogue* catalogue() {
  static constexpr Catalogue kRussian(kRussianCatalogue);
  static constexpr Catalogue kUkrainian(kUkrainianCatalogue);
  switch (currentLanguage()) {
    case Language::Russian: return &kRussian;
    case Language::Ukrainian: return &kUkrainian;
    case Language::English: break;
  }
  return nullptr;
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
  const Catalogue* texts = catalogue();
  if (texts == nullptr || english.empty()) return english;
  std::string key(context);
  if (!context.empty()) key += kContextEnd;
  const std::string_view found = texts->find(key.append(english));
  return found.empty() ? english : found;
}

std::string_view messages::form(std::string_view one, std::string_view many, std::int64_t count) {
  const Catalogue* texts = catalogue();
  std::string_view forms = texts == nullptr ? std::string_view() : texts->find(one);
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
