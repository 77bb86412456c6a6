#include "WatchedScale.h"

#include <cmath>
#include <utility>

#include "Doctor.h"
#include "ResultCode.h"
#include "Texts.h"
#include "WatchTexts.h"

namespace weigh {

namespace {

constexpr std::size_t kBars = 15;

std::string failureText(std::uint32_t code) {
  switch (code) {
    case kNoConnection: return say(text::kNoConnectionState);
    case kNoAnswer: return say(text::kNoAnswerState);
    case kOverload: return say(text::kOverloadState);
    case kNotSupported: return say(text::kNotSupportedState);
    default: return fill(text::kErrorState, {std::to_string(code)});
  }
}

}  // namespace

WatchedScale::WatchedScale(std::string id, std::string name, const Connection& connection,
                           const devices::Roots& roots)
    : id_(std::move(id)),
      name_(std::move(name)),
      connection_(connection),
      units_(unitsOf(connection.model)) {
  if (!connection.network) device_.emplace(connection.device, roots);
}

void WatchedScale::add(const Reading& reading) {
  last_ = reading;
  lastTime_ = timestamp();
  statistics_.add(reading);
  history_.add(std::chrono::steady_clock::now(),
               reading.good() ? std::optional(reading.weight) : std::nullopt);
  if (reading.good()) {
    if (device_) device_->answered();
    moved_.reset();
    return;
  }
  lastError_ = reading.error;
  errorClock_ = timestamp("%H:%M:%S");
  if (!device_) return;
  auto found = device_->elsewhere();
  noticeDue_ = noticeDue_ || (found && (!moved_ || moved_->path != found->path));
  moved_ = std::move(found);
}

std::vector<std::string> WatchedScale::headings() {
  return {say(text::kScaleColumn),     say(text::kWeightColumn),     say(text::kStateColumn),
          say(text::kMinuteColumn),    say(text::kGoodFailedColumn), say(text::kTimesColumn),
          say(text::kReconnectsColumn)};
}

std::vector<std::string> WatchedScale::row() const {
  const auto whole = [](Milliseconds time) { return std::to_string(std::lround(time.count())); };
  return {title(),
          last_.good() && statistics_.polls() > 0 ? weightText(last_.weight, units_) : "-",
          state(),
          history_.bars(std::chrono::steady_clock::now(), kBars),
          std::to_string(statistics_.good()) + "/" + std::to_string(statistics_.failed()),
          whole(statistics_.median()) + "/" + whole(statistics_.percentile99()),
          std::to_string(statistics_.reconnects())};
}

std::vector<std::string> WatchedScale::remarks() const {
  std::vector<std::string> lines;
  if (lastError_.code != kSuccess) {
    lines.push_back(fill(text::kLastError,
                         {title(), std::to_string(lastError_.code), errorClock_, lastError_.text}));
  }
  if (moved_) lines.push_back(movedText());
  return lines;
}

std::string WatchedScale::readingLine() const {
  const std::string line =
      readingText(last_, units_) + "   " + fill(text::kMs, {milliseconds(last_.poll)});
  return name_.empty() ? line : title() + "   " + line;
}

Json WatchedScale::record() const {
  Json record = {{"reading", statistics_.polls()}, {"time", lastTime_}};
  if (!name_.empty()) record["id"] = id_;
  addReading(record, last_, units_);
  record["model"] = connection_.model;
  record["port"] = address();
  record["polls_good"] = statistics_.good();
  record["polls_failed"] = statistics_.failed();
  record["reconnects"] = statistics_.reconnects();
  record["poll_median_ms"] = rounded(statistics_.median());
  record["poll_p99_ms"] = rounded(statistics_.percentile99());
  record["moved_to"] = moved_ ? Json(moved_->path.string()) : Json();
  return record;
}

std::string WatchedScale::csvHead() {
  return "reading,time," + readingCsvHead(true) +
         ",id,model,port,polls_good,polls_failed,reconnects,poll_median_ms,poll_p99_ms,moved_to";
}

std::string WatchedScale::csvRow() const {
  std::string row = std::to_string(statistics_.polls()) + ',' + lastTime_ + ',' +
                    readingCsv(last_, units_) + ',' + name_ + ',' +
                    std::to_string(connection_.model) + ',' + csvText(address());
  for (const std::int64_t count :
       {statistics_.good(), statistics_.failed(), statistics_.reconnects()}) {
    row += ',' + std::to_string(count);
  }
  for (const Milliseconds time : {statistics_.median(), statistics_.percentile99()}) {
    row += ',' + milliseconds(time);
  }
  return row + ',' + (moved_ ? csvText(moved_->path) : "");
}

std::string WatchedScale::summary() const {
  std::string text =
      fill(text::kSummary,
           {std::to_string(statistics_.polls()), std::to_string(statistics_.good()),
            std::to_string(statistics_.failed()), milliseconds(statistics_.median()),
            milliseconds(statistics_.percentile99()), milliseconds(statistics_.longest())});
  if (statistics_.reconnects() > 0) {
    text += fill(text::kSummaryReconnects, {std::to_string(statistics_.reconnects())});
  }
  if (const auto& weights = statistics_.weights()) {
    text += '\n' + fill(text::kSummaryWeights,
                        {weightText(weights->lowest, units_), weightText(weights->highest, units_),
                         weightText(weights->last, units_)});
  }
  return name_.empty() ? text : title() + ": " + text;
}

std::string WatchedScale::takeNotice() {
  return std::exchange(noticeDue_, false) && moved_ ? movedText() : std::string();
}

std::string WatchedScale::address() const {
  return connection_.network ? connection_.host + ":" + std::to_string(connection_.tcpPort)
                             : connection_.device;
}

std::string WatchedScale::title() const {
  return name_.empty() ? address() : name_ + " " + address();
}

std::string WatchedScale::state() const {
  if (statistics_.polls() == 0) return {};
  if (!last_.good()) return failureText(last_.error.code);
  return tellsMotion(connection_.model) ? stateText(last_) : say(text::kAnswers);
}

std::string WatchedScale::movedText() const {
  const std::string now = moved_->path.string();
  const std::string stable = moved_->byAdapter.string();
  return fill(text::kMoved, {title(), now}) + ". " +
         (stable.empty() ? fill(text::kMovedRemedyNoName, {now})
                         : fill(text::kMovedRemedy, {stable}));
}

}  // namespace weigh
