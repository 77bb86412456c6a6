#include "Output.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <locale>

#include "Messages.h"

namespace {

const char* g_program = "";

/// --lang must be known before the first help text is made.
void settleLanguage(int argc, char** argv) {
  static constexpr std::string_view kOption = "--lang";
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    std::string_view name;
    if (argument == kOption && i + 1 < argc) name = argv[i + 1];
    if (argument.starts_with("--lang=")) name = argument.substr(kOption.size() + 1);
    if (Language language{}; languageByName(name, language)) useLanguage(language);
  }
}

/// Length of the UTF-8 character at the head that may be shown; 0 if none stands there.
std::size_t shownCharacter(std::string_view text) {
  using Utf8 = std::codecvt<char32_t, char8_t, std::mbstate_t>;
  static const Utf8& utf8 = std::use_facet<Utf8>(std::locale::classic());
  const auto* begin = reinterpret_cast<const char8_t*>(text.data());
  const char8_t* end = begin;
  std::mbstate_t state = {};
  char32_t c = 0;
  char32_t* next = nullptr;
  utf8.in(state, begin, begin + text.size(), end, &c, &c + 1, next);
  const bool control = (c < ' ' && c != '\n' && c != '\t') || (c >= 0x7F && c < 0xA0);
  const bool halfOfPair = c >= 0xD800 && c < 0xE000;
  return control || halfOfPair ? 0 : static_cast<std::size_t>(end - begin);
}

}  // namespace

std::string visible(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t size = shownCharacter(text);
    if (size == 0) result += fmt::format("\\x{:02X}", static_cast<unsigned char>(text[0]));
    result += text.substr(0, size);
    text.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return result;
}

ScreenSize screenSize(int descriptor) {
  winsize size = {};
  ScreenSize room;
  if (::ioctl(descriptor, TIOCGWINSZ, &size) != 0) return room;
  // Two are needed to show anything.
  if (size.ws_col >= 2) room.columns = size.ws_col;
  if (size.ws_row >= 2) room.rows = size.ws_row;
  return room;
}

void printRaw(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EPIPE) {
      throw Failure(kFailed, "");
    } else if (errno != EINTR) {
      throw Failure(kFailed, say("the output can't be written: {0}", std::strerror(errno)));
    }
  }
}

void print(std::string_view text) { printRaw(visible(text)); }

void tell(std::string_view line) { std::cerr << visible(line) << std::endl; }

void complain(std::string_view message, std::string_view remedy) {
  tell(fmt::format("{}: {}", g_program, message));
  if (!remedy.empty()) tell(std::string(std::strlen(g_program) + 2, ' ').append(remedy));
}

int runProgram(const char* name, int argc, char** argv, const std::function<ExitCode()>& body) {
  g_program = name;
  settleLanguage(argc, argv);
  // Whoever reads our output may leave before us; then a write fails.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return body();
  } catch (const Failure& failure) {
    if (*failure.what() != 0) complain(failure.what(), failure.remedy);
    return failure.exitCode;
  } catch (const std::exception& error) {
    complain(say("unexpected: {0}", error.what()));
    return kFailed;
  }
}
