#include "Explain.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace recognise {

namespace {

using exchange::Record;

/// What goes out in one write with the first part of a request may have the head of the last
/// answer behind it.
bool isFirstPart(const Request& request, const Bytes& written) {
  const auto first = request.first.view();
  return !first.empty() && written.size() == first.size() + request.frameHead &&
         std::equal(first.begin(), first.end(), written.begin());
}

/// Whether a driver writes this for a price, whatever price it is, or for a setting in its place.
bool isPriceCommand(const ProtocolSheet& sheet, Frame written) {
  if (const auto& price = sheet.commands.price) {
    const Frame head = price->head.bytes.view();
    return written.size() == price->of(0).bytes.size() &&
           std::ranges::equal(head, written.first(head.size()));
  }
  return std::ranges::any_of(sheet.commands.setup, [&](const SetupCommand& setup) {
    return std::ranges::equal(setup.command.bytes.view(), written);
  });
}

Role roleOfWrite(const ProtocolSheet& sheet, const Bytes& written) {
  const auto is = [&](const ByteRow& bytes) { return std::ranges::equal(bytes.view(), written); };
  const Request& request = sheet.request;
  const Commands& commands = sheet.commands;
  if (isFirstPart(request, written))
    return request.second.empty() ? Role::Request : Role::RequestFirst;
  if (!request.second.empty() && is(request.second)) return Role::RequestSecond;
  if (commands.tare && is(commands.tare->bytes)) return Role::Tare;
  if (commands.zero && is(commands.zero->bytes)) return Role::Zero;
  return isPriceCommand(sheet, written) ? Role::Price : Role::UnknownWrite;
}

/// Whether all that was written is of this model, and a request among it.
bool couldHaveWritten(const ScalesModel& model, std::span<const Record> log) {
  bool asked = transmitsByItself(*model.sheet);
  for (const Record& record : log) {
    if (record.kind != Record::Kind::Outgoing) continue;
    const Role role = roleOfWrite(*model.sheet, record.bytes);
    if (role == Role::UnknownWrite) return false;
    asked = asked || role == Role::Request || role == Role::RequestFirst;
  }
  return asked;
}

Evidence evidenceIn(std::span<const Record> log, const ScalesModel& model) {
  Evidence evidence{.origin = Origin::Answer, .pieces = {}};
  if (transmitsByItself(*model.sheet)) {
    evidence.origin = Origin::Stream;
    Bytes all;
    for (const Record& record : log) {
      if (record.kind == Record::Kind::Incoming) {
        all.insert(all.end(), record.bytes.begin(), record.bytes.end());
      }
    }
    evidence.pieces = {std::move(all)};
    return evidence;
  }
  // As the driver read them: what came after an answer was thrown away.
  const Explanation explanation = explainLog(log, model);
  for (const ExplainedRecord& record : explanation.records) {
    if (record.verdict && !record.verdict->frame.empty()) {
      evidence.pieces.push_back(record.verdict->frame);
    }
  }
  return evidence;
}

/// For bytes that a driver has read as a frame, its start byte found, and refused.
Refusal refusalOf(const ProtocolSheet& sheet, Frame frame) {
  Refusal refusal{.size = frame.size(), .wantedSize = shortestFrame(sheet), .wrong = {}};
  if (frame.empty()) return refusal;
  const auto* style = std::get_if<TerminatorRead>(&sheet.read);
  if (style != nullptr && !endsFrame(*style, frame)) {
    refusal.reason = Refusal::Reason::NoEnd;
    return refusal;
  }
  if (frame.size() < refusal.wantedSize) {
    refusal.reason = Refusal::Reason::TooShort;
    return refusal;
  }
  refusal.reason = Refusal::Reason::WrongBytes;
  for (const FixedByte& byte : wrongBytes(sheet, frame)) {
    const std::size_t place = byte.placeIn(frame.size());
    const auto wanted = byte.oneOf.view();
    refusal.wrong.push_back({place, frame[place], {wanted.begin(), wanted.end()}});
  }
  if (refusal.wrong.empty() && sheet.checksum.of != nullptr) {
    const std::size_t place = sheet.checksum.at;
    refusal.reason = Refusal::Reason::Checksum;
    refusal.wrong = {{place, frame[place], {sheet.checksum.of(frame)}}};
  }
  return refusal;
}

}  // namespace

LogExplainer::LogExplainer(const ScalesModel& model, TellRecord tellRecord, TellPoll tellPoll)
    : sheet_(*model.sheet), tellRecord_(std::move(tellRecord)), tellPoll_(std::move(tellPoll)) {}

void LogExplainer::take(Record record) {
  switch (record.kind) {
    case Record::Kind::System:
      endPoll();
      add(std::move(record), Role::Event);
      break;
    case Record::Kind::Outgoing: takeWrite(std::move(record)); break;
    case Record::Kind::Incoming: takeRead(std::move(record)); break;
  }
}

void LogExplainer::end() {
  endPoll();
  tellHeld();
}

