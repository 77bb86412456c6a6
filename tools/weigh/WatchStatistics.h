#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Session.h"

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
  static constexpr std::size_t kSeconds = 60;
  struct Second {
    std::int64_t number = -1;
    std::optional<double> weight;
  };

  /// Of the second's number modulo 60.
  std::array<Second, kSeconds> seconds_;
};

}  // namespace weigh
