#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "SerialDevices.h"
#include "SettingsFile.h"
#include "WatchStatistics.h"

namespace weigh {

/// Follows the USB adapter of a scale: unplugged and plugged in again, it may get another device
/// name than the one that the scale's settings have.
class WatchedDevice {
 public:
  explicit WatchedDevice(std::filesystem::path configured, devices::Roots roots = {});

  /// To be called after a failed poll. The adapter, if it is there under another name than the
  /// configured one; none while that leads to it, while it is away, and for what is no USB adapter.
  std::optional<devices::SerialDevice> elsewhere();
  /// To be called after a good poll: an adapter that came late is known from then on.
  void answered();

 private:
  void remember();

  std::filesystem::path configured_;
  devices::Roots roots_;
  std::optional<devices::SerialDevice> device_;
  /// What there was beside it.
  std::vector<devices::SerialDevice> others_;
};

/// What is known of one scale while it is watched.
class WatchedScale {
 public:
  /// `id` is the component's; the scale's own is what people call it, and empty for a single one.
  WatchedScale(std::string id, NamedScale scale, const devices::Roots& roots = {});

  const std::string& id() const { return id_; }
  const NamedScale& scale() const { return scale_; }
  const PollStatistics& statistics() const { return statistics_; }
  const host::LastError& lastError() const { return lastError_; }

  void add(const Weighing& weighing);

  /// One row of the table, its name in so many columns.
  std::vector<std::string> row(std::size_t columns) const;
  /// What there is to say below the table: the last error, and where the adapter is now.
  std::vector<std::string> remarks() const;
  /// Of the last weighing, for people and for programs.
  std::string line() const;
  Json record() const;
  /// What there is to say at the end.
  std::string summary() const;
  /// That the adapter has another name now, once for each; empty otherwise.
  std::string takeNotice();

 private:
  /// "7 /dev/ttyUSB0"
  std::string title() const;
  std::string state() const;
  std::string movedText() const;

  std::string id_;
  NamedScale scale_;
  Units units_;
  /// None for a network scale.
  std::optional<WatchedDevice> device_;

  PollStatistics statistics_;
  WeightHistory history_;
  Weighing last_ = {};
  std::string lastTime_;
  host::LastError lastError_{};
  std::string errorClock_;
  /// Where the adapter is now, if not under the configured name.
  std::optional<devices::SerialDevice> moved_;
  bool noticeDue_ = false;
};

/// Room for lines of text.
struct ScreenSize {
  std::size_t columns;
  std::size_t rows;
};

/// The lines that show all scales, as many as there is room for: the table, then the remarks, which
/// go on in the next line where they are too long. Names give way to the weights.
std::vector<std::string> watchLines(const std::vector<WatchedScale>& scales,
                                    const std::string& watched, ScreenSize size);

}  // namespace weigh