void LogExplainer::takeWrite(Record record) {
  const Role role = roleOfWrite(sheet_, record.bytes);
  switch (role) {
    case Role::Request:
    case Role::RequestFirst:
      endAttempt();
      beginAttempt();
      break;
    case Role::RequestSecond: break;
    default: endPoll(); break;
  }
  add(std::move(record), role);
}

void LogExplainer::takeRead(Record record) {
  if (transmitsByItself(sheet_)) {
    takeStreamed(std::move(record));
  } else if (!open_ || isWhole()) {
    add(std::move(record), Role::Drained, false);
  } else {
    takeAnswer(std::move(record));
  }
}

/// A scale that transmits is read byte by byte up to a start byte; what comes in larger pieces
/// before one is thrown away.
void LogExplainer::takeStreamed(Record record) {
  const bool fits = frame_.size() + record.bytes.size() <= frameLength(sheet_);
  if (!frame_.empty() && !fits) endAttempt();
  if (frame_.empty() && record.bytes.size() > 1) {
    endAttempt();
    add(std::move(record), Role::Drained, false);
    return;
  }
  if (!open_) beginAttempt();
  takeAnswer(std::move(record));
}

void LogExplainer::takeAnswer(Record record) {
  if (frame_.empty() && !mayBegin(sheet_, record.bytes.front())) {
    add(std::move(record), Role::Skipped);
    return;
  }
  frame_.insert(frame_.end(), record.bytes.begin(), record.bytes.end());
  add(std::move(record), Role::FramePart);
  if (isWhole()) endAttempt();
}

bool LogExplainer::isWhole() const {
  if (const auto* style = std::get_if<TerminatorRead>(&sheet_.read)) {
    return ::isWhole(*style, frame_);
  }
  return frame_.size() >= frameLength(sheet_);
}

void LogExplainer::beginAttempt() {
  if (attempt_ == 0) ++poll_;
  ++attempt_;
  open_ = true;
  frame_.clear();
}

void LogExplainer::endAttempt() {
  if (!open_) return;
  open_ = false;
  Verdict verdict;
  verdict.frame = std::exchange(frame_, {});
  verdict.poll = poll_;
  verdict.attempt = attempt_;
  verdict.good = isGood(sheet_, verdict.frame);
  Outcome::Next next = Outcome::Next::AskAgain;
  if (verdict.good) {
    verdict.said = readingOf(sheet_, verdict.frame);
    verdict.fields = fieldsOf(sheet_, verdict.frame);
    code_ = verdict.said.code;
    next = verdict.said.next;
    anyGood_ = true;
  } else {
    verdict.refusal = refusalOf(sheet_, verdict.frame);
    reason_ = verdict.refusal.reason;
  }
  held_->verdict = std::move(verdict);
  if (next != Outcome::Next::AskAgain || attempt_ >= sheet_.asking.attempts) endPoll();
}

void LogExplainer::endPoll() {
  endAttempt();
  if (attempt_ == 0) return;
  tellPoll_({anyGood_ && code_ == kSuccess, code_, attempt_, reason_});
  attempt_ = 0;
  anyGood_ = false;
  code_ = kNoAnswer;
}

void LogExplainer::add(Record record, Role role, bool ofAttempt) {
  tellHeld();
  const bool counts = ofAttempt && attempt_ > 0 && role != Role::Event;
  held_ = {std::move(record), role, counts ? poll_ : 0, counts ? attempt_ : 0,
           role == Role::FramePart ? frame_.size() : 0};
}

void LogExplainer::tellHeld() {
  if (held_) tellRecord_(*std::exchange(held_, std::nullopt));
}

LogModel recogniseLog(std::span<const Record> log) {
  std::vector<const ScalesModel*> writers;
  std::vector<Candidate> candidates;
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet == nullptr || !couldHaveWritten(model, log)) continue;
    writers.push_back(&model);
    if (auto candidate = examine(model, evidenceIn(log, model))) {
      candidates.push_back(std::move(*candidate));
    }
  }
  rank(candidates);
  if (!candidates.empty()) {
    return {.model = candidates.front().model, .kin = candidates.front().kin, .byFrames = true};
  }
  const bool asked = std::ranges::any_of(
      log, [](const Record& record) { return record.kind == Record::Kind::Outgoing; });
  if (writers.empty() || !asked) return {};
  LogModel found{.model = writers.front(), .kin = {}, .byFrames = false};
  for (const ScalesModel* other : writers) {
    if (other != found.model) found.kin.push_back(other->number);
  }
  return found;
}

Explanation explainLog(std::span<const Record> log, const ScalesModel& model) {
  Explanation explanation;
  LogExplainer explainer(
      model, [&](ExplainedRecord record) { explanation.records.push_back(std::move(record)); },
      [&](const PollEnd& poll) { explanation.polls.push_back(poll); });
  for (const Record& record : log) explainer.take(record);
  explainer.end();
  return explanation;
}

}  // namespace recognise
