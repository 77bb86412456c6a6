#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <span>

#include "Doctor.h"
#include "Explain.h"
#include "LongWork.h"
#include "Records.h"
#include "ResultCode.h"
#include "Text.h"

namespace weigh {

namespace {

using exchange::Record;
using recognise::ExplainedRecord;
using recognise::FrameField;
using recognise::LogModel;
using recognise::PollEnd;
using recognise::Refusal;
using recognise::Role;
using recognise::Verdict;

struct ExplainOptions {
  std::string file;
  int model = -1;
  Format format = Format::Text;
};

std::ifstream opened(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  const int error = !stream ? errno : std::filesystem::is_directory(file) ? EISDIR : 0;
  if (error != 0)
    throw Failure(kWrongUsage, say("{0} can't be read: {1}", file, std::strerror(error)));
  return stream;
}

/// The log of the file, read no further than it is explained.
class LogFile {
 public:
  explicit LogFile(const std::string& file) : stream_(opened(file)), reader_(stream_) {
    std::error_code unknown;
    size_ = std::filesystem::file_size(file, unknown);
    if (unknown) size_ = 0;
  }

  /// Up to so many records, which are read all the same later.
  std::span<const Record> begin(std::size_t most) {
    while (begin_.size() < most) {
      auto record = reader_.next();
      if (!record) break;
      begin_.push_back(*std::move(record));
    }
    return begin_;
  }
  std::optional<Record> next() {
    return at_ < begin_.size() ? std::move(begin_[at_++]) : reader_.next();
  }
  const std::vector<std::size_t>& damaged() const { return reader_.damaged(); }
  /// "3 of 98 MB"
  std::string progress() const {
    constexpr std::uintmax_t kMegabyte = 1000000;
    const std::uintmax_t read = reader_.bytesRead();
    return say("{0} of {1} MB", read / kMegabyte, std::max(read, size_) / kMegabyte);
  }

