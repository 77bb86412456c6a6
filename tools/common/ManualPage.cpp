#include <algorithm>
#include <array>
#include <cctype>

#include "CommandLine.h"
#include "Text.h"

namespace {

/// The text with what groff takes for its own written so that it comes out as it is; a hyphen stays
/// one that can be copied into a shell.
std::string escaped(std::string_view text) {
  constexpr std::string_view kSpecial = "\\-'`^~\"";
  constexpr std::array kInstead = {"\\e", "\\-", "\\(aq", "\\(ga", "\\(ha", "\\(ti", "\\(dq"};
  std::string result;
  for (const char c : text) {
    const std::size_t special = kSpecial.find(c);
    result += special == std::string_view::npos ? std::string(1, c) : kInstead.at(special);
  }
  return result;
}

/// Paragraphs of text. A line that is indented stays one of its own, such as a second example; a
/// point at the head of a line would be a request to groff.
std::string textOf(std::string_view text) {
  std::string result;
  for (std::string_view line : partsOf(text, '\n')) {
    const std::size_t blanks = std::min(line.find_first_not_of(' '), line.size());
    line.remove_prefix(blanks);
    if (line.empty()) {
      result += ".PP\n";
      continue;
    }
    if (blanks > 0) result += ".br\n";
    result += (line.starts_with('.') ? "\\&" : "") + escaped(line) + "\n";
  }
  return result;
}

std::string heading(const char* request, const std::string& text) {
  return fmt::format(".{} \"{}\"\n", request, escaped(text));
}

/// What CLI11's formatter makes of an option or a usage line.
const CLI::Formatter& wordsOf(const CLI::App& app) {
  return dynamic_cast<const CLI::Formatter&>(*app.get_formatter());
}

std::string usage(const CLI::App& app, const std::string& path) {
  const CLI::Formatter& words = wordsOf(app);
  const std::string label = words.get_label("Usage") + ": ";
  std::string text = words.make_usage(&app, path);
  if (text.starts_with(label)) text.erase(0, label.size());
  return ".nf\n" + textOf(text.substr(0, text.find_last_not_of('\n') + 1)) + ".fi\n";
}

std::string options(const CLI::App& app) {
  const CLI::Formatter& words = wordsOf(app);
  std::string text;
  for (const std::string& group : app.get_groups()) {
    std::string list;
    for (const CLI::Option* option : app.get_options()) {
      if (group.empty() || option->get_group() != group) continue;
      std::vector<std::string> names;
      const std::string name = words.make_option_name(option, !option->nonpositional());
      for (const std::string_view part : partsOf(name, ','))
        names.push_back("\\fB" + escaped(part) + "\\fR");
      list +=
          fmt::format(".TP\n{}\\fI{}\\fR\n{}", joined(names),
                      escaped(words.make_option_opts(option)), textOf(option->get_description()));
    }
    if (!list.empty()) text += fmt::format(".PP\n\\fI{}\\fR\n{}", escaped(group), list);
  }
  return text;
}

}  // namespace

std::string manualPage(const CLI::App& app) {
  std::string title = app.get_name();
  std::ranges::transform(title, title.begin(),
                         [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  // Without a date, so that the same sources make the same page.
  std::string page = fmt::format(".\\\" Made of what --help says.\n.TH {} 1 \"\" \"{}\" \"{}\"\n",
                                 title, escaped(versionLine(app.get_name())), say("Orbelo scales"));
  page += heading("SH", say("NAME")) + escaped(app.get_name()) + " \\- " +
          textOf(app.get_description());
  page += heading("SH", say("SYNOPSIS")) + usage(app, app.get_name());
  page += heading("SH", say("OPTIONS")) + options(app);
  const auto commands = app.get_subcommands({});
  if (!commands.empty()) page += heading("SH", say("COMMANDS"));
  for (const CLI::App* command : commands) {
    page += heading("SS", command->get_name()) + textOf(command->get_description()) + ".PP\n" +
            usage(*command, app.get_name() + " " + command->get_name()) + options(*command) +
            ".PP\n" + textOf(command->get_footer());
  }
  return page + heading("SH", say("NOTES")) + textOf(app.get_footer());
}
