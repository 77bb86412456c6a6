#pragma once

#include "Messages.h"

/// One message in two languages, for tables that aren't in the catalogues yet.
struct Text {
  const char* english;
  const char* russian;
};

inline const char* say(const Text& text) {
  return currentLanguage() == Language::English ? text.english : text.russian;
}
