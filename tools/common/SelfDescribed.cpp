#include "SelfDescribed.h"

#include <algorithm>
#include <array>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

namespace {

constexpr std::string_view kBlanks = " \n";

std::string trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return std::string(text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1));
}

std::vector<std::string> split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(separator), text.size());
    if (std::string part = trimmed(text.substr(0, end)); !part.empty()) {
      parts.push_back(std::move(part));
    }
    text.remove_prefix(std::min(end + separator.size(), text.size()));
  }
  return parts;
}

const CLI::Formatter& formatterOf(const CLI::App& app) {
  const auto* formatter = dynamic_cast<const CLI::Formatter*>(app.get_formatter().get());
  if (formatter == nullptr) throw std::logic_error("a formatter that makes no usage line");
  return *formatter;
}

/// What the program calls a value: "DEVICE", "en|ru", "[PORT]".
std::string typeOf(const CLI::Option& option) {
  if (!option.get_option_text().empty()) return option.get_option_text();
  // Behind a colon stands how the value is checked.
  const std::string type = option.get_type_name();
  return type.substr(0, type.find(':'));
}

ValueKind kindOf(const CLI::Option& option, const std::string& type) {
  static constexpr std::array<std::pair<std::string_view, ValueKind>, 5> kKinds = {
      {{"DEVICE", ValueKind::File},
       {"DIR", ValueKind::Folder},
       {"FILE", ValueKind::File},
       {"LOG", ValueKind::File},
       {"PATH", ValueKind::File}}};
  if (option.get_items_expected_max() == 0) return ValueKind::None;
  if (type.find('|') != std::string::npos) return ValueKind::Choice;
  const auto* found = std::find_if(kKinds.begin(), kKinds.end(),
                                   [&](const auto& kind) { return kind.first == type; });
  return found == kKinds.end() ? ValueKind::Text : found->second;
}

OptionEntry entryOf(const CLI::Formatter& formatter, const CLI::Option& option) {
  OptionEntry entry;
  for (const std::string& name : option.get_snames()) entry.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) entry.names.push_back("--" + name);
  if (option.get_positional()) entry.argument = option.get_name(true, false);
  const std::string type = typeOf(option);
  entry.kind = kindOf(option, type);
  entry.valueOptional = option.get_items_expected_min() == 0;
  entry.repeated = option.get_expected_max() == CLI::detail::expected_max_vector_size;
  if (entry.kind == ValueKind::Choice) entry.choices = split(type, "|");
  entry.value = trimmed(formatter.make_option_opts(&option));
  // The choices stand there a second time as the check of the value.
  if (const std::size_t check = entry.value.find(":{"); check != std::string::npos) {
    entry.value.erase(check, entry.value.find('}', check) + 1 - check);
  }
  entry.about = formatter.make_option_desc(&option);
  return entry;
}

CommandEntry describe(const CLI::App& app, const std::string& path) {
  const CLI::Formatter& formatter = formatterOf(app);
  CommandEntry command;
  command.name = app.get_name();
  // The description of a program may begin with its name, as on a manual page.
  command.about = app.get_description();
  if (const std::string head = command.name + " - "; command.about.starts_with(head)) {
    command.about.erase(0, head.size());
  }
  command.notes = split(app.get_footer(), "\n\n");
  command.synopsis = split(formatter.make_usage(&app, path), "\n");
  const std::string label = formatter.get_label("Usage") + ": ";
  for (std::string& line : command.synopsis) {
    if (line.starts_with(label)) line.erase(0, label.size());
  }
  for (const std::string& heading : app.get_groups()) {
    if (heading.empty()) continue;
    OptionGroup group{heading, {}};
    for (const CLI::Option* option : app.get_options()) {
      if (option->get_group() == heading) group.options.push_back(entryOf(formatter, *option));
    }
    if (!group.options.empty()) command.groups.push_back(std::move(group));
  }
  for (const CLI::App* sub : app.get_subcommands({})) {
    if (!sub->get_group().empty()) {
      command.commands.push_back(describe(*sub, path + " " + sub->get_name()));
    }
  }
  return command;
}

}  // namespace

CommandEntry commandLineOf(const CLI::App& app) { return describe(app, app.get_name()); }
