#include "DoctorLine.h"

#include <fcntl.h>
#include <linux/serial.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
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
std::string shown(const ByteRow& bytes) {
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
  return std::any_of(heard.answers.begin(), heard.answers.end(), [&](const ByteRow& answer) {
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

Finding otherModelFinding(const recognise::Candidate& other, const std::string& line,
                          const std::string& model, const std::string& bytes) {
  std::string kin;
  for (const int number : other.kin) kin += (kin.empty() ? "" : ", ") + std::to_string(number);
  return finding(advice::kOtherModel,
                 {line, model, bytes, other.model->pageText, std::to_string(other.model->number),
                  kin.empty() ? kin : fill(text::kOrKin, {kin})});
}

}  // namespace

ByteRow Heard::all() const {
  ByteRow bytes = unasked;
  for (const ByteRow& answer : answers) bytes.insert(bytes.end(), answer.begin(), answer.end());
  return bytes;
}

milliseconds longestListening(const ProtocolSheet& sheet) {
  if (sheet.request.first.empty()) return kStreamTime;
  return kUnaskedTime + kRequests * (kAnswerTime + milliseconds{sheet.request.pause_ms});
}

Heard listen(const Connection& connection, const ProtocolSheet& sheet, const Interrupt& interrupt) {
  const bool asks = !sheet.request.first.empty();
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

Finding judge(const Heard& heard, const ScalesModel& model, const Connection& connection) {
  const std::string line = lineText(connection);
  const std::string number = std::to_string(model.number);
  const std::string baud = std::to_string(connection.baud);
  const std::string settings = framingText(model.sheet->line);
  const ByteRow all = heard.all();
  const std::string bytes = shown(all);

  if (all.empty() && connection.network) {
    return finding(heard.hungUp ? advice::kHangsUp : advice::kConnectsSilent,
                   {connection.host, std::to_string(connection.tcpPort), number});
  }
  if (all.empty() && heard.hungUp)
    return finding(advice::kLineFails, {connection.device, std::strerror(EIO)});
  if (heard.framingErrors > 0) return finding(advice::kWrongSpeed, {line, number, bytes, baud});
  if (heard.parityErrors > 0)
    return finding(advice::kParityErrors, {line, number, bytes, settings});
  if (all.empty()) return finding(advice::kSilent, {line, number, bytes, baud});
  if (isOwn(heard, model)) return finding(advice::kNotRead, {line, number, bytes});
  if (isEcho(heard, model.sheet->request)) return finding(advice::kEcho, {line, number, bytes});
  if (const auto other = otherModel(heard)) return otherModelFinding(*other, line, number, bytes);
  switch (recognise::judgeNoise(all)) {
    case recognise::Noise::WrongSpeed:
      return finding(advice::kWrongSpeed, {line, number, bytes, baud});
    case recognise::Noise::EvenParity:
      return finding(advice::kWrongParity, {line, number, bytes, say(text::kEven), settings});
    case recognise::Noise::OddParity:
      return finding(advice::kWrongParity, {line, number, bytes, say(text::kOdd), settings});
    case recognise::Noise::CleanText: return finding(advice::kCleanText, {line, number, bytes});
    case recognise::Noise::TooFew:
    case recognise::Noise::Unclear: break;
  }
  return finding(advice::kGarbled, {line, number, bytes});
}

}  // namespace weigh
