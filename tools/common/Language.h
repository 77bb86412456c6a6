#pragma once

#include <string_view>

/// The languages that the tools speak.
enum class Language { English, Russian };

/// One message in every language, UTF-8. Each tool keeps its messages in a table of these, apart
/// from its logic.
struct Text {
  const char* english;
  const char* russian;
};

/// Russian for the Russian, Ukrainian and Belarusian locales of LC_ALL, LC_MESSAGES or LANG (the
/// first that is set decides), English otherwise.
Language languageFromEnvironment();

/// The language that `say` uses; `--lang` of a tool sets it, until then the environment does.
void useLanguage(Language language);
Language currentLanguage();

/// Takes "en" or "ru"; false for any other name.
bool languageByName(std::string_view name, Language& language);

/// The message in the current language.
const char* say(const Text& text);
