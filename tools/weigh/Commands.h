#pragma once

#include <filesystem>
#include <functional>

#include <CLI/CLI.hpp>

#include "Failure.h"
#include "Language.h"

namespace weigh {

/// What the program is to do, once the whole command line is understood.
struct Program {
  std::filesystem::path component;
  std::function<ExitCode()> action;
};

// Each adds one command; `program` outlives the parse and the action.

void addReadCommand(CLI::App& app, Program& program);
void addWatchCommand(CLI::App& app, Program& program);
void addTareCommand(CLI::App& app, Program& program);
void addPriceCommand(CLI::App& app, Program& program);
void addTestCommand(CLI::App& app, Program& program);
void addModelsCommand(CLI::App& app, Program& program);
void addPageCommand(CLI::App& app, Program& program);
void addSettingsCommand(CLI::App& app, Program& program);
void addDoctorCommand(CLI::App& app, Program& program);
void addReportCommand(CLI::App& app, Program& program);
void addFindCommand(CLI::App& app, Program& program);
void addExplainCommand(CLI::App& app, Program& program);
void addCallCommand(CLI::App& app, Program& program);

/// The help of one command.
struct CommandHelp {
  const char* name;
  /// One line for the list of commands.
  const Text& about;
  const char* example;
  /// What there is to know beyond the options; none for most.
  const Text* notes = nullptr;
};
CLI::App& addCommand(CLI::App& app, const CommandHelp& help);

}  // namespace weigh