 private:
  std::ifstream stream_;
  exchange::LogReader reader_;
  std::uintmax_t size_ = 0;
  std::vector<Record> begin_;
  std::size_t at_ = 0;
};

LogModel modelOf(const ExplainOptions& options, LogFile& log) {
  constexpr std::size_t kEnough = 5000;
  const auto begin = log.begin(kEnough);
  if (begin.empty()) {
    throw Failure(
        kWrongUsage, say("{0} has no record of an exchange", options.file),
        say("An exchange log comes from a folder with a file log.txt, or from `weigh read "
            "--log DIR`."));
  }
  if (options.model < 0) {
    LogModel found = recognise::recogniseLog(begin);
    if (found.model == nullptr) {
      throw Failure(kFailed, say("no model's driver would have written this"),
                    say("Name the model with --model."));
    }
    return found;
  }
  const ScalesModel* model = findScalesModel(options.model);
  if (model == nullptr || model->sheet == nullptr)
    throw Failure(kWrongUsage, say("model {0} has no protocol", options.model));
  return {.model = model, .kin = {}, .byFrames = false};
}

std::string eventText(const std::string& event) {
  static constexpr std::array<std::pair<std::string_view, const char*>, 6> kEvents = {
      {{"OPEN", message("the port was opened")},
       {"ERROR_OPEN", message("the port could not be opened")},
       {"CLOSE", message("the port was closed")},
       {"CAN'T READ", message("a read from a port that isn't open")},
       {"CAN'T WRITE", message("a write to a port that isn't open")},
       {"STOP PROGRAM", message("the driver ended")}}};
  const auto* known = std::ranges::find(kEvents, event, &decltype(kEvents)::value_type::first);
  return known == kEvents.end() ? "" : std::string(translated(known->second));
}

Finding roleOf(const ExplainedRecord& row) {
  switch (row.role) {
    case Role::Event: return {"event", eventText(row.record.text())};
    case Role::Request: return {"request", say("asks for the weight")};
    case Role::RequestFirst: return {"request_first", say("asks for the weight, first part")};
    case Role::RequestSecond: return {"request_second", say("asks for the weight, second part")};
    case Role::Tare: return {"tare", say("sets the tare")};
    case Role::Zero: return {"zero", say("sets the zero")};
    case Role::Price: return {"price", say("sends a price, or a setting in its place")};
    case Role::UnknownWrite: return {"unknown", say("is no command of this model")};
    case Role::Drained: return {"drained", say("thrown away before reading")};
    case Role::Skipped: return {"skipped", say("stepped over, begins no frame")};
    case Role::FramePart: break;
  }
  return {"answer",
          sayCount("answer, {0} byte so far", "answer, {0} bytes so far", row.frameBytes)};
}

std::string eitherOf(std::span<const std::uint8_t> values) {
  // Where nearly everything would do, the first few say enough.
  constexpr std::size_t kShown = 4;
  std::vector<std::string> list;
  for (const std::uint8_t value : values.first(std::min(values.size(), kShown)))
    list.push_back(hexText(std::span(&value, 1)));
  const std::string text = joined(list, say(" or "));
  return values.size() > kShown ? text + " ..." : text;
}

std::string wrongBytesText(const Verdict& verdict) {
  std::vector<std::string> list;
  for (const auto& [position, is, wanted] : verdict.refusal.wrong) {
    const std::string byte = hexText(std::span(&is, 1));
    list.push_back(
        position + 1 == verdict.frame.size()
            ? say("byte {0} is {1}, the frame ends in {2}", position + 1, byte, eitherOf(wanted))
            : say("byte {0} is {1}, the protocol wants {2}", position + 1, byte, eitherOf(wanted)));
  }
  return joined(list, "; ");
}

/// Why a frame was refused.
Finding reasonOf(const Verdict& verdict, const ProtocolSheet& sheet) {
  const Refusal& refusal = verdict.refusal;
  switch (refusal.reason) {
    case Refusal::Reason::Silence:
      return {"silence", say("no answer came within {0} ms", sheet.asking.budget_ms)};
    case Refusal::Reason::TooShort:
      return {"too_short", sayCount("{0} byte, the frame has {1}", "{0} bytes, the frame has {1}",
                                    refusal.size, refusal.wantedSize)};
    case Refusal::Reason::NoEnd: {
      const auto& style = std::get<TerminatorRead>(sheet.read);
      return {"no_end",
              say("the frame doesn't end in {0}", style.match == TerminatorRead::Match::AnyOf
                                                      ? eitherOf(style.end.view())
                                                      : hexText(style.end.view()))};
    }
    case Refusal::Reason::WrongBytes: return {"wrong_bytes", wrongBytesText(verdict)};
    case Refusal::Reason::Checksum: break;
  }
  const auto& sum = refusal.wrong.front();
  return {"checksum", say("the checksum is {0}, the bytes make {1}", hexText(std::span(&sum.is, 1)),
                          eitherOf(sum.wanted))};
}

/// "5-8, 11", counted from 1.
std::string bytesText(const std::vector<std::size_t>& positions) {
  std::vector<std::string> list;
  for (std::size_t i = 0; i < positions.size();) {
    std::size_t end = i + 1;
    while (end < positions.size() && positions[end] == positions[end - 1] + 1) ++end;
    list.push_back(end - i > 1 ? fmt::format("{}-{}", positions[i] + 1, positions[end - 1] + 1)
                               : std::to_string(positions[i] + 1));
    i = end;
  }
  return joined(list);
}

std::string fieldText(FrameField::Name name, const Outputs& reading, Units units) {
  switch (name) {
    case FrameField::Name::Weight: return say("weight {0}", weightText(reading.weight, units));
    case FrameField::Name::Price: return say("price {0}", moneyText(reading.price, units));
    case FrameField::Name::Cost: return say("cost {0}", moneyText(reading.cost, units));
    case FrameField::Name::Stable: return motionText(reading.stable);
    case FrameField::Name::Code: break;
  }
  return {};
}

std::string verdictText(const Verdict& verdict, const ScalesModel& model) {
  if (!verdict.good) return say("refused: {0}", reasonOf(verdict, *model.sheet).cause);
  if (verdict.said.code != kSuccess) {
    return say("the scale reports error {0}: {1}", verdict.said.code,
               resultText(verdict.said.code));
  }
  std::vector<std::string> fields;
  for (const FrameField& field : verdict.fields) {
    const std::string value = fieldText(field.name, verdict.said.reading, unitsOf(model.number));
    if (!value.empty()) fields.push_back(value + say(" (bytes {0})", bytesText(field.bytes)));
  }
  std::string text = say("good: {0}", joined(fields));
  if (const auto doubt = weightDoubt(model, verdict.frame)) text += ". " + doubt->cause;
  return text;
}

std::string contentText(const Record& record) {
  return record.kind == Record::Kind::System ? record.text() : hexText(record.bytes);
}

std::string headText(const LogModel& found, bool given) {
  const std::string name = found.model->pageText();
  std::string text = given            ? say("Model {0}", name)
                     : found.byFrames ? say("Model {0}, by its frames", name)
                                      : say("Model {0}, by its request; no good frame came", name);
  if (!found.kin.empty()) {
    text += sayCount("; model {1} explains the log as well", "; models {1} explain the log as well",
                     found.kin.size(), joined(found.kin));
  }
  return text + '\n';
}

Json verdictRecord(const Verdict& verdict, const ScalesModel& model) {
  Json record = {{"good", verdict.good},
                 {"frame", hexText(verdict.frame)},
                 {"text", verdictText(verdict, model)}};
  if (!verdict.good) {
    record["reason"] = reasonOf(verdict, *model.sheet).code;
    return record;
  }
  const Outputs& reading = verdict.said.reading;
  if (const auto doubt = weightDoubt(model, verdict.frame)) record["doubt"] = doubt->code;
  record["code"] = verdict.said.code;
  record["weight"] = reading.weight;
  record["price"] = reading.price;
  record["cost"] = reading.cost;
  record["stable"] = reading.stable;
  return record;
}

/// Writes the records one by one, with a line where a poll or an attempt begins.
class ExplanationWriter {
 public:
  ExplanationWriter(const ScalesModel& model, Format format) : model_(model), format_(format) {}

