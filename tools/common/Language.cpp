#include "Language.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

constexpr std::array<const char*, 3> kVariables = {"LC_ALL", "LC_MESSAGES", "LANG"};
constexpr std::array<std::string_view, 3> kRussianLocales = {"ru", "uk", "be"};

Language& current() {
  static Language language = languageFromEnvironment();
  return language;
}

}  // namespace

Language languageFromEnvironment() {
  for (const char* variable : kVariables) {
    const char* value = std::getenv(variable);
    if (value == nullptr || *value == 0) continue;
    const std::string_view locale = value;
    const bool russian =
        std::any_of(kRussianLocales.begin(), kRussianLocales.end(), [&](std::string_view prefix) {
          return locale.starts_with(prefix) &&
                 (locale.size() == prefix.size() || locale[prefix.size()] == '_');
        });
    return russian ? Language::Russian : Language::English;
  }
  return Language::English;
}

void useLanguage(Language language) { current() = language; }

Language currentLanguage() { return current(); }

bool languageByName(std::string_view name, Language& language) {
  if (name != "en" && name != "ru") return false;
  language = name == "ru" ? Language::Russian : Language::English;
  return true;
}

const char* say(const Text& text) {
  return currentLanguage() == Language::Russian ? text.russian : text.english;
}
