#include <algorithm>
#include <set>

#include "Doctor.h"
#include "LongWork.h"
#include "Records.h"
#include "ResultCode.h"

namespace weigh {

namespace {

struct ReadOptions {
  ScaleOptions scale;
  ReadingOptions reading;
  bool withPrice = false;
};

ExitCode readScale(const Program& program, const ReadOptions& options) {
  const Connection& connection = options.scale.connection;
  const Format format = options.reading.format;
  std::optional<Session> attached(std::in_place, program.component, options.scale.log);
  Session& session = *attached;
  const std::string id = session.open(connection);
  RecordWriter writer(format);
  std::int64_t written = 0;
  const auto write = [&](const Weighing& weighing) {
    if (!weighing.good() && format == Format::Text) return;
    Json record = {{"reading", ++written}, {"time", timestamp()}};
    addWeighing(record, weighing, unitsOf(connection.model));
    writer.write(record, weighingText(weighing, unitsOf(connection.model)));
  };
  const host::LastError opened = session.component().lastError();
  if (opened.code != kSuccess) {
    Weighing none{.error = opened, .details = {}};
    if (options.withPrice) none.details = Weighing::Details{};
    write(none);
    return judge(opened, connection);
  }

  if (isEmulator(connection.model))
    complain(say("the emulator makes these weights up; a scale is chosen with --model"));
  ExitCode code = kGood;
  bool any = false;
  std::set<std::uint32_t> told;
  auto next = std::chrono::steady_clock::now();
  for (std::int64_t done = 0; done < options.reading.count; ++done) {
    if (Ending::askedBefore(next)) break;
    next = std::max(next, std::chrono::steady_clock::now()) + options.reading.interval;
    const Weighing weighing = session.read(id, options.withPrice);
    write(weighing);
    any |= weighing.good();
    if (weighing.good()) continue;
    code = kFailed;
    // What to do about an error is said once.
    const bool first = told.insert(weighing.error.code).second;
    complain(errorText(weighing.error),
             first ? remedyFor(weighing.error.code, connection) : std::string());
  }
  // A frame tells a weight that isn't what it reads; the line is the component's until it is gone.
  attached.reset();
  if (any && !Ending::asked()) {
    if (const auto doubt = weightDoubtOn(connection)) complain(doubt->cause, doubt->remedy);
  }
  return code;
}

}  // namespace

void addReadCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<ReadOptions>();
  CLI::App& command =
      addCommand(app, "read", say("Read the weight"),
                 "weigh read --model 13 --port /dev/ttyUSB0 --baud 9600 --price",
                 say("Without a model the emulator answers, which needs no scale; on purpose it "
                     "fails one reading in ten."));
  addScaleOptions(command, options->scale);
  addReadingOptions(command, options->reading, 1, say("Number of readings"));
  command.add_flag("--price", options->withPrice, say("Read price, cost and stability too"));
  setAction(command, program, options, readScale);
}

}  // namespace weigh
