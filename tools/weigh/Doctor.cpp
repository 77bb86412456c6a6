#include "Doctor.h"

#include <algorithm>

#include "FrameReader.h"
#include "PollTime.h"
#include "ResultCode.h"

namespace weigh {

namespace {

using Time = std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr int kPolls = 10;
/// Polls without an answer after which there is no hope.
constexpr int kHopeless = 2;
constexpr Time kPollingTime{5000};
constexpr double kMillisecondsOfSecond = 1000.0;

bool isAnswer(const Weighing& weighing) {
  // The scale spoke, be it only to say that it can't weigh now.
  return weighing.good() || weighing.error.code == kOverload || weighing.error.code == kUnknown;
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
  if (model == nullptr)
    return Finding{.code = "unknown-model",
                   .cause = say("There is no model {0}.", number),
                   .remedy = say("`weigh models` lists the models.")};
  if (model->create == nullptr)
    return Finding{.code = "no-driver",
                   .cause = say("Model {0} stands in the list but has no driver.", number),
                   .remedy = say("`weigh models --driver` lists those that can be read; another "
                                 "one of them may speak the same protocol.")};
  if (model->sheet == nullptr)
    return Finding{
        .code = "emulator",
        .cause = say("Model {0} is the emulator: it makes weights up and has no line.", number),
        .remedy = say("Choose the model of your scale; `weigh models` lists them.")};
  return std::nullopt;
}

Finding weighingVerdict(const Weighing& weighing, int model) {
  if (weighing.error.code == kOverload)
    return {.code = "overload",
            .cause = say("The scale answers and says overload."),
            .remedy = say("Take the load off. If an empty pan says the same, the load cell or its "
                          "cable is damaged.")};
  if (weighing.error.code == kUnknown)
    return {.code = "no-reading",
            .cause = say("The scale answers that it has no weight to give."),
            .remedy = say("Look at its display: it is starting, in a menu, or shows an error.")};
  const std::string weight = weightText(weighing.weight, unitsOf(model));
  if (weighing.weight < 0)
    return {.code = "negative",
            .cause = say("The scale answers with a weight below zero: {0}.", weight),
            .remedy = say("The line is in order. Clear the pan and press the scale's zero key, or "
                          "take off the tare.")};
  if (tellsMotion(model) && !weighing.details->stable)
    return {.code = "moving",
            .cause = say("The scale answers and says that the weight is moving: {0}.", weight),
            .remedy = say("The line is in order. Wait until the load is at rest; wind, vibration "
                          "or something that touches the pan keeps a weight moving.")};
  if (weighing.weight == 0)
    return {.code = "zero",
            .cause = say("The scale answers, and its weight is zero: {0}.", weight),
            .remedy = say("The line is in order. Put a load on; if the weight stays zero, see to "
                          "the pan and its transport locks.")};
  return {.code = "good",
          .cause = say("The scale answers with a good weight: {0}.", weight),
          .remedy = say("Nothing is to be done.")};
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
  while (polls.done < kPolls && Clock::now() < end && !Ending::asked()) {
    practice.progress.show(say("poll {0}", polls.done + 1));
    const Weighing weighing = session.read(id, true);
    // A poll that the signal cut into says nothing about the scale.
    if (!weighing.good() && Ending::asked()) break;
    ++polls.done;
    last = weighing.error;
    if (isAnswer(weighing)) {
      ++polls.answered;
      times.push_back(weighing.poll);
      diagnosis.weighing = weighing;
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
  if (Ending::asked()) return std::nullopt;
  diagnosis.polls.wire = wireTime(connection, *model.sheet);
  const host::LastError last = poll(connection, practice, diagnosis);
  const PollTimes& polls = diagnosis.polls;
  if (polls.answered > 0 && polls.answered < polls.done) {
    return Finding{.code = "unsteady",
                   .cause = say("Of {0} polls {1} were answered and {2} were not.", polls.done,
                                polls.answered, polls.done - polls.answered),
                   .remedy = say("Check plugs and earth, shorten the cable, and see that no other "
                                 "program asks this scale.")};
  }
  if (diagnosis.weighing) {
    diagnosis.weighs = diagnosis.weighing->good();
    if (auto note = unaskedNote(connection, model)) diagnosis.notes.push_back(std::move(*note));
    if (diagnosis.weighs) {
      if (auto doubt = weightDoubtOn(connection)) return doubt;
    }
    return weighingVerdict(*diagnosis.weighing, connection.model);
  }
  if (last.code == kNoConnection && !connection.network)
    return lineFails(connection.device, last.text);
  if (Ending::asked()) return std::nullopt;
  practice.progress.show(say("listening"));
  const Heard heard = listen(connection, *model.sheet);
  if (Ending::asked()) return std::nullopt;
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
  if (Ending::asked()) return std::nullopt;
  practice.progress.show(say("looking at the line"));
  if (connection.network) {
    if (auto trouble = hostTrouble(connection)) return trouble;
  } else {
    diagnosis.notes = deviceNotes(connection.device, practice.roots);
    if (auto trouble = deviceTrouble(connection, practice.roots, diagnosis)) return trouble;
  }
  return lineVerdict(connection, *model, practice, diagnosis);
}

}  // namespace

bool tellsMotion(int model) {
  const ScalesModel* row = findScalesModel(model);
  // The emulator has no sheet, and does move.
  return row == nullptr || row->sheet == nullptr ||
         row->sheet->motion.told == Motion::Told::ByFrame;
}

std::chrono::milliseconds longestDiagnosis(const Connection& connection) {
  const ScalesModel* model = findScalesModel(connection.model);
  if (modelTrouble(model, connection.model)) return Time{0};
  // On a line that others use, each drain may take all of its time.
  const Time poll =
      longestPoll(*model->sheet, connection.network, {.stretch = Time{kLongestDrain_ms}});
  Time sum = std::max(kPollingTime + poll, kHopeless * poll);
  sum += longestListening(*model->sheet);
  // The name, the first connection, the component's and the one that is listened to.
  if (connection.network) sum += 4 * kLongestConnect;
  return sum;
}

Diagnosis diagnose(const Connection& connection, const Practice& practice) {
  Diagnosis diagnosis;
  const PollTimes& polls = diagnosis.polls;
  const auto verdict = verdictOn(connection, practice, diagnosis);
  diagnosis.verdict =
      verdict ? *verdict
              : Finding{.code = "stopped",
                        .cause = say("Stopped before there was a verdict; polls {0}, answered {1}.",
                                     polls.done, polls.answered),
                        .remedy = say("Run it again and let it come to its end.")};
  return diagnosis;
}

}  // namespace weigh