  void write(const ExplainedRecord& row) {
    if (format_ == Format::Json) {
      writeJson(row);
    } else {
      writeText(row);
    }
  }

 private:
  void writeJson(const ExplainedRecord& row) const {
    const auto orNone = [](int number) { return number == 0 ? Json() : Json(number); };
    writeRecord({{"line", row.record.line},
                 {"time", row.record.time},
                 {"kind", kArrows.at(static_cast<std::size_t>(row.record.kind))},
                 {"content", contentText(row.record)},
                 {"role", roleOf(row).code},
                 {"poll", orNone(row.poll)},
                 {"attempt", orNone(row.attempt)},
                 {"verdict", row.verdict ? verdictRecord(*row.verdict, model_) : Json()}});
  }

  void writeText(const ExplainedRecord& row) {
    std::string text;
    if (row.record.connection != connection_) {
      connection_ = row.record.connection;
      text += connection_ + '\n';
    }
    if (row.poll != 0 && (row.poll != poll_ || row.attempt != attempt_)) {
      poll_ = row.poll;
      attempt_ = row.attempt;
      text += say("poll {0}, attempt {1}", poll_, attempt_) + '\n';
    }
    text += fmt::format("  {}  {}  {}   {}\n", row.record.time,
                        kArrows.at(static_cast<std::size_t>(row.record.kind)),
                        contentText(row.record), roleOf(row).cause);
    if (row.verdict) text += "      = " + verdictText(*row.verdict, model_) + '\n';
    print(text);
  }

  /// Of an event, of what was written and of what was read.
  static constexpr std::array kArrows = {"--", ">>", "<<"};

  const ScalesModel& model_;
  Format format_;
  std::string connection_;
  int poll_ = 0;
  int attempt_ = 0;
};

/// Why a poll failed.
Finding failureOf(const PollEnd& poll) {
  if (poll.code != kNoAnswer)
    return {"code", say("the scale reported error {0}: {1}", poll.code, resultText(poll.code))};
  switch (poll.reason) {
    case Refusal::Reason::Silence: return {"silence", say("no answer came")};
    case Refusal::Reason::TooShort:
    case Refusal::Reason::NoEnd: return {"cut", say("the answer broke off")};
    default: return {"damaged", say("the frame was damaged")};
  }
}

/// What a log came to.
class Summary {
 public:
  void add(const ExplainedRecord& row) {
    ++records_;
    if (row.role == Role::Event && row.record.text() == "ERROR_OPEN")
      addFailure("not_opened", say("the port could not be opened"));
  }
  void add(const PollEnd& poll) {
    ++polls_;
    lastWasGood_ = poll.good;
    if (poll.good) {
      ++good_;
      return;
    }
    const Finding why = failureOf(poll);
    addFailure(poll.code == kNoAnswer ? why.code : fmt::format("{}_{}", why.code, poll.code),
               why.cause);
  }

