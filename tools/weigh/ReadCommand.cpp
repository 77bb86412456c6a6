#include <algorithm>
#include <memory>
#include <set>

#include "Commands.h"
#include "Interrupt.h"
#include "Records.h"
#include "Report.h"
#include "ResultCode.h"
#include "Session.h"
#include "Texts.h"

namespace weigh {

namespace {

struct ReadOptions {
  ScaleOptions scale;
  ReadingOptions reading;
  bool withPrice = false;
};

ExitCode readScale(const Program& program, const ReadOptions& options) {
  const Connection& connection = options.scale.connection;
  const Interrupt interrupt;
  Session session(program.component, options.scale.log);
  const std::string id = session.open(connection);
  ReadingWriter writer(options.reading.format, unitsOf(connection.model), options.withPrice);
  const host::LastError opened = session.component().lastError();
  if (opened.code != kSuccess) {
    Reading none{.error = opened, .details = {}};
    if (options.withPrice) none.details.emplace();
    if (options.reading.format != Format::Text) writer.write(none);
    return judge(opened, connection);
  }

  if (isEmulator(connection.model)) complain(say(text::kEmulatorNote));
  ExitCode code = kGood;
  std::set<std::uint32_t> told;
  auto next = std::chrono::steady_clock::now();
  for (std::int64_t done = 0; done < options.reading.count; ++done) {
    if (interrupt.askedBefore(next)) break;
    next = std::max(next, std::chrono::steady_clock::now()) + options.reading.interval;
    const Reading reading = session.read(id, options.withPrice);
    if (reading.good() || options.reading.format != Format::Text) writer.write(reading);
    if (reading.good()) continue;
    code = kScaleFailed;
    // What to do about an error is said once.
    if (told.insert(reading.error.code).second) {
      complain(reading.error, connection);
    } else {
      complain(errorText(reading.error));
    }
  }
  return code;
}

}  // namespace

void addReadCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<ReadOptions>();
  CLI::App& command =
      addCommand(app, {.name = "read",
                       .about = text::kReadAbout,
                       .example = "weigh read --model 13 --port /dev/ttyUSB0 --baud 9600 --price",
                       .notes = &text::kReadNotes});
  addScaleOptions(command, options->scale);
  addReadingOptions(command, options->reading, 1, text::kCountOption);
  command.add_flag("--price", options->withPrice, say(text::kWithPriceFlag));
  command.callback([&program, options] {
    program.action = [&program, options] { return readScale(program, *options); };
  });
}

}  // namespace weigh
