#include "Output.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>

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
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  constexpr unsigned char kDelete = 0x7F;
  if (first < 0x80) return first == '\n' || first == '\t' || (first >= ' ' && first != kDelete);
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < size) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return 0;
  }
  // The second set of control characters, over-long forms, halves of pairs, beyond the last one.
  const unsigned char second = byte(1);
  const bool wrong = (first == 0xC2 && second < 0xA0) || (first == 0xE0 && second < 0xA0) ||
                     (first == 0xED && second >= 0xA0) || (first == 0xF0 && second < 0x90) ||
                     (first == 0xF4 && second >= 0x90);
  return wrong ? 0 : size;
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
