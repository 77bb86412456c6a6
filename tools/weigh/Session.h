#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Component.h"
#include "Options.h"

namespace weigh {

using Milliseconds = std::chrono::duration<double, std::milli>;

/// What the platform gets of one poll. The numbers count only when it is good.
struct Weighing {
  /// Price, cost and stability.
  struct Details {
    double price = 0.0;
    double cost = 0.0;
    bool stable = false;
  };

  host::LastError error;
  double weight = 0.0;
  /// If they were asked for.
  std::optional<Details> details;
  Milliseconds poll{0};

  bool good() const { return error.code == 0; }
};

/// Switches the exchange log on for one run: sets the marker file in a folder, takes it away again
/// if it wasn't there, and says at the end which logs grew. Make it before the component and let it
/// go after: the last record of a scale is written when the scale ends.
class LoggingFolder {
 public:
  /// Makes the folder too. Throws Failure where that fails.
  explicit LoggingFolder(const std::filesystem::path& folder);
  ~LoggingFolder();
  LoggingFolder(const LoggingFolder&) = delete;
  LoggingFolder& operator=(const LoggingFolder&) = delete;

  const std::filesystem::path& path() const { return folder_; }
  /// False once a log of this run lacks records.
  static bool isWhole();

  /// The exchange logs of a folder with their sizes. Links aren't followed: what they lead to is
  /// nobody's log.
  using Sizes = std::map<std::filesystem::path, std::uintmax_t>;
  static Sizes logsIn(const std::filesystem::path& folder);

 private:
  std::filesystem::path folder_;
  bool ownMarker_ = false;
  Sizes before_;
};

/// The component, attached for one run of the program.
class Session {
 public:
  /// With a folder for the exchange log, the log is on and the folder is the component's, which
  /// loads the scales of a settings file there. Throws Failure.
  explicit Session(const std::filesystem::path& component,
                   const std::optional<std::filesystem::path>& log = std::nullopt);

  host::Component& component() { return *component_; }

  /// Makes `folder` the component's: its scales are loaded, all others dropped.
  host::LastError useFolder(const std::filesystem::path& folder);
  void setParameters(const Connection& connection);
  /// Registers a scale by the parameters and tests its connection; the outcome is the last error.
  /// A scale that has a driver stays registered whatever the outcome.
  std::string open(const Connection& connection);
  Weighing read(const std::string& id, bool withDetails);

 private:
  /// Outlives the component, whose scales write their last record when they end.
  std::unique_ptr<LoggingFolder> log_;
  std::unique_ptr<host::Component> component_;
};

}  // namespace weigh
