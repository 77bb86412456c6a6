#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "Options.h"
#include "Records.h"
#include "Session.h"
#include "Units.h"
#include "WatchDevice.h"
#include "WatchStatistics.h"

namespace weigh {

/// What is known of one scale while it is watched.
class WatchedScale {
 public:
  /// `id` is the component's; `name` is what people call it, and empty if it is the only one.
  WatchedScale(std::string id, std::string name, const Connection& connection,
               const devices::Roots& roots = {});

  const std::string& id() const { return id_; }
  const std::string& name() const { return name_; }
  const Connection& connection() const { return connection_; }
  Units units() const { return units_; }
  const PollStatistics& statistics() const { return statistics_; }
  const host::LastError& lastError() const { return lastError_; }

  void add(const Reading& reading);

  /// One row under `headings`.
  static std::vector<std::string> headings();
  std::vector<std::string> row() const;
  /// What there is to say below the table: the last error, and where the adapter is now.
  std::vector<std::string> remarks() const;

  /// A line for the last reading. Records begin as those of `weigh read`, with what else is known
  /// behind.
  std::string readingLine() const;
  Json record() const;
  static std::string csvHead();
  std::string csvRow() const;
  /// What there is to say at the end.
  std::string summary() const;

  /// That the adapter has another name now, once for each; empty otherwise.
  std::string takeNotice();

 private:
  /// "7 /dev/ttyUSB0"
  std::string title() const;
  std::string address() const;
  std::string state() const;
  std::string movedText() const;

  std::string id_;
  std::string name_;
  Connection connection_;
  Units units_;
  /// None for a network scale.
  std::optional<WatchedDevice> device_;

  PollStatistics statistics_;
  WeightHistory history_;
  Reading last_ = {};
  std::string lastTime_;
  host::LastError lastError_{};
  std::string errorClock_;
  /// Where the adapter is now, if not under the configured name.
  std::optional<devices::SerialDevice> moved_;
  bool noticeDue_ = false;
};

}  // namespace weigh
