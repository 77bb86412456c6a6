#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "Component.h"
#include "ExchangeLog.h"
#include "Options.h"

namespace weigh {

using Milliseconds = std::chrono::duration<double, std::milli>;

/// Price, cost and stability of a reading.
struct ReadingDetails {
  double price = 0.0;
  double cost = 0.0;
  bool stable = false;
};

/// One reading. The numbers count only when it is good.
struct Reading {
  host::LastError error;
  double weight = 0.0;
  /// If they were asked for.
  std::optional<ReadingDetails> details;
  Milliseconds poll{0};

  bool good() const { return error.code == 0; }
};

/// The component, attached for one run of the program.
class Session {
 public:
  /// With a folder for the exchange log, the log is on and the folder is the component's, which
  /// loads the scales of a settings file there. Throws LoadError and Failure.
  Session(const std::filesystem::path& component,
          const std::optional<std::filesystem::path>& log = std::nullopt);

  host::Component& component() { return component_; }

  /// Makes `folder` the component's: its scales are loaded, all others dropped.
  host::LastError useFolder(const std::filesystem::path& folder);
  void setParameters(const Connection& connection);
  /// Registers a scale by the parameters and tests its connection; the outcome is the last error.
  /// A scale that has a driver stays registered whatever the outcome.
  std::string open(const Connection& connection);
  Reading read(const std::string& id, bool withDetails);

 private:
  /// Outlives the component, whose scales write their last record when they end.
  std::unique_ptr<ExchangeLog> log_;
  host::Component component_;
};

}  // namespace weigh
