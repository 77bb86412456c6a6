#include "WatchStatistics.h"

#include <algorithm>
#include <cmath>

#include "ResultCode.h"

namespace weigh {

namespace {

constexpr std::array<const char*, 8> kBars = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
constexpr const char* kFailure = "x";

std::int64_t secondOf(WeightHistory::Time time) {
  return std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count();
}

}  // namespace

void PollStatistics::add(const Weighing& weighing) {
  const auto number = static_cast<std::size_t>(polls());
  if (times_.size() < kTimesKept) {
    times_.push_back(weighing.poll);
  } else {
    times_[number % kTimesKept] = weighing.poll;
  }
  longest_ = std::max(longest_, weighing.poll);

  const bool lost = weighing.error.code == kNoConnection || weighing.error.code == kNoAnswer;
  if (lost_ && !lost) ++reconnects_;
  lost_ = lost;
  if (!weighing.good()) {
    ++failed_;
    return;
  }
  ++good_;
  if (!weights_) weights_ = Weights{weighing.weight, weighing.weight, weighing.weight};
  weights_->lowest = std::min(weights_->lowest, weighing.weight);
  weights_->highest = std::max(weights_->highest, weighing.weight);
  weights_->last = weighing.weight;
}

Milliseconds PollStatistics::time(double part) const {
  if (times_.empty()) return {};
  std::vector<Milliseconds> sorted = times_;
  const auto rank = static_cast<std::size_t>(std::ceil(part * static_cast<double>(sorted.size())));
  const auto at = sorted.begin() + static_cast<std::ptrdiff_t>(std::max<std::size_t>(rank, 1) - 1);
  std::nth_element(sorted.begin(), at, sorted.end());
  return *at;
}

void WeightHistory::add(Time time, std::optional<double> weight) {
  const std::int64_t number = secondOf(time);
  Second& second = seconds_[static_cast<std::size_t>(number) % kSeconds];
  if (second.number != number) second = {.number = number, .weight = {}};
  if (weight) second.weight = weight;
}

std::string WeightHistory::bars(Time now, std::size_t columns) const {
  const auto perColumn = static_cast<std::int64_t>(kSeconds / columns);
  // Parts that begin at their multiples keep their seconds while the minute moves on.
  const std::int64_t end = (secondOf(now) / perColumn + 1) * perColumn;
  const std::int64_t oldest = end - static_cast<std::int64_t>(kSeconds);
  const auto secondAt = [&](std::int64_t number) -> const Second* {
    const Second& second = seconds_[static_cast<std::size_t>(number) % kSeconds];
    return second.number == number ? &second : nullptr;
  };
  double lowest = 0.0;
  double highest = 0.0;
  for (std::int64_t number = oldest; number < end; ++number) {
    const Second* second = secondAt(number);
    if (second == nullptr || !second->weight) continue;
    lowest = std::min(lowest, *second->weight);
    highest = std::max(highest, *second->weight);
  }
  const auto barOf = [&](double weight) {
    const double height = highest > lowest ? (weight - lowest) / (highest - lowest) : 0.0;
    return kBars[static_cast<std::size_t>(std::lround(height * (kBars.size() - 1)))];
  };

  std::string text;
  for (std::int64_t begin = oldest; begin < end; begin += perColumn) {
    const char* shown = " ";
    for (std::int64_t number = begin; number < begin + perColumn; ++number) {
      const Second* second = secondAt(number);
      if (second == nullptr) continue;
      if (second->weight) {
        shown = barOf(*second->weight);
      } else if (shown == std::string_view(" ")) {
        shown = kFailure;
      }
    }
    text += shown;
  }
  return text;
}

}  // namespace weigh
