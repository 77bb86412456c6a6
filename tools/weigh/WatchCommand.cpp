#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "Commands.h"
#include "Interrupt.h"
#include "Report.h"
#include "Session.h"
#include "SettingsFile.h"
#include "Texts.h"
#include "WatchScreen.h"
#include "WatchTexts.h"
#include "WatchedScale.h"

namespace weigh {

namespace {

using Clock = std::chrono::steady_clock;

struct WatchOptions {
  ScaleOptions scale;
  /// Empty for one scale by options.
  std::string folder;
  ReadingOptions reading{.count = 0, .interval = std::chrono::milliseconds(500)};
};

/// "0:02:10"
std::string durationText(Clock::duration time) {
  const std::chrono::hh_mm_ss parts(std::chrono::floor<std::chrono::seconds>(time));
  const auto two = [](auto number) {
    const std::string digits = std::to_string(number.count());
    return digits.size() < 2 ? "0" + digits : digits;
  };
  return std::to_string(parts.hours().count()) + ":" + two(parts.minutes()) + ":" +
         two(parts.seconds());
}

std::vector<WatchedScale> registerScales(Session& session, const WatchOptions& options) {
  std::vector<WatchedScale> scales;
  if (options.folder.empty()) {
    const Connection& connection = options.scale.connection;
    scales.emplace_back(session.open(connection), "", connection);
    return scales;
  }
  const auto entries = readSettings(options.folder);
  const host::LastError error = session.useFolder(options.folder);
  if (error.code != 0) throw Failure(kScaleFailed, errorText(error), remedyFor(error.code, {}));
  for (const SettingsEntry& entry : entries) {
    scales.emplace_back(entry.id(), entry.id(), connectionOf(entry));
  }
  return scales;
}

/// Shows what the scales say, in the format that was asked for.
class Display {
 public:
  Display(const std::vector<WatchedScale>& scales, Format format)
      : scales_(scales),
        format_(format),
        inPlace_(format == Format::Text && WatchScreen::possible()) {
    if (format == Format::Csv) std::cout << WatchedScale::csvHead() << '\n';
  }

  /// After a reading of `scale`.
  void show(WatchedScale& scale) {
    const std::string notice = scale.takeNotice();
    if (inPlace_) {
      refresh();
      return;
    }
    switch (format_) {
      case Format::Text: std::cout << scale.readingLine() << std::endl; break;
      case Format::Json: writeRecord(scale.record()); break;
      case Format::Csv: std::cout << scale.csvRow() << std::endl; break;
    }
    if (!notice.empty()) complain(notice);
  }

  /// Moves the last minute on.
  void refresh() {
    if (!inPlace_) return;
    screen_.show(watchLines(scales_, durationText(Clock::now() - start_), WatchScreen::size()));
  }

 private:
  const std::vector<WatchedScale>& scales_;
  Format format_;
  bool inPlace_;
  WatchScreen screen_;
  Clock::time_point start_ = Clock::now();
};

/// Waits until `time`; true if the program was asked to end before.
bool askedBefore(Clock::time_point time, const Interrupt& interrupt, Display& display) {
  static constexpr std::chrono::seconds kRefresh{1};
  for (;;) {
    const auto soon = Clock::now() + kRefresh;
    if (interrupt.askedBefore(std::min(time, soon))) return true;
    if (time <= soon) return false;
    display.refresh();
  }
}

void pollScales(Session& session, std::vector<WatchedScale>& scales, const ReadingOptions& options,
                const Interrupt& interrupt) {
  Display display(scales, options.format);
  auto next = Clock::now();
  for (std::int64_t done = 0; options.count == 0 || done < options.count; ++done) {
    if (askedBefore(next, interrupt, display)) return;
    next = std::max(next, Clock::now()) + options.interval;
    for (WatchedScale& scale : scales) {
      const Reading reading = session.read(scale.id(), true);
      // A poll that the signal cut into says nothing about the scale.
      if (!reading.good() && interrupt.asked()) return;
      scale.add(reading);
      display.show(scale);
      if (interrupt.asked()) return;
    }
  }
}

/// Complains of the scales that never gave a weight, once for each kind of error.
ExitCode judge(const std::vector<WatchedScale>& scales) {
  std::map<std::uint32_t, std::vector<const WatchedScale*>> failed;
  for (const WatchedScale& scale : scales) {
    if (scale.statistics().good() == 0 && scale.statistics().polls() > 0) {
      failed[scale.lastError().code].push_back(&scale);
    }
  }
  for (const auto& [code, those] : failed) {
    std::string names;
    for (const WatchedScale* scale : those) names += (names.empty() ? "" : ", ") + scale->name();
    const std::string error = errorText(those.front()->lastError());
    complain(names.empty() ? error : fill(text::kOfScales, {error, names}),
             remedyFor(code, those.front()->connection()));
  }
  return failed.empty() ? kGood : kScaleFailed;
}

ExitCode watch(const Program& program, const WatchOptions& options) {
  const Interrupt interrupt;
  Session session(program.component, options.scale.log);
  std::vector<WatchedScale> scales = registerScales(session, options);
  pollScales(session, scales, options.reading, interrupt);
  std::ostream& summary = options.reading.format == Format::Text ? std::cout : std::cerr;
  for (const WatchedScale& scale : scales) summary << scale.summary() << std::endl;
  return judge(scales);
}

}  // namespace

void addWatchCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<WatchOptions>();
  CLI::App& command =
      addCommand(app, {.name = "watch",
                       .about = text::kWatchAbout,
                       .example = "weigh watch --model 13 --host 192.168.0.200 --interval 0.2\n"
                                  "         weigh watch /opt/orbelo",
                       .notes = &text::kWatchNotes});
  command.add_option("folder", options->folder, say(text::kWatchFolder))->type_name("DIR");
  addScaleOptions(command, options->scale);
  addReadingOptions(command, options->reading, 0, text::kWatchCountOption);
  command.callback([&program, &command, options] {
    for (const CLI::Option* option : command.get_options()) {
      if (!options->folder.empty() && option->count() > 0 &&
          option->get_group() == say(text::kScaleGroup)) {
        throw CLI::ValidationError("folder", fill(text::kFolderNamesScales, {option->get_name()}));
      }
    }
    program.action = [&program, options] { return watch(program, *options); };
  });
}

}  // namespace weigh
