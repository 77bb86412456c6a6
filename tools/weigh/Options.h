#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "CommandLine.h"

namespace weigh {

/// The parameters of the page, with the page's defaults.
struct Connection {
  int model = 20;
  bool network = false;
  std::string device = "/dev/ttyS0";
  int baud = 4800;
  std::string host = "192.168.0.200";
  int tcpPort = 20108;
  bool leave = false;
  /// As a person writes it.
  std::string coeff = "1.000";

  /// "/dev/ttyUSB0", "192.168.0.200:20108"
  std::string address() const;
  /// The same as options of a command to copy: "--port /dev/ttyUSB0 --baud 9600".
  std::string options(bool withBaud = true) const;
};

/// Which scale, and whether its exchange is logged.
struct ScaleOptions {
  Connection connection;
  /// Folder of the exchange log; none for no log.
  std::optional<std::filesystem::path> log;
};

/// How the output is written.
enum class Format { Text, Json, Csv };

/// Which readings are taken, and how they are written.
struct ReadingOptions {
  /// 0 for no end.
  std::int64_t count = 1;
  std::chrono::milliseconds interval{1000};
  Format format = Format::Text;
};

/// --port, --host and --tcp-port.
void addLineOptions(CLI::App& app, Connection& connection);
/// The parameters of a scale, without its log.
void addConnectionOptions(CLI::App& app, Connection& connection);
void addScaleOptions(CLI::App& app, ScaleOptions& options);
/// A component folder in place of the parameters of a scale.
void addFolder(CLI::App& app, std::string& folder);
/// `fewest` is the lowest count that is taken.
void addReadingOptions(CLI::App& app, ReadingOptions& options, std::int64_t fewest,
                       const std::string& aboutCount);
/// --json; where there is a --csv too, one of them.
void addJsonFlag(CLI::App& app, Format& format, const std::string& about = {});
void addFormatFlags(CLI::App& app, Format& format);

/// What the program is to do, once the whole command line is understood.
struct Program {
  std::filesystem::path component;
  std::function<ExitCode()> action;
};

// Each adds one command; `program` outlives the parse and the action.

void addCallCommand(CLI::App& app, Program& program);
void addDoctorCommand(CLI::App& app, Program& program);
void addExplainCommand(CLI::App& app, Program& program);
void addFindCommand(CLI::App& app, Program& program);
void addModelsCommand(CLI::App& app, Program& program);
void addPageCommand(CLI::App& app, Program& program);
void addPriceCommand(CLI::App& app, Program& program);
void addReadCommand(CLI::App& app, Program& program);
void addReportCommand(CLI::App& app, Program& program);
void addSettingsCommand(CLI::App& app, Program& program);
void addTareCommand(CLI::App& app, Program& program);
void addTestCommand(CLI::App& app, Program& program);
void addWatchCommand(CLI::App& app, Program& program);

/// A command with its help: one line for the list of commands, what there is to know beyond the
/// options, and calls to copy, one a line.
CLI::App& addCommand(CLI::App& app, const char* name, const std::string& about,
                     const std::string& examples, const std::string& notes = {});

/// What the command does with its options, which live as long.
template <typename Options, typename Act>
void setAction(CLI::App& command, Program& program, const std::shared_ptr<Options>& options,
               Act act) {
  command.callback([&program, options, act] {
    program.action = [&program, options, act] { return act(program, *options); };
  });
}

}  // namespace weigh
