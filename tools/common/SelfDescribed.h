#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// What may stand behind an option or in an argument's place, as far as a shell can complete it.
enum class ValueKind { None, Text, File, Folder, Choice };

/// One option or argument, as --help tells it.
struct OptionEntry {
  /// "-m", "--model"; empty for what is an argument only.
  std::vector<std::string> names;
  /// Name of the argument; empty for what is an option only.
  std::string argument;
  /// What --help writes behind the name: "N=20", "[PORT]"; empty for a flag.
  std::string value;
  ValueKind kind = ValueKind::None;
  /// The option may stand without its value.
  bool valueOptional = false;
  /// The argument may stand there more than once.
  bool repeated = false;
  std::vector<std::string> choices;
  std::string about;
};

struct OptionGroup {
  std::string heading;
  std::vector<OptionEntry> options;
};

/// A program or one of its commands.
struct CommandEntry {
  /// "read"
  std::string name;
  /// "weigh read [OPTIONS]"; a line for each way of calling it.
  std::vector<std::string> synopsis;
  std::string about;
  /// The paragraphs below the options.
  std::vector<std::string> notes;
  std::vector<OptionGroup> groups;
  std::vector<CommandEntry> commands;
};

/// The command line of a program, read from the tables that --help is made of; options that --help
/// hides are left out.
CommandEntry commandLineOf(const CLI::App& app);
