#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <system_error>

#include "Commands.h"
#include "Explain.h"
#include "ExplainTexts.h"
#include "FindReport.h"
#include "Records.h"
#include "ResultCode.h"
#include "Texts.h"
#include "Units.h"

namespace weigh {

namespace {

using exchange::Record;
using recognise::ExplainedRecord;
using recognise::Explanation;
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

exchange::Log readFile(const std::string& file) {
  std::error_code error;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) error = {errno, std::generic_category()};
  if (std::filesystem::is_directory(file)) error = std::make_error_code(std::errc::is_a_directory);
  if (error) throw Failure(kWrongUsage, fill(text::kNoLog, {file, error.message()}));
  std::ostringstream content;
  content << stream.rdbuf();
  exchange::Log log = exchange::readLog(content.str());
  if (log.records.empty()) {
    throw Failure(kWrongUsage, fill(text::kNoLogRecords, {file}), say(text::kNoLogRecordsRemedy));
  }
  return log;
}

LogModel modelOf(const ExplainOptions& options, const exchange::Log& log) {
  if (options.model < 0) {
    LogModel found = recognise::recogniseLog(log);
    if (found.model == nullptr) {
      throw Failure(kScaleFailed, say(text::kLogModelUnknown), say(text::kLogModelUnknownRemedy));
    }
    return found;
  }
  const ScalesModel* model = findScalesModel(options.model);
  if (model == nullptr || model->sheet == nullptr) {
    throw Failure(kWrongUsage, fill(text::kModelWithoutProtocol, {std::to_string(options.model)}));
  }
  return {.model = model, .kin = {}, .byFrames = false};
}

const char* eventText(const std::string& event) {
  struct Event {
    const char* name;
    const Text& text;
  };
  static const std::array<Event, 6> kEvents = {{{"OPEN", text::kEventOpen},
                                                {"ERROR_OPEN", text::kEventErrorOpen},
                                                {"CLOSE", text::kEventClose},
                                                {"CAN'T READ", text::kEventCantRead},
                                                {"CAN'T WRITE", text::kEventCantWrite},
                                                {"STOP PROGRAM", text::kEventStop}}};
  for (const Event& known : kEvents) {
    if (event == known.name) return say(known.text);
  }
  return "";
}

struct RoleName {
  const char* name;
  const Text* text;
};
RoleName nameOf(Role role) {
  switch (role) {
    case Role::Event: return {"event", nullptr};
    case Role::Request: return {"request", &text::kRoleRequest};
    case Role::RequestFirst: return {"request_first", &text::kRoleRequestFirst};
    case Role::RequestSecond: return {"request_second", &text::kRoleRequestSecond};
    case Role::Tare: return {"tare", &text::kRoleTare};
    case Role::Zero: return {"zero", &text::kRoleZero};
    case Role::Price: return {"price", &text::kRolePrice};
    case Role::UnknownWrite: return {"unknown", &text::kRoleUnknownWrite};
    case Role::Drained: return {"drained", &text::kRoleDrained};
    case Role::Skipped: return {"skipped", &text::kRoleSkipped};
    case Role::FramePart: break;
  }
  return {"answer", &text::kRoleFramePart};
}

std::string roleText(const ExplainedRecord& row) {
  if (row.role == Role::Event) return eventText(row.record->text());
  return fill(*nameOf(row.role).text, {std::to_string(row.frameBytes)});
}

const char* reasonName(Refusal::Reason reason) {
  switch (reason) {
    case Refusal::Reason::Silence: return "silence";
    case Refusal::Reason::TooShort: return "too_short";
    case Refusal::Reason::NoEnd: return "no_end";
    case Refusal::Reason::WrongBytes: return "wrong_bytes";
    case Refusal::Reason::Checksum: break;
  }
  return "checksum";
}

const Text& failureText(Refusal::Reason reason) {
  switch (reason) {
    case Refusal::Reason::Silence: return text::kFailSilence;
    case Refusal::Reason::TooShort:
    case Refusal::Reason::NoEnd: return text::kFailTooShort;
    default: return text::kFailWrong;
  }
}

std::string hexOf(std::uint8_t byte) { return hexText(std::span(&byte, 1)); }

std::string eitherOf(std::span<const std::uint8_t> values) {
  // Where nearly everything would do, the first few say enough.
  constexpr std::size_t kShown = 4;
  std::string list;
  for (const std::uint8_t value : values.first(std::min(values.size(), kShown))) {
    list += (list.empty() ? "" : say(text::kOrWord)) + hexOf(value);
  }
  return values.size() > kShown ? list + " ..." : list;
}

std::string wrongBytesText(const Verdict& verdict) {
  std::string list;
  for (const auto& [position, is, wanted] : verdict.refusal.wrong) {
    const bool last = position + 1 == verdict.frame.size();
    if (!list.empty()) list += say(text::kAndWord);
    list += fill(last ? text::kWhyLastByte : text::kWhyByte,
                 {std::to_string(position + 1), hexOf(is), eitherOf(wanted)});
  }
  return list;
}

std::string whyText(const Verdict& verdict, const ProtocolSheet& sheet) {
  const Refusal& refusal = verdict.refusal;
  switch (refusal.reason) {
    case Refusal::Reason::Silence:
      return fill(text::kWhySilence, {std::to_string(sheet.asking.budget_ms)});
    case Refusal::Reason::TooShort:
      return fill(text::kWhyTooShort,
                  {std::to_string(refusal.size), std::to_string(refusal.wantedSize)});
    case Refusal::Reason::NoEnd: {
      const auto& style = std::get<TerminatorRead>(sheet.read);
      return fill(text::kWhyNoEnd,
                  {style.match == TerminatorRead::Match::AnyOf ? eitherOf(style.end.view())
                                                               : hexText(style.end.view())});
    }
    case Refusal::Reason::WrongBytes: return wrongBytesText(verdict);
    case Refusal::Reason::Checksum: break;
  }
  const auto& sum = refusal.wrong.front();
  return fill(text::kWhyChecksum, {hexOf(sum.is), eitherOf(sum.wanted)});
}

/// "5-8, 11", counted from 1.
std::string bytesText(const std::vector<std::size_t>& positions) {
  std::string list;
  for (std::size_t i = 0; i < positions.size();) {
    std::size_t end = i + 1;
    while (end < positions.size() && positions[end] == positions[end - 1] + 1) ++end;
    if (!list.empty()) list += ", ";
    list += std::to_string(positions[i] + 1);
    if (end - i > 1) list += "-" + std::to_string(positions[end - 1] + 1);
    i = end;
  }
  return list;
}

std::string fieldText(FrameField::Name name, const Outputs& reading, Units units) {
  switch (name) {
    case FrameField::Name::Weight:
      return fill(text::kFieldWeight, {weightText(reading.weight, units)});
    case FrameField::Name::Price: return fill(text::kFieldPrice, {moneyText(reading.price, units)});
    case FrameField::Name::Cost: return fill(text::kFieldCost, {moneyText(reading.cost, units)});
    case FrameField::Name::Stable: return say(reading.stable ? text::kStable : text::kMoving);
    case FrameField::Name::Code: break;
  }
  return {};
}

std::string codeText(const Text& text, int code) {
  return fill(text, {std::to_string(code), resultText(code)});
}

std::string verdictText(const Verdict& verdict, const ScalesModel& model) {
  if (!verdict.good) return fill(text::kRefusedFrame, {whyText(verdict, *model.sheet)});
  if (verdict.said.code != kSuccess) return codeText(text::kFrameSaysCode, verdict.said.code);
  std::string fields;
  for (const FrameField& field : verdict.fields) {
    const std::string value = fieldText(field.name, verdict.said.reading, unitsOf(model.number));
    if (value.empty()) continue;
    fields +=
        (fields.empty() ? "" : ", ") + value + fill(text::kFieldBytes, {bytesText(field.bytes)});
  }
  return fill(text::kGoodFrame, {fields});
}

const char* arrow(Record::Kind kind) {
  switch (kind) {
    case Record::Kind::System: return "--";
    case Record::Kind::Outgoing: return ">>";
    case Record::Kind::Incoming: break;
  }
  return "<<";
}

std::string contentText(const Record& record) {
  return record.kind == Record::Kind::System ? record.text() : hexText(record.bytes);
}

void writeModel(const LogModel& found, bool given) {
  const Text& how = given            ? text::kLogModelGiven
                    : found.byFrames ? text::kLogModelByFrames
                                     : text::kLogModelByRequest;
  std::cout << fill(how, {found.model->pageText()});
  std::string kin;
  for (const int number : found.kin) kin += (kin.empty() ? "" : ", ") + std::to_string(number);
  if (!kin.empty()) std::cout << fill(text::kLogKin, {kin});
  std::cout << '\n';
}

void writeRecords(const Explanation& explanation, const ScalesModel& model) {
  std::string connection;
  int poll = 0;
  int attempt = 0;
  for (const ExplainedRecord& row : explanation.records) {
    if (row.record->connection != connection) {
      connection = row.record->connection;
      std::cout << connection << '\n';
    }
    if (row.poll != 0 && (row.poll != poll || row.attempt != attempt)) {
      poll = row.poll;
      attempt = row.attempt;
      std::cout << fill(text::kPollAttempt, {std::to_string(poll), std::to_string(attempt)})
                << '\n';
    }
    std::cout << "  " << row.record->time << "  " << arrow(row.record->kind) << "  "
              << contentText(*row.record) << "   " << roleText(row) << '\n';
    if (row.verdict) std::cout << "      = " << verdictText(*row.verdict, model) << '\n';
  }
}

/// Why polls failed, with how many of them did so.
std::map<std::string, int> failuresOf(const Explanation& explanation) {
  std::map<std::string, int> failures;
  for (const PollEnd& poll : explanation.polls) {
    if (poll.good) continue;
    ++failures[poll.code == kNoAnswer ? std::string(say(failureText(poll.reason)))
                                      : codeText(text::kFailCode, poll.code)];
  }
  for (const ExplainedRecord& row : explanation.records) {
    if (row.role == Role::Event && row.record->text() == "ERROR_OPEN") {
      ++failures[say(text::kFailOpen)];
    }
  }
  return failures;
}

std::size_t goodPolls(const Explanation& explanation) {
  return static_cast<std::size_t>(std::ranges::count_if(explanation.polls, &PollEnd::good));
}

void writeSummary(const Explanation& explanation, const exchange::Log& log) {
  const std::size_t polls = explanation.polls.size();
  const std::size_t good = goodPolls(explanation);
  for (const std::size_t line : log.damaged) {
    std::cout << fill(text::kLogDamaged, {std::to_string(line)}) << '\n';
  }
  std::cout << fill(text::kLogSummary,
                    {std::to_string(explanation.records.size()), std::to_string(polls),
                     std::to_string(good), std::to_string(polls - good)})
            << '\n';
  for (const auto& [why, count] : failuresOf(explanation)) {
    std::cout << fill(text::kLogFailures, {std::to_string(count), why}) << '\n';
  }
  std::cout << std::flush;
}

Json verdictRecord(const Verdict& verdict, const ScalesModel& model) {
  Json record;
  record["good"] = verdict.good;
  record["frame"] = hexText(verdict.frame);
  record["text"] = verdictText(verdict, model);
  if (!verdict.good) {
    record["reason"] = reasonName(verdict.refusal.reason);
    return record;
  }
  const Outputs& reading = verdict.said.reading;
  record["code"] = verdict.said.code;
  record["weight"] = reading.weight;
  record["price"] = reading.price;
  record["cost"] = reading.cost;
  record["stable"] = reading.stable;
  return record;
}

void writeJson(const Explanation& explanation, const exchange::Log& log, const LogModel& found) {
  for (const ExplainedRecord& row : explanation.records) {
    Json record;
    record["line"] = row.record->line;
    record["time"] = row.record->time;
    record["kind"] = arrow(row.record->kind);
    record["content"] = contentText(*row.record);
    record["role"] = nameOf(row.role).name;
    record["poll"] = row.poll == 0 ? Json() : Json(row.poll);
    record["attempt"] = row.attempt == 0 ? Json() : Json(row.attempt);
    record["verdict"] = row.verdict ? verdictRecord(*row.verdict, *found.model) : Json();
    writeRecord(record);
  }
  Json summary;
  summary["model"] = found.model->number;
  summary["kin"] = found.kin;
  summary["records"] = explanation.records.size();
  summary["damaged_lines"] = log.damaged;
  summary["polls"] = explanation.polls.size();
  summary["good"] = goodPolls(explanation);
  summary["failures"] = failuresOf(explanation);
  writeRecord(summary);
}

ExitCode explain(const ExplainOptions& options) {
  const exchange::Log log = readFile(options.file);
  const LogModel found = modelOf(options, log);
  const Explanation explanation = recognise::explainLog(log, *found.model);
  if (options.format == Format::Json) {
    writeJson(explanation, log, found);
  } else {
    writeModel(found, options.model >= 0);
    writeRecords(explanation, *found.model);
    writeSummary(explanation, log);
  }
  return !explanation.polls.empty() && explanation.polls.back().good ? kGood : kScaleFailed;
}

}  // namespace

void addExplainCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<ExplainOptions>();
  CLI::App& command = addCommand(app, {.name = "explain",
                                       .about = text::kExplainAbout,
                                       .example = "weigh explain log_scales_7.log --model 13",
                                       .notes = &text::kExplainNotes});
  command.add_option("log", options->file, say(text::kLogArgument))->required()->type_name("LOG");
  command
      .add_option_function<std::string>(
          "--model,-m",
          [options](const std::string& given) {
            const auto last = static_cast<std::int64_t>(scalesModels().size()) - 1;
            options->model = static_cast<int>(requireWhole("--model", given, 0, last));
          },
          say(text::kExplainModelOption))
      ->type_name("N");
  command.add_flag_callback(
      "--json", [options] { options->format = Format::Json; }, say(text::kExplainJsonFlag));
  command.callback(
      [&program, options] { program.action = [options] { return explain(*options); }; });
}

}  // namespace weigh
