// The programs' manual pages and completion scripts: they tell all that --help tells, and the
// programs that read them take them.

#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using Words = std::vector<std::string>;

/// What a command line of bash writes.
std::string outputOf(const std::string& commandLine) {
  fixture::Program bash({"bash", "-c", commandLine}, fixture::Program::Errors::Apart);
  bash.closeInput();
  return bash.rest();
}

Words linesOf(const std::string& text) {
  Words lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

struct Program {
  const char* name;
  const char* path;
};

class SelfDescription : public testing::TestWithParam<Program> {
 protected:
  static std::string run(const std::string& arguments) {
    return outputOf(std::string(GetParam().path) + " " + arguments);
  }

  /// Names of the options in a help text: those at the head of an indented line.
  static Words optionsIn(const std::string& help) {
    Words names;
    for (const std::string& line : linesOf(help)) {
      if (!line.starts_with("  -")) continue;
      std::istringstream head(line.substr(2, line.find(' ', 2) - 2));
      for (std::string name; std::getline(head, name, ',');) names.push_back(name);
    }
    return names;
  }

  /// The commands that the help lists under their heading.
  static Words commands() {
    Words names;
    bool listed = false;
    for (const std::string& line : linesOf(run("--lang en --help"))) {
      if (listed && line.starts_with("  ") && line[2] != ' ') {
        names.push_back(line.substr(2, line.find(' ', 2) - 2));
      }
      listed = line == "Commands:" || (listed && !line.empty());
    }
    return names;
  }

  /// What bash offers at the end of these words.
  static Words completed(const Words& words) {
    const std::string path = GetParam().path;
    std::string line = "PATH=" + path.substr(0, path.rfind('/')) + ":$PATH; source <(" + path +
                       " --self-describe bash); COMP_WORDS=(" + GetParam().name;
    for (const std::string& word : words) line += " '" + word + "'";
    return linesOf(outputOf(line + "); COMP_CWORD=" + std::to_string(words.size()) + "; _" +
                            GetParam().name + "; printf '%s\\n' \"${COMPREPLY[@]}\""));
  }

  static std::string inGroff(const std::string& name) {
    std::string text;
    for (const char c : name) text += c == '-' ? std::string("\\-") : std::string(1, c);
    return "\\fB" + text + "\\fR";
  }
};

INSTANTIATE_TEST_SUITE_P(Programs, SelfDescription,
                         testing::Values(Program{"weigh", WEIGH_PROGRAM},
                                         Program{"scalesim", SCALESIM_PROGRAM}),
                         [](const auto& program) { return std::string(program.param.name); });

TEST_P(SelfDescription, TellsEveryCommandAndOptionOfTheHelp) {
  const Words own = optionsIn(run("--lang en --help"));
  ASSERT_THAT(own, Contains("--help"));
  Words all = commands();
  if (!all.empty()) {
    EXPECT_EQ(completed({""}), all);
  }
  all.emplace_back();
  for (const std::string& command : all) {
    SCOPED_TRACE(command);
    const Words options = optionsIn(run("--lang en " + command + " --help"));
    const Words offered = completed(command.empty() ? Words{"-"} : Words{command, "-"});
    for (const std::string& option : options) EXPECT_THAT(offered, Contains(option));
    for (const std::string& option : own) EXPECT_THAT(offered, Contains(option).Times(1));
    for (const char* language : {"en", "ru", "uk"}) {
      const std::string page = run("--lang " + std::string(language) + " --self-describe man");
      for (const std::string& option : options) EXPECT_THAT(page, HasSubstr(inGroff(option)));
    }
  }
}

TEST_P(SelfDescription, IsTakenByTheProgramsThatReadIt) {
  const std::string man = " --self-describe man";
  const struct {
    const char* reader;
    std::string arguments;
    const char* check;
  } cases[] = {
      {"bash", " --self-describe bash", "bash -n -"},
      {"zsh", " --self-describe zsh", "zsh -n /dev/stdin"},
      {"groff", " --lang en" + man, "groff -ww -man -k -Tutf8 -z"},
      {"groff", " --lang ru" + man, "groff -ww -man -k -Tutf8 -z"},
      {"groff", " --lang uk" + man, "groff -ww -man -k -Tutf8 -z"},
  };
  for (const auto& [reader, arguments, check] : cases) {
    if (outputOf(std::string("command -v ") + reader).empty()) continue;
    EXPECT_EQ(outputOf(GetParam().path + arguments + " | " + check + " 2>&1"), "") << arguments;
  }
}

using WeighSelfDescription = SelfDescription;
INSTANTIATE_TEST_SUITE_P(Program, WeighSelfDescription,
                         testing::Values(Program{"weigh", WEIGH_PROGRAM}));

TEST_P(WeighSelfDescription, SpeaksTheLanguageOfTheEnvironment) {
  const struct {
    const char* environment;
    const char* word;
  } cases[] = {
      {"", "Commands:"},
      {"LANG=uk_UA.UTF-8", "Команди:"},
      {"LANG=uk", "Команди:"},
      {"LANG=be_BY", "Команды:"},
      {"LANG=rus", "Commands:"},
      {"LC_ALL= LC_MESSAGES=ru LANG=C", "Команды:"},
      {"LC_ALL=C LC_MESSAGES=ru_RU.UTF-8", "Commands:"},
  };
  for (const auto& [environment, word] : cases) {
    EXPECT_THAT(outputOf("env -i " + std::string(environment) + ' ' + GetParam().path + " --help"),
                HasSubstr(word))
        << environment;
  }
}

TEST_P(WeighSelfDescription, CompletesValuesByTheirKind) {
  const std::pair<Words, Words> cases[] = {
      {{"read", "--lang", "=", "r"}, {"ru"}},
      {{"read", "--lang", "="}, {"en", "ru", "uk"}},
      {{"read", "--port", "/dev/nul"}, {"/dev/null"}},
      {{"read", "--log", "/de"}, {"/dev"}},
      {{"explain", "/dev/nul"}, {"/dev/null"}},
      {{"settings", "/de"}, {"/dev"}},
      {{"read", "--baud", ""}, {""}},
  };
  for (const auto& [words, offered] : cases) EXPECT_EQ(completed(words), offered) << words.back();
}

}  // namespace
