#include "WatchedScale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "Doctor.h"
#include "ResultCode.h"
#include "Text.h"

namespace weigh {

namespace {

constexpr std::size_t kBars = 15;
constexpr std::int64_t kMinute = 60;

std::int64_t secondOf(WeightHistory::Time time) {
  return std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count();
}

std::string failureText(std::uint32_t code) {
  switch (code) {
    case kNoConnection: return say("no connection");
    case kNoAnswer: return say("no answer");
    case kOverload: return say("overload");
    case kNotSupported: return say("not supported");
    default: return say("error {0}", code);
  }
}

/// The last part of a name that is too long: there adapters differ.
std::string ending(const std::string& name, std::size_t columns) {
  const std::size_t width = displayWidth(name);
  if (width <= columns) return name;
  return "…" + name.substr(clipped(name, width - columns + 1).size());
}

std::vector<std::string> headings() {
  return {say("SCALE"),       say("WEIGHT"),   say("STATE"), say("LAST MINUTE"),
          say("GOOD/FAILED"), say("POLL, ms"), say("BACK")};
}

std::string tableOf(const std::vector<WatchedScale>& scales, std::size_t nameColumns) {
  Table table(headings());
  for (const WatchedScale& scale : scales) table.add(scale.row(nameColumns));
  std::string text = table.text();
  text.pop_back();
  return text;
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
  auto& second = seconds_[number];
  // A weight tells more than a failure beside it.
  if (weight) second = weight;
  seconds_.erase(seconds_.begin(), seconds_.lower_bound(number - 2 * kMinute));
}

std::string WeightHistory::bars(Time now, std::size_t columns) const {
  static constexpr std::array kBars = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
  const auto perColumn = kMinute / static_cast<std::int64_t>(columns);
  // Parts that begin at their multiples keep their seconds while the minute moves on.
  const std::int64_t end = (secondOf(now) / perColumn + 1) * perColumn;
  const auto first = seconds_.lower_bound(end - kMinute);
  double lowest = 0.0;
  double highest = 0.0;
  for (auto second = first; second != seconds_.end(); ++second) {
    lowest = std::min(lowest, second->second.value_or(lowest));
    highest = std::max(highest, second->second.value_or(highest));
  }
  std::string text;
  for (std::int64_t begin = end - kMinute; begin < end; begin += perColumn) {
    std::optional<double> weight;
    const auto part = seconds_.lower_bound(begin);
    const auto next = seconds_.lower_bound(begin + perColumn);
    for (auto second = part; second != next; ++second)
      weight = second->second ? second->second : weight;
    if (weight) {
      const double height = highest > lowest ? (*weight - lowest) / (highest - lowest) : 0.0;
      text += kBars[static_cast<std::size_t>(std::lround(height * (kBars.size() - 1)))];
    } else {
      text += part == next ? " " : "x";
    }
  }
  return text;
}

WatchedDevice::WatchedDevice(std::filesystem::path configured, devices::Roots roots)
    : configured_(std::move(configured)), roots_(std::move(roots)) {
  remember();
}

std::optional<devices::SerialDevice> WatchedDevice::elsewhere() {
  if (!device_) return std::nullopt;
  auto found = devices::findAgain(*device_, others_, roots_);
  if (!found) return std::nullopt;
  std::error_code error;
  if (std::filesystem::equivalent(configured_, found->path, error)) return std::nullopt;
  return found;
}

void WatchedDevice::answered() {
  if (!device_) remember();
}

void WatchedDevice::remember() {
  device_ = devices::deviceAt(configured_, roots_);
  others_ = devices::serialDevices(roots_);
}

WatchedScale::WatchedScale(std::string id, NamedScale scale, const devices::Roots& roots)
    : id_(std::move(id)), scale_(std::move(scale)), units_(unitsOf(scale_.connection.model)) {
  if (!scale_.connection.network) device_.emplace(scale_.connection.device, roots);
}

void WatchedScale::add(const Weighing& weighing) {
  last_ = weighing;
  lastTime_ = timestamp();
  statistics_.add(weighing);
  history_.add(std::chrono::steady_clock::now(),
               weighing.good() ? std::optional(weighing.weight) : std::nullopt);
  if (weighing.good()) {
    if (device_) device_->answered();
    moved_.reset();
    return;
  }
  lastError_ = weighing.error;
  errorClock_ = timestamp("%H:%M:%S");
  if (!device_) return;
  auto found = device_->elsewhere();
  noticeDue_ = noticeDue_ || (found && (!moved_ || moved_->path != found->path));
  moved_ = std::move(found);
}

void WatchedScale::lookAtFrame(bool closed) {
  constexpr std::chrono::seconds kSeldom{10};
  const auto now = std::chrono::steady_clock::now();
  const bool due = !looked_ || (last_.weight == 0 && now - *looked_ >= kSeldom);
  if (doubt_ || !closed || !last_.good() || !due) return;
  looked_ = now;
  doubt_ = weightDoubtOn(scale_.connection);
  doubtDue_ = doubt_.has_value();
}

std::vector<std::string> WatchedScale::row(std::size_t columns) const {
  return {ending(title(), columns),
          last_.good() && statistics_.polls() > 0 ? weightText(last_.weight, units_) : "-",
          state(),
          history_.bars(std::chrono::steady_clock::now(), kBars),
          fmt::format("{}/{}", statistics_.good(), statistics_.failed()),
          fmt::format("{:.0f}/{:.0f}", statistics_.median().count(),
                      statistics_.percentile99().count()),
          std::to_string(statistics_.reconnects())};
}

std::vector<std::string> WatchedScale::remarks() const {
  std::vector<std::string> lines;
  if (lastError_.code != kSuccess) {
    lines.push_back(
        say("{0}: error {1} at {2}: {3}", title(), lastError_.code, errorClock_, lastError_.text));
  }
  if (moved_) lines.push_back(movedText());
  if (doubt_) lines.push_back(title() + ": " + doubt_->cause + " " + doubt_->remedy);
  return lines;
}

std::string WatchedScale::line() const {
  const std::string text = weighingText(last_, units_) + "   " + say("{0} ms", msText(last_.poll));
  return scale_.id.empty() ? text : title() + "   " + text;
}

Json WatchedScale::record() const {
  Json record = {{"reading", statistics_.polls()}, {"time", lastTime_}};
  addWeighing(record, last_, units_);
  record["id"] = orNull(scale_.id);
  record["model"] = scale_.connection.model;
  record["port"] = scale_.connection.address();
  record["polls_good"] = statistics_.good();
  record["polls_failed"] = statistics_.failed();
  record["reconnects"] = statistics_.reconnects();
  record["poll_median_ms"] = rounded(statistics_.median());
  record["poll_p99_ms"] = rounded(statistics_.percentile99());
  record["doubt"] = doubt_ ? Json(doubt_->code) : Json();
  record["moved_to"] = moved_ ? Json(moved_->path.string()) : Json();
  return record;
}

std::string WatchedScale::summary() const {
  std::string text = sayCount(
      "{0} reading, {1} good, {2} failed; poll {3} / {4} / {5} ms (median / 99 % / longest)",
      "{0} readings, {1} good, {2} failed; poll {3} / {4} / {5} ms (median / 99 % / longest)",
      statistics_.polls(), statistics_.good(), statistics_.failed(), msText(statistics_.median()),
      msText(statistics_.percentile99()), msText(statistics_.longest()));
  if (const auto back = statistics_.reconnects(); back > 0)
    text += "; " + sayCount("came back {0} time", "came back {0} times", back);
  if (const auto& weights = statistics_.weights()) {
    text += '\n' + say("weights from {0} to {1}, last {2}", weightText(weights->lowest, units_),
                       weightText(weights->highest, units_), weightText(weights->last, units_));
  }
  return scale_.id.empty() ? text : title() + ": " + text;
}

std::string WatchedScale::takeNotice() {
  return std::exchange(noticeDue_, false) && moved_ ? movedText() : std::string();
}

std::optional<Finding> WatchedScale::takeDoubt() {
  return std::exchange(doubtDue_, false) ? doubt_ : std::nullopt;
}

std::string WatchedScale::title() const {
  const std::string address = scale_.connection.address();
  return scale_.id.empty() ? address : scale_.id + " " + address;
}

std::string WatchedScale::state() const {
  if (statistics_.polls() == 0) return {};
  if (!last_.good()) return failureText(last_.error.code);
  return tellsMotion(scale_.connection.model) ? motionText(last_.details->stable) : say("answers");
}

std::string WatchedScale::movedText() const {
  const std::string stable = moved_->byAdapter.string();
  return say("the adapter of {0} is back as {1}", title(), moved_->path.string()) + ". " +
         (stable.empty() ? say("Set the port to {0}.", moved_->path.string())
                         : say("Set the port to {0}, which stays with the adapter.", stable));
}

std::vector<std::string> watchLines(const std::vector<WatchedScale>& scales,
                                    const std::string& watched, ScreenSize size) {
  // What the names have left; on a narrow screen the last columns go rather than they.
  constexpr std::size_t kShortestName = 12;
  std::size_t others = 0;
  for (const std::string& row : wrapped(tableOf(scales, 0), std::string::npos))
    others = std::max(others, displayWidth(row));
  const std::size_t heading = displayWidth(headings().front());
  const std::size_t room = size.columns + heading > others ? size.columns + heading - others : 0;
  std::vector<std::string> lines =
      wrapped(tableOf(scales, std::max(room, kShortestName)), std::string::npos);
  for (const WatchedScale& scale : scales) {
    for (const std::string& remark : scale.remarks()) {
      for (std::string& line : wrapped(remark, size.columns, 3)) lines.push_back(std::move(line));
    }
  }
  std::string last = say("{0} watched; Ctrl-C ends", watched);
  if (lines.size() + 1 > size.rows) {
    const std::size_t kept = std::max<std::size_t>(size.rows, 2) - 1;
    last += "; " + say("{0} more; a higher window shows them", lines.size() - kept);
    lines.resize(kept);
  }
  lines.push_back(last);
  for (std::string& line : lines) line = clipped(visible(line), size.columns);
  return lines;
}

}  // namespace weigh
