#include <fcntl.h>
#include <fmt/ranges.h>
#include <linux/serial.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "Doctor.h"
#include "Fields.h"
#include "ModelNotes.h"
#include "Noise.h"
#include "OpenLine.h"
#include "Recognise.h"
#include "Text.h"

namespace weigh {

namespace {

using std::chrono::milliseconds;

/// A scale that transmits by itself does so at least once in this time.
constexpr milliseconds kStreamTime{2000};
/// What a scale that is asked says before it is asked comes from another protocol.
constexpr milliseconds kUnaskedTime{700};
constexpr milliseconds kAnswerTime{2 * kLongestBudget_ms};
constexpr int kRequests = 2;
constexpr std::size_t kShown = 32;

/// Fewer guarded bytes than this agree by chance in a line full of noise.
constexpr double kConvincing = 2.0;

/// The hardware's count of characters that came in broken.
class ErrorCounters {
 public:
  explicit ErrorCounters(const Connection& connection)
      : line_(connection.network
                  ? -1
                  : ::open(connection.device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    known_ = read(start_);
  }
  ~ErrorCounters() {
    if (line_ >= 0) ::close(line_);
  }
  ErrorCounters(const ErrorCounters&) = delete;
  ErrorCounters& operator=(const ErrorCounters&) = delete;

  void addTo(Heard& heard) const {
    serial_icounter_struct now = {};
    if (!known_ || !read(now)) return;
    heard.framingErrors = now.frame - start_.frame;
    heard.parityErrors = now.parity - start_.parity;
  }

 private:
  bool read(serial_icounter_struct& counters) const {
    return line_ >= 0 && ::ioctl(line_, TIOCGICOUNT, &counters) == 0;
  }

  int line_;
  serial_icounter_struct start_ = {};
  bool known_;
};

recognise::Evidence stream(const Heard& heard) {
  return {.origin = recognise::Origin::Stream, .pieces = {heard.unasked}};
}

recognise::Evidence answers(const Heard& heard) {
  return {.origin = recognise::Origin::Answer, .pieces = heard.answers};
}

bool isOwn(const Heard& heard, const ScalesModel& model) {
  return recognise::examine(model, stream(heard)) || recognise::examine(model, answers(heard));
}

bool isEcho(const Heard& heard, const ProtocolSheet& sheet) {
  if (transmitsByItself(sheet) || !heard.unasked.empty()) return false;
  const auto sent = sheet.request.first.view();
  return std::any_of(
      heard.answers.begin(), heard.answers.end(), [&](const recognise::Bytes& answer) {
        return answer.size() >= sent.size() && std::equal(sent.begin(), sent.end(), answer.begin());
      });
}

/// The model whose frames these are; none if no frame convinces.
std::optional<recognise::Candidate> otherModel(const Heard& heard) {
  std::vector<recognise::Candidate> candidates = recognise::recognise(stream(heard));
  std::vector<recognise::Candidate> asked = recognise::recognise(answers(heard));
  std::vector<recognise::Candidate>& best =
      !candidates.empty() && (asked.empty() || candidates.front().weightOfEvidence() >=
                                                   asked.front().weightOfEvidence())
          ? candidates
          : asked;
  if (best.empty() || best.front().weightOfEvidence() < kConvincing) return std::nullopt;
  return best.front();
}

/// Its number, and theirs behind it: "25 / 39".
std::string numbersOf(const recognise::Candidate& candidate) {
  std::string numbers = std::to_string(candidate.model->number);
  for (const int number : candidate.kin) numbers += fmt::format(" / {}", number);
  return numbers;
}

/// The call that finds out which scale is on this line.
std::string findCall(const Connection& connection) {
  return "weigh find " + connection.options(false);
}

}  // namespace

recognise::Bytes Heard::all() const {
  recognise::Bytes bytes = unasked;
  for (const recognise::Bytes& answer : answers)
    bytes.insert(bytes.end(), answer.begin(), answer.end());
  return bytes;
}

milliseconds longestListening(const ProtocolSheet& sheet) {
  if (transmitsByItself(sheet)) return kStreamTime;
  return kUnaskedTime + kRequests * (kAnswerTime + milliseconds{sheet.request.pause_ms});
}

Heard listen(const Connection& connection, const ProtocolSheet& sheet) {
  const bool asks = !transmitsByItself(sheet);
  Heard heard;
  try {
    const ErrorCounters counters(connection);
    OpenLine line(connection);
    line.set(connection.baud, sheet.line);
    heard.unasked = line.listen(asks ? kUnaskedTime : kStreamTime);
    for (int i = 0; asks && i < kRequests && !Ending::asked(); ++i) {
      line.ask(sheet.request);
      heard.answers.push_back(line.hear(kAnswerTime, kAnswerTime));
    }
    heard.hungUp = !line.isUp();
    counters.addTo(heard);
  } catch (const Failure&) {
    // It was open a moment ago.
    heard.hungUp = true;
  }
  return heard;
}

std::optional<Finding> unaskedNote(const Connection& connection, const ScalesModel& model) {
  if (connection.network || transmitsByItself(*model.sheet)) return std::nullopt;
  try {
    OpenLine line(connection);
    line.set(connection.baud, model.sheet->line);
    const recognise::Bytes bytes = line.listen(kUnaskedTime);
    if (bytes.empty()) return std::nullopt;
    return Finding{
        .code = "unasked-bytes",
        .cause = say("Bytes come in on {0} that nobody asked for, as no scale of model {1} sends "
                     "them; the weight may be made of them: {2}.",
                     connection.device, model.number, hexText(bytes, kShown)),
        .remedy = say("Compare the weight with the scale's display; `{0}` tells which model the "
                      "bytes fit.",
                      findCall(connection))};
  } catch (const Failure&) {
    // The weight is there all the same.
    return std::nullopt;
  }
}

namespace {

Finding misread(const notes::WrongSetting& wrong) {
  return {
      .code = "misread-weight", .cause = wrong.sign + " " + wrong.cause, .remedy = wrong.wayOut};
}

}  // namespace

std::optional<Finding> weightDoubt(const ScalesModel& model, Frame frame,
                                   std::span<const std::uint8_t> heard) {
  const auto bytesAt = [&](const std::vector<std::size_t>& places) {
    recognise::Bytes bytes;
    for (const std::size_t place : places) bytes.push_back(frame[place]);
    return hexText(bytes);
  };
  const ProtocolSheet& sheet = *model.sheet;
  const std::string field = bytesAt(recognise::placesOf(sheet.weight, frame));
  const std::string remedy = say(
      "The scale sends its weight in another way than model {0} reads it; `weigh models --about "
      "{0}` tells what to set.",
      model.number);
  const auto known = notes::misreadingIn(model.number, heard.empty() ? frame : heard);
  if (recognise::hidesWeight(sheet, frame)) {
    Finding hidden{
        .code = "hidden-weight",
        .cause = say("The weight reads 0, but that is no zero: {0} stands in its place.", field),
        .remedy = remedy};
    if (known) {
      hidden.cause += " " + known->cause;
      hidden.remedy = known->wayOut;
    }
    return hidden;
  }
  if (known) return misread(*known);
  const std::vector<std::size_t> unread = recognise::unreadBytes(sheet, frame);
  if (unread.empty()) return std::nullopt;
  return Finding{.code = "unread-weight",
                 .cause = say("Not all of the weight is read: of {0} the number leaves out {1}.",
                              field, bytesAt(unread)),
                 .remedy = remedy};
}

std::optional<Finding> weightDoubtOn(const Connection& connection) {
  const ScalesModel* model = findScalesModel(connection.model);
  if (model == nullptr || model->sheet == nullptr) return std::nullopt;
  const ProtocolSheet& sheet = *model->sheet;
  const bool asks = !transmitsByItself(sheet);
  recognise::Evidence evidence{asks ? recognise::Origin::Answer : recognise::Origin::Stream, {}};
  recognise::Bytes heard;
  try {
    OpenLine line(connection);
    line.set(connection.baud, sheet.line);
    for (int i = 0; i < kRequests && !Ending::asked(); ++i) {
      if (asks) line.ask(sheet.request);
      // A frame of a stream may begin with the end of the one before it, a pause earlier.
      evidence.pieces.push_back(asks ? line.hear(kAnswerTime, kAnswerTime)
                                     : line.listen(kAnswerTime));
      const recognise::Bytes& piece = evidence.pieces.back();
      heard.insert(heard.end(), piece.begin(), piece.end());
      if (const auto found = recognise::examine(*model, evidence))
        return weightDoubt(*model, found->frame, heard);
    }
  } catch (const Failure&) {
    // The weight is there all the same.
  }
  // A driver without checks takes its frame out of bytes that are none of the model's.
  if (const auto known = notes::misreadingIn(model->number, heard)) return misread(*known);
  return std::nullopt;
}

std::optional<Finding> otherFormat(const ScalesModel& model, std::span<const std::uint8_t> bytes,
                                   const std::string& line) {
  const auto format = notes::otherFormatIn(model.number, bytes);
  if (!format) return std::nullopt;
  return Finding{
      .code = "other-format",
      .cause = say("What comes in on {0} is another output of the scale of model {1}, {2}: {3}.",
                   line, model.number, format->name, hexText(bytes, kShown)),
      .remedy = format->wayOut};
}

std::string onTheScale(int model) {
  const std::vector<std::string> settings = notes::settingsOf(model);
  return settings.empty() ? "" : " " + say("On the scale itself: {0}", joined(settings, " "));
}

Finding judge(const Heard& heard, const ScalesModel& model, const Connection& connection) {
  const recognise::Bytes all = heard.all();
  const std::string line = connection.address();
  if (all.empty() && connection.network) {
    if (heard.hungUp) {
      return {.code = "hangs-up",
              .cause = say("{0} takes the connection on TCP port {1} and ends it at once.",
                           connection.host, connection.tcpPort),
              .remedy = say("See that no other program is connected: most converters take one "
                            "connection at a time.")};
    }
    return {.code = "connects-silent",
            .cause = say("{0} takes the connection on TCP port {1}, and then nothing comes.",
                         connection.host, connection.tcpPort),
            .remedy = say("See to the converter's serial side: speed, cable, is the scale on; and "
                          "that model {0} is the right one.",
                          model.number) +
                      onTheScale(model.number)};
  }
  if (all.empty() && heard.hungUp) return lineFails(connection.device, std::strerror(EIO));

  const std::string bytes = hexText(all, kShown);
  const std::string find = findCall(connection);
  const std::string wanted = model.sheet->line.text();
  const auto wrongSpeed = [&] {
    const std::string speed =
        connection.network ? say("set in the converter") : say("{0} baud", connection.baud);
    return Finding{
        .code = "wrong-speed",
        .cause = say("The bytes on {0} look as if the scale sent at another speed than "
                     "the line's ({1}): {2}.",
                     line, speed, bytes),
        .remedy = say("Set the speed that stands in the scale's menu; `{0}` finds it out.", find)};
  };
  const auto wrongParity = [&](const std::string& cause) {
    return Finding{.code = "wrong-parity",
                   .cause = cause,
                   .remedy = say("Set {0} in the scale's menu; if it has no such setting, it is "
                                 "another model.",
                                 wanted)};
  };
  const auto garbled = [&](const std::string& cause) {
    return Finding{.code = "garbled",
                   .cause = cause,
                   .remedy = say("Set the protocol of model {0} in the scale's menu; `{1}` tells "
                                 "which model the bytes fit.",
                                 model.number, find)};
  };
  // What the hardware counts is certain.
  if (heard.framingErrors > 0) return wrongSpeed();
  if (heard.parityErrors > 0) {
    return wrongParity(say("The bytes on {0} come with the wrong parity; model {1} wants {2}: {3}.",
                           line, model.number, wanted, bytes));
  }
  if (all.empty()) {
    return {.code = "silent",
            .cause = say("{0} opens, but nothing comes in at {1} baud.", line, connection.baud),
            .remedy = say("Is the scale on, are its lines crossed (TX to RX), is its port set to "
                          "the protocol of model {0}? `{1}` tries all models and speeds.",
                          model.number, find) +
                      onTheScale(model.number)};
  }
  if (auto format = otherFormat(model, all, line)) return *format;
  if (isOwn(heard, model)) {
    return {
        .code = "not-read",
        .cause = say("Frames of model {0} come in on {1}, but no poll gets one: {2}.", model.number,
                     line, bytes),
        .remedy = say("Over TCP a scale that transmits by itself must pause for more than 100 ms "
                      "now and then, and an answer must have the length that the driver asks "
                      "for; over a serial line see to plugs and earth.")};
  }
  if (isEcho(heard, *model.sheet)) {
    return {.code = "echo",
            .cause = say("What is sent on {0} comes back unchanged: {1}.", line, bytes),
            .remedy = say("Take off the loop-back plug, or switch off the echo of the RS-485 "
                          "adapter; TX and RX may be joined.")};
  }
  if (const auto other = otherModel(heard)) {
    const std::string kin =
        other->kin.empty() ? "" : say("; models with the same frames: {0}", joined(other->kin));
    return {.code = "other-model",
            .cause = say("What comes in on {0} are frames of another model than {1}: {2}{3}.", line,
                         model.number, other->model->pageText(), kin),
            .remedy = say("Set model {0}, or set the scale to the protocol of model {1}.",
                          numbersOf(*other), model.number)};
  }
  switch (recognise::judgeNoise(all)) {
    case recognise::Noise::WrongSpeed: return wrongSpeed();
    case recognise::Noise::EvenParity:
      return wrongParity(
          say("The bytes on {0} look like 7 data bits with even parity, and model {1} "
              "wants {2}: {3}.",
              line, model.number, wanted, bytes));
    case recognise::Noise::OddParity:
      return wrongParity(
          say("The bytes on {0} look like 7 data bits with odd parity, and model {1} "
              "wants {2}: {3}.",
              line, model.number, wanted, bytes));
    case recognise::Noise::CleanText:
      return garbled(
          say("Readable text comes in on {0}, so speed and parity are right, but never a "
              "frame of model {1}: {2}.",
              line, model.number, bytes));
    case recognise::Noise::TooFew:
    case recognise::Noise::Unclear: break;
  }
  return garbled(
      say("Bytes come in on {0}, but never a frame of model {1}: {2}.", line, model.number, bytes));
}

}  // namespace weigh
