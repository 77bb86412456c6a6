#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

// What the tools say. English stands in the code, at the place where it is said; Russian and
// Ukrainian stand in po/, and scripts/messages keeps them in step. A comment that begins with
// "TRANSLATORS:", right above a message, goes along into the catalogues.
//
//     say("{0} can't be opened: {1}", path, why)
//     sayCount("{0} byte", "{0} bytes", size)
//
// Values are numbered, so that a translation may turn them round.

enum class Language { English, Russian, Ukrainian };

/// Takes "en", "ru" or "uk"; false for any other name.
bool languageByName(std::string_view name, Language& language);
/// The language of `say`; until it is set, the first of LC_ALL, LC_MESSAGES and LANG that isn't
/// empty decides: Ukrainian for uk, Russian for ru and be, English for all else.
void useLanguage(Language language);
Language currentLanguage();

/// The message as the current language has it, with its placeholders; English where the catalogue
/// lacks it. `context` tells messages apart that are the same in English.
std::string_view translated(std::string_view english, std::string_view context = {});

/// Marks a message of a table, to be translated where it is used.
constexpr const char* message(const char* english) { return english; }

namespace messages {
inline std::string_view textOf(fmt::string_view text) { return {text.data(), text.size()}; }
std::string fill(std::string_view pattern, std::string_view english, fmt::format_args values);
std::string_view form(std::string_view one, std::string_view many, std::int64_t count);
}  // namespace messages

/// The message in the current language, filled with the values; of a word that has several meanings
/// the one in that context.
template <typename... Values>
std::string sayIn(std::string_view context, fmt::format_string<Values...> english,
                  Values&&... values) {
  const std::string_view text = messages::textOf(english);
  return messages::fill(translated(text, context), text, fmt::make_format_args(values...));
}
template <typename... Values>
std::string say(fmt::format_string<Values...> english, Values&&... values) {
  return sayIn({}, english, std::forward<Values>(values)...);
}

/// The form that goes with the number, which is value {0}.
template <typename Count, typename... Values>
std::string sayCount(fmt::format_string<const Count&, Values...> one,
                     fmt::format_string<const Count&, Values...> many, const Count& count,
                     Values&&... values) {
  const std::string_view english = messages::textOf(many);
  const auto form =
      messages::form(messages::textOf(one), english, static_cast<std::int64_t>(count));
  return messages::fill(form, english, fmt::make_format_args(count, values...));
}
