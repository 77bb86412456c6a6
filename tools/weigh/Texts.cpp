#include "Texts.h"

namespace weigh {

std::string fill(const Text& text, std::initializer_list<std::string> arguments) {
  const std::string pattern = say(text);
  std::string result;
  std::size_t at = 0;
  while (at < pattern.size()) {
    const bool placeholder =
        pattern[at] == '{' && at + 2 < pattern.size() && pattern[at + 2] == '}';
    if (!placeholder) {
      result += pattern[at++];
      continue;
    }
    const auto index = static_cast<std::size_t>(pattern[at + 1] - '0');
    if (index < arguments.size()) result += arguments.begin()[index];
    at += 3;
  }
  return result;
}

}  // namespace weigh
