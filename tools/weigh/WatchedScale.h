#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Output.h"
#include "SerialDevices.h"
#include "SettingsFile.h"

namespace weigh {

/// How the polls of a scale went.
class PollStatistics {
 public:
  void add(const Weighing& weighing);

  std::int64_t polls() const { return good_ + failed_; }
  std::int64_t good() const { return good_; }
  std::int64_t failed() const { return failed_; }
  /// How often the scale answered again after polls without connection or answer: a line that
  /// breaks within a poll looks like a scale that is silent.
  std::int64_t reconnects() const { return reconnects_; }

  /// The poll time that `part` of the polls (0 to 1) don't exceed, of the last ten thousand; 0
  /// without any.
  Milliseconds time(double part) const;
  Milliseconds median() const { return time(0.5); }
  Milliseconds percentile99() const { return time(0.99); }
  /// Of the whole run.
  Milliseconds longest() const { return longest_; }

  struct Weights {
    double lowest;
    double highest;
    double last;
  };
  /// None without a good poll.
  const std::optional<Weights>& weights() const { return weights_; }

 private:
  static constexpr std::size_t kTimesKept = 10'000;

  std::int64_t good_ = 0;
  std::int64_t failed_ = 0;
  std::int64_t reconnects_ = 0;
  bool lost_ = false;
  /// The newest over the oldest, once there are enough.
  std::vector<Milliseconds> times_;
  Milliseconds longest_{0};
  std::optional<Weights> weights_;
};

/// The weights of the last minute.
class WeightHistory {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// `weight` is none for a failed poll.
  void add(Time time, std::optional<double> weight);

  /// A row of bars, the newest on the right: each stands for an equal part of a minute and for
  /// the last weight in it, from zero to the farthest weight of the minute. "x" where all polls
  /// failed, blank where there was none. `columns` divides 60.
  std::string bars(Time now, std::size_t columns) const;

 private:
  /// Of each second that had a poll, by its number.
  std::map<std::int64_t, std::optional<double>> seconds_;
};

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

  /// "7 /dev/ttyUSB0"
  std::string title() const;

  void add(const Weighing& weighing);
  /// To be called after `add`: looks at a frame of a weight that may not be what it reads, at the
  /// first good one and now and then at a zero. `closed` if nothing else has the line open.
  void lookAtFrame(bool closed);

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
  /// That the weight isn't what it reads, once.
  std::optional<Finding> takeDoubt();

 private:
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
  std::optional<std::chrono::steady_clock::time_point> looked_;
  std::optional<Finding> doubt_;
  bool doubtDue_ = false;
};

/// The lines that show all scales, as many as there is room for: the table, then the remarks, which
/// go on in the next line where they are too long. Names give way to the weights.
std::vector<std::string> watchLines(const std::vector<WatchedScale>& scales,
                                    const std::string& watched, ScreenSize size);

}  // namespace weigh
