#include "DoctorLine.h"

#include <fcntl.h>
#include <linux/serial.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "Failure.h"
#include "FindLine.h"
#include "FindReport.h"
#include "Noise.h"
#include "Recognise.h"
#include "Texts.h"

namespace weigh {

namespace {

using std::chrono::milliseconds;

/// A scale that transmits by itself does so at least once in this time.
constexpr milliseconds kStreamTime{2000};
/// What a scale that is asked says before it is asked comes from another protocol.
constexpr milliseconds kUnaskedTime{700};
/// The longest budget that a driver gives an answer, and as much again.
constexpr milliseconds kAnswerTime{1000};
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

/// The bytes of a sentence.
std::string shown(const recognise::Bytes& bytes) {
  const std::string text = hexText(std::span(bytes).first(std::min(bytes.size(), kShown)));
  return bytes.size() > kShown ? text + " ..." : text;
}

std::string lineText(const Connection& connection) {
  return connection.network ? connection.host + ':' + std::to_string(connection.tcpPort)
                            : connection.device;
}

recognise::Evidence stream(const Heard& heard) {
  return {.origin = recognise::Origin::Stream, .pieces = {heard.unasked}};
}

recognise::Evidence answers(const Heard& heard) {
  return {.origin = recognise::Origin::Answer, .pieces = heard.answers};
}

bool isOwn(const Heard& heard, const ScalesModel& model) {
  return recognise::examine(model, stream(heard)) || recognise::examine(model, answers(heard));
}

bool isEcho(const Heard& heard, const Request& request) {
  if (request.first.empty() || !heard.unasked.empty()) return false;
  const auto sent = request.first.view();
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

/// The numbers of the models that speak like this one, as an end of a sentence.
std::string kinText(const recognise::Candidate& candidate) {
  std::string kin;
  for (const int number : candidate.kin) kin += (kin.empty() ? "" : ", ") + std::to_string(number);
  return kin.empty() ? kin : fill(text::kOrKin, {kin});
}

/// Its number, and theirs behind it: "25 / 39".
std::string numbersOf(const recognise::Candidate& candidate) {
  std::string numbers = std::to_string(candidate.model->number);
  for (const int number : candidate.kin) numbers += " / " + std::to_string(number);
  return numbers;
}

/// The call that finds out which scale is on this line.
std::string findCall(const Connection& connection) {
  return connection.network ? "weigh find --host " + connection.host + " --tcp-port " +
                                  std::to_string(connection.tcpPort)
                            : "weigh find --port " + connection.device;
}

std::string speedText(const Connection& connection) {
  return connection.network ? say(text::kConvertersSpeed)
                            : fill(text::kBaud, {std::to_string(connection.baud)});
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

Heard listen(const Connection& connection, const ProtocolSheet& sheet, const Interrupt& interrupt) {
  const bool asks = !transmitsByItself(sheet);
  Heard heard;
  try {
    const ErrorCounters counters(connection);
    FindLine line(connection, interrupt);
    line.set(connection.baud, sheet.line);
    heard.unasked = line.listen(asks ? kUnaskedTime : kStreamTime);
    for (int i = 0; asks && i < kRequests && !interrupt.asked(); ++i) {
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

std::optional<Finding> unaskedNote(const Connection& connection, const ScalesModel& model,
                                   const Interrupt& interrupt) {
  if (connection.network || transmitsByItself(*model.sheet)) return std::nullopt;
  try {
    FindLine line(connection, interrupt);
    line.set(connection.baud, model.sheet->line);
    const recognise::Bytes bytes = line.listen(kUnaskedTime);
    if (bytes.empty()) return std::nullopt;
    return finding(advice::kUnasked, {connection.device, std::to_string(model.number), shown(bytes),
                                      findCall(connection)});
  } catch (const Failure&) {
    // The weight is there all the same.
    return std::nullopt;
  }
}

Finding judge(const Heard& heard, const ScalesModel& model, const Connection& connection) {
  const std::string number = std::to_string(model.number);
  const recognise::Bytes all = heard.all();
  if (all.empty() && connection.network) {
    return finding(heard.hungUp ? advice::kHangsUp : advice::kConnectsSilent,
                   {connection.host, std::to_string(connection.tcpPort), number});
  }
  if (all.empty() && heard.hungUp)
    return finding(advice::kLineFails, {connection.device, std::strerror(EIO)});

  const auto found = [&](const Advice& advice, const std::array<std::string, 3>& own = {}) {
    return finding(advice,
                   {lineText(connection), number, shown(all), speedText(connection),
                    model.sheet->line.text(), findCall(connection), own[0], own[1], own[2]});
  };
  // What the hardware counts is certain.
  if (heard.framingErrors > 0) return found(advice::kWrongSpeed);
  if (heard.parityErrors > 0) return found(advice::kParityErrors);
  if (all.empty()) return found(advice::kSilent);
  if (isOwn(heard, model)) return found(advice::kNotRead);
  if (isEcho(heard, model.sheet->request)) return found(advice::kEcho);
  if (const auto other = otherModel(heard)) {
    return found(advice::kOtherModel,
                 {other->model->pageText(), numbersOf(*other), kinText(*other)});
  }
  switch (recognise::judgeNoise(all)) {
    case recognise::Noise::WrongSpeed: return found(advice::kWrongSpeed);
    case recognise::Noise::EvenParity: return found(advice::kWrongParity, {say(text::kEven)});
    case recognise::Noise::OddParity: return found(advice::kWrongParity, {say(text::kOdd)});
    case recognise::Noise::CleanText: return found(advice::kCleanText);
    case recognise::Noise::TooFew:
    case recognise::Noise::Unclear: break;
  }
  return found(advice::kGarbled);
}

}  // namespace weigh
