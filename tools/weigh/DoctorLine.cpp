#include "DoctorLine.h"

#include <fcntl.h>
#include <linux/serial.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "FrameReader.h"
#include "Noise.h"
#include "Recognise.h"
#include "Sleep.h"
#include "Texts.h"

namespace weigh {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// A scale that transmits by itself does so at least once in this time.
constexpr milliseconds kStreamTime{2000};
/// What a scale that is asked says before it is asked comes from another protocol.
constexpr milliseconds kUnaskedTime{700};
/// The longest budget that a driver gives an answer, and as much again.
constexpr milliseconds kAnswerTime{1000};
/// A line that falls silent for so long has said what it had to say.
constexpr milliseconds kEndOfAnswer{300};
constexpr int kRequests = 2;
constexpr int kNap_ms = 10;
/// Enough for several frames of any model.
constexpr std::size_t kEnough = 1024;
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

void open(COrbComLanPort& port, const Connection& connection, const LineSettings& line) {
  if (connection.network) {
    port.OpenNetworkPort(connection.host.c_str(), connection.tcpPort);
    return;
  }
  port.OpenComPort(connection.device.c_str());
  port.setBitRate(static_cast<unsigned long>(connection.baud));
  port.setParity(line.parity);
  port.setDataBits(line.dataBits);
  port.setStopBits(line.stopBits);
}

/// Takes what comes for so long, or until the line falls silent behind the first bytes.
ByteRow collect(COrbComLanPort& port, bool network, milliseconds time, const Interrupt& interrupt) {
  std::array<unsigned char, kEnough> buffer = {};
  // A network port gives all that is asked for or nothing.
  const std::size_t size = network ? 1 : buffer.size();
  ByteRow bytes;
  Clock::time_point last = Clock::now();
  const Clock::time_point end = last + time;
  while (Clock::now() < end && bytes.size() < kEnough && !interrupt.asked()) {
    const int got = port.read(buffer.data(), size);
    if (got > 0) {
      bytes.insert(bytes.end(), buffer.begin(), buffer.begin() + got);
      last = Clock::now();
      continue;
    }
    if (port.getState() != COrbComLanPort::kConnected) break;
    if (!bytes.empty() && Clock::now() - last > kEndOfAnswer) break;
    orbSleep_mSec(kNap_ms);
  }
  return bytes;
}

/// The first request of a poll, as the driver sends it.
void ask(COrbComLanPort& port, const Request& request) {
  static constexpr std::array<std::uint8_t, Bytes::kCapacity> kEmptyBuffer = {};
  Bytes first = request.first;
  first.add(std::span(kEmptyBuffer).first(request.frameHead));
  port.write(first.data(), first.size());
  if (request.second.empty()) return;
  orbSleep_mSec(request.pause_ms);
  port.write(request.second.data(), request.second.size());
}

/// "06 01 02 ..."
std::string hexText(const ByteRow& bytes) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  static constexpr unsigned kHalf = 4;
  std::string text;
  for (const std::uint8_t byte : std::span(bytes).first(std::min(bytes.size(), kShown))) {
    if (!text.empty()) text += ' ';
    text += kDigits[byte >> kHalf];
    text += kDigits[byte & 0x0FU];
  }
  return bytes.size() > kShown ? text + " ..." : text;
}

std::string lineText(const Connection& connection) {
  return connection.network ? connection.host + ':' + std::to_string(connection.tcpPort)
                            : connection.device;
}

/// "8N1"
std::string settingsText(const LineSettings& line) {
  static constexpr std::string_view kParities = "NOEMS";
  return std::to_string(line.dataBits) + kParities[static_cast<std::size_t>(line.parity)] +
         (line.stopBits == COMPort::One ? '1' : '2');
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
  const ErrorCounters counters(connection);
  COrbComLanPort port;
  open(port, connection, sheet.line);
  heard.unasked = collect(port, connection.network, asks ? kUnaskedTime : kStreamTime, interrupt);
  for (int i = 0; asks && i < kRequests && !interrupt.asked(); ++i) {
    ask(port, sheet.request);
    heard.answers.push_back(collect(port, connection.network, kAnswerTime, interrupt));
  }
  heard.hungUp = port.getState() != COrbComLanPort::kConnected;
  counters.addTo(heard);
  return heard;
}

Finding judge(const Heard& heard, const ScalesModel& model, const Connection& connection) {
  const std::string line = lineText(connection);
  const std::string number = std::to_string(model.number);
  const std::string baud = std::to_string(connection.baud);
  const std::string settings = settingsText(model.sheet->line);
  const ByteRow all = heard.all();
  const std::string bytes = hexText(all);

  if (all.empty() && connection.network) {
    return finding(heard.hungUp ? advice::kHangsUp : advice::kConnectsSilent,
                   {connection.host, std::to_string(connection.tcpPort), number});
  }
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
