#include "Doctor.h"

#include <algorithm>

#include "DoctorDevice.h"
#include "DoctorHost.h"
#include "DoctorLine.h"
#include "FrameReader.h"
#include "Models.h"
#include "PollTime.h"
#include "ResultCode.h"
#include "Texts.h"
#include "Units.h"

namespace weigh {

namespace {

using Time = std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr int kPolls = 10;
/// Polls without an answer after which there is no hope.
constexpr int kHopeless = 2;
constexpr Time kPollingTime{5000};
constexpr double kMillisecondsOfSecond = 1000.0;

bool isAnswer(const Reading& reading) {
  // The scale spoke, be it only to say that it can't weigh now.
  return reading.good() || reading.error.code == kOverload || reading.error.code == kUnknown;
}

std::optional<Milliseconds> wireTime(const Connection& connection, const ProtocolSheet& sheet) {
  const std::size_t answer = frameLength(sheet);
  if (connection.network || answer == 0 || connection.baud <= 0) return std::nullopt;
  const Request& request = sheet.request;
  const std::size_t bytes = request.bytesOfFirstAttempt().size() + answer;
  return Milliseconds(request.pause_ms + kMillisecondsOfSecond * static_cast<double>(bytes) *
                                             sheet.line.bits() / connection.baud);
}

/// The verdict on a model that no line needs to be looked at for; none for all that have a driver.
std::optional<Finding> modelTrouble(const ScalesModel* model, int number) {
  const std::string name = std::to_string(number);
  if (model == nullptr) return finding(advice::kUnknownModel, {name});
  if (model->create == nullptr) return finding(advice::kNoDriver, {name});
  if (model->sheet == nullptr) return finding(advice::kEmulator, {name});
  return std::nullopt;
}

Finding readingVerdict(const Reading& reading, int model) {
  if (reading.error.code == kOverload) return finding(advice::kOverload);
  if (reading.error.code == kUnknown) return finding(advice::kNoReading);
  const std::string weight = weightText(reading.weight, unitsOf(model));
  if (reading.weight < 0) return finding(advice::kNegative, {weight});
  if (tellsMotion(model) && !reading.details->stable) return finding(advice::kMoving, {weight});
  if (reading.weight == 0) return finding(advice::kZero, {weight});
  return finding(advice::kGood, {weight});
}

/// Polls the scale as long as that tells something. Gives the error of the last poll.
host::LastError poll(const Connection& connection, const Practice& practice, Diagnosis& diagnosis) {
  Session session(practice.component);
  const std::string id = session.open(connection);
  host::LastError last = session.component().lastError();
  if (last.code == kNoConnection) return last;
  PollTimes& polls = diagnosis.polls;
  std::vector<Milliseconds> times;
  const Clock::time_point end = Clock::now() + kPollingTime;
  while (polls.done < kPolls && Clock::now() < end && !practice.interrupt.asked()) {
    practice.progress.show(fill(text::kPolling, {std::to_string(polls.done + 1)}));
    const Reading reading = session.read(id, true);
    // A poll that the signal cut into says nothing about the scale.
    if (!reading.good() && practice.interrupt.asked()) break;
    ++polls.done;
    last = reading.error;
    if (isAnswer(reading)) {
      ++polls.answered;
      times.push_back(reading.poll);
      diagnosis.reading = reading;
    } else if (polls.answered == 0 && polls.done >= kHopeless) {
      break;
    }
  }
  if (times.empty()) return last;
  std::sort(times.begin(), times.end());
  polls.median = times[times.size() / 2];
  polls.worst = times.back();
  return last;
}

/// The verdict once the line can be used; none if the user had enough before.
std::optional<Finding> lineVerdict(const Connection& connection, const ScalesModel& model,
                                   const Practice& practice, Diagnosis& diagnosis) {
  if (practice.interrupt.asked()) return std::nullopt;
  diagnosis.polls.wire = wireTime(connection, *model.sheet);
  const host::LastError last = poll(connection, practice, diagnosis);
  const PollTimes& polls = diagnosis.polls;
  if (polls.answered > 0 && polls.answered < polls.done) {
    return finding(advice::kUnsteady, {std::to_string(polls.done), std::to_string(polls.answered),
                                       std::to_string(polls.done - polls.answered)});
  }
  if (diagnosis.reading) {
    diagnosis.weighs = diagnosis.reading->good();
    if (auto note = unaskedNote(connection, model, practice.interrupt))
      diagnosis.notes.push_back(std::move(*note));
    return readingVerdict(*diagnosis.reading, connection.model);
  }
  if (last.code == kNoConnection && !connection.network)
    return finding(advice::kLineFails, {connection.device, last.text});
  if (practice.interrupt.asked()) return std::nullopt;
  practice.progress.show(say(text::kListening));
  const Heard heard = listen(connection, *model.sheet, practice.interrupt);
  if (practice.interrupt.asked()) return std::nullopt;
  diagnosis.bytes = heard.all();
  return judge(heard, model, connection);
}

/// The verdict; none if the user had enough before.
std::optional<Finding> verdictOn(const Connection& connection, const Practice& practice,
                                 Diagnosis& diagnosis) {
  const ScalesModel* model = findScalesModel(connection.model);
  if (auto trouble = modelTrouble(model, connection.model)) {
    // The emulator needs no line.
    diagnosis.weighs = model != nullptr && model->create != nullptr;
    return trouble;
  }
  if (practice.interrupt.asked()) return std::nullopt;
  practice.progress.show(say(text::kLookingAtLine));
  if (connection.network) {
    if (auto trouble = hostTrouble(connection, practice.interrupt)) return trouble;
  } else {
    diagnosis.notes = deviceNotes(connection.device, practice.roots);
    if (auto trouble = deviceTrouble(connection, practice.roots, diagnosis)) return trouble;
  }
  return lineVerdict(connection, *model, practice, diagnosis);
}

}  // namespace

Finding finding(const Advice& advice, std::initializer_list<std::string> arguments) {
  return {.code = advice.code,
          .cause = fill(advice.cause, arguments),
          .remedy = fill(advice.remedy, arguments)};
}

bool tellsMotion(int model) {
  const ScalesModel* row = findScalesModel(model);
  // The emulator has no sheet, and does move.
  return row == nullptr || row->sheet == nullptr ||
         row->sheet->motion.told == Motion::Told::ByFrame;
}

std::chrono::seconds longestDiagnosis(const Connection& connection) {
  const ScalesModel* model = findScalesModel(connection.model);
  if (modelTrouble(model, connection.model)) return std::chrono::seconds{0};
  // On a line that others use, each drain may take all of its time.
  const Time poll =
      longestPoll(*model->sheet, connection.network, {.stretch = Time{kLongestDrain_ms}});
  Time sum = std::max(kPollingTime + poll, kHopeless * poll);
  sum += longestListening(*model->sheet);
  // The name, the first connection, the component's and the one that is listened to.
  if (connection.network) sum += 4 * kLongestConnect;
  return std::chrono::ceil<std::chrono::seconds>(sum);
}

Diagnosis diagnose(const Connection& connection, const Practice& practice) {
  Diagnosis diagnosis;
  const PollTimes& polls = diagnosis.polls;
  const auto verdict = verdictOn(connection, practice, diagnosis);
  diagnosis.verdict =
      verdict
          ? *verdict
          : finding(advice::kStopped, {std::to_string(polls.done), std::to_string(polls.answered)});
  return diagnosis;
}

}  // namespace weigh