  void write(const LogFile& log, const LogModel& found, Format format, bool whole) const {
    Json failures = Json::object();
    std::string text = whole ? "" : say("Ended early; this is of what was read:") + '\n';
    for (const std::size_t line : log.damaged())
      text += say("line {0}: a record that lacks bytes", line) + '\n';
    text += sayCount("{0} record", "{0} records", records_) + ", " +
            sayCount("{0} poll: {1} good, {2} failed", "{0} polls: {1} good, {2} failed", polls_,
                     good_, polls_ - good_);
    for (const auto& [name, why] : failures_) {
      failures[name] = why.second;
      text += fmt::format("\n  {} x {}", why.second, why.first);
    }
    RecordWriter(format).write({{"model", found.model->number},
                                {"kin", found.kin},
                                {"records", records_},
                                {"damaged_lines", log.damaged()},
                                {"polls", polls_},
                                {"good", good_},
                                {"failures", failures},
                                {"end", whole ? "done" : "interrupted"}},
                               text);
  }
  bool lastWasGood() const { return lastWasGood_; }
  std::size_t records() const { return records_; }

 private:
  void addFailure(const std::string& name, const std::string& text) {
    auto& failure = failures_[name];
    failure.first = text;
    ++failure.second;
  }

  std::size_t records_ = 0;
  std::size_t polls_ = 0;
  std::size_t good_ = 0;
  bool lastWasGood_ = false;
  /// By names for programs: why polls failed, and how many of them did so.
  std::map<std::string, std::pair<std::string, int>> failures_;
};

ExitCode explain(const Program& /*program*/, const ExplainOptions& options) {
  LogFile log(options.file);
  const LogModel found = modelOf(options, log);
  if (options.format == Format::Text) print(headText(found, options.model >= 0));
  ExplanationWriter writer(*found.model, options.format);
  Summary summary;
  recognise::LogExplainer explainer(
      *found.model,
      [&](const ExplainedRecord& row) {
        writer.write(row);
        summary.add(row);
      },
      [&](const PollEnd& poll) { summary.add(poll); });
  // On a terminal the records themselves show how far it is.
  std::optional<Progress> progress;
  if (::isatty(STDOUT_FILENO) == 0) progress.emplace(std::chrono::milliseconds{0});
  bool whole = true;
  while (auto record = log.next()) {
    whole = !Ending::asked();
    if (!whole) break;
    constexpr std::size_t kSeldom = 1000;
    if (progress && summary.records() % kSeldom == 0) progress->show(log.progress());
    explainer.take(*std::move(record));
  }
  explainer.end();
  progress.reset();
  summary.write(log, found, options.format, whole);
  return whole && summary.lastWasGood() ? kGood : kFailed;
}

}  // namespace

void addExplainCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<ExplainOptions>();
  CLI::App& command = addCommand(
      app, "explain", say("Tell what happened in an exchange log, record by record"),
      "weigh explain log_scales_7.log --model 13",
      say("The model is recognised by what was written and read, unless it is given. Bytes are "
          "counted from 1, as in the log.\n"
          "Exit code 0 if the last poll was good, 1 if it wasn't or there was none."));
  addText(command, "log", options->file, say("Exchange log, log_scales_<id>.log"))
      ->required()
      ->type_name("LOG");
  const int last = static_cast<int>(scalesModels().size()) - 1;
  addNumber(command, "--model,-m", options->model, 0, last,
            say("Model number (default: recognised)"))
      ->default_str("");
  addJsonFlag(command, options->format,
              say("One JSON record per record of the log, and one with the summary"));
  setAction(command, program, options, explain);
}

}  // namespace weigh
