#include <algorithm>
#include <cctype>
#include <sstream>

#include "CommandLine.h"
#include "Language.h"
#include "SelfDescription.h"

namespace {

constexpr Text kName = {"NAME", "ИМЯ"};
constexpr Text kSynopsis = {"SYNOPSIS", "ОБЗОР"};
constexpr Text kOptions = {"OPTIONS", "ПАРАМЕТРЫ"};
constexpr Text kCommands = {"COMMANDS", "КОМАНДЫ"};
constexpr Text kNotes = {"NOTES", "ЗАМЕЧАНИЯ"};
constexpr Text kSuite = {"Orbelo scales", "Весы Orbelo"};

/// The text with what groff takes for its own written so that it comes out as it is; a hyphen stays
/// one that can be copied into a shell.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '\\': result += "\\e"; break;
      case '-': result += "\\-"; break;
      case '\'': result += "\\(aq"; break;
      case '`': result += "\\(ga"; break;
      case '^': result += "\\(ha"; break;
      case '~': result += "\\(ti"; break;
      case '"': result += "\\(dq"; break;
      default: result += c;
    }
  }
  return result;
}

/// A paragraph of text. A line that is indented stays one of its own, such as a second example; a
/// point at the head of a line would be a request to groff.
std::string textOf(const std::string& text) {
  std::istringstream lines(text);
  std::string result;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
    if (begin > 0) result += ".br\n";
    if (line.find('.', begin) == begin) result += "\\&";
    result += escaped(line.substr(begin)) + "\n";
  }
  return result;
}

std::string request(const char* name, const std::string& argument) {
  return std::string(".") + name + " \"" + escaped(argument) + "\"\n";
}

std::string bold(const std::string& text) { return "\\fB" + escaped(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + escaped(text) + "\\fR"; }

std::string optionText(const OptionEntry& option) {
  std::string head;
  for (const std::string& name : option.names) head += (head.empty() ? "" : ", ") + bold(name);
  if (head.empty()) head = bold(option.argument);
  if (!option.value.empty()) head += " " + italic(option.value);
  return ".TP\n" + head + "\n" + textOf(option.about);
}

std::string synopsisText(const CommandEntry& command) {
  std::string text = ".nf\n";
  for (const std::string& line : command.synopsis) text += textOf(line);
  return text + ".fi\n";
}

std::string paragraphs(const std::vector<std::string>& notes) {
  std::string text;
  for (const std::string& note : notes) text += ".PP\n" + textOf(note);
  return text;
}

std::string commandText(const CommandEntry& command) {
  std::string text =
      request("SS", command.name) + textOf(command.about) + ".PP\n" + synopsisText(command);
  for (const OptionGroup& group : command.groups) {
    text += ".PP\n" + italic(group.heading) + "\n";
    for (const OptionEntry& option : group.options) text += optionText(option);
  }
  return text + paragraphs(command.notes);
}

}  // namespace

std::string manualPage(const CommandEntry& program) {
  std::string title = program.name;
  std::transform(title.begin(), title.end(), title.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  // Without a date, so that the same sources make the same page.
  std::string page = ".\\\" Made from the tables that --help is made of.\n.TH " + title +
                     " 1 \"\" \"" + escaped(versionLine(program.name)) + "\" \"" + say(kSuite) +
                     "\"\n";
  page += request("SH", say(kName)) + escaped(program.name) + " \\- " + textOf(program.about);
  page += request("SH", say(kSynopsis)) + synopsisText(program);
  page += request("SH", say(kOptions));
  for (const OptionGroup& group : program.groups) {
    if (program.groups.size() > 1) page += request("SS", group.heading);
    for (const OptionEntry& option : group.options) page += optionText(option);
  }
  if (!program.commands.empty()) page += request("SH", say(kCommands));
  for (const CommandEntry& command : program.commands) page += commandText(command);
  if (!program.notes.empty()) page += request("SH", say(kNotes)) + paragraphs(program.notes);
  return page;
}
