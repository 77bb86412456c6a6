#include <unistd.h>

#include <algorithm>

#include "Doctor.h"
#include "LongWork.h"
#include "WatchedScale.h"

namespace weigh {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kClearToLineEnd = "\x1B[K";

struct WatchOptions {
  ScaleOptions scale;
  /// Empty for one scale by options.
  std::string folder;
  ReadingOptions reading{.count = 0, .interval = std::chrono::milliseconds(500)};
};

std::vector<WatchedScale> registerScales(Session& session, const WatchOptions& options) {
  std::vector<WatchedScale> scales;
  if (options.folder.empty()) {
    const Connection& connection = options.scale.connection;
    scales.emplace_back(session.open(connection), NamedScale{.id = {}, .connection = connection});
    return scales;
  }
  auto named = scalesOf(options.folder);
  const host::LastError error = session.useFolder(options.folder);
  if (error.code != 0) throw Failure(kFailed, errorText(error), remedyFor(error.code, {}));
  for (NamedScale& scale : named) {
    std::string id = scale.id;
    scales.emplace_back(std::move(id), std::move(scale));
  }
  return scales;
}

/// Shows what the scales say: on a terminal a table over the one that was there before, otherwise
/// each weighing as it comes.
class Display {
 public:
  Display(const std::vector<WatchedScale>& scales, Format format)
      : scales_(scales),
        writer_(format),
        inPlace_(format == Format::Text && ::isatty(STDOUT_FILENO) == 1) {}

  /// After a weighing of `scale`.
  void show(WatchedScale& scale) {
    const std::string notice = scale.takeNotice();
    if (inPlace_) {
      refresh();
      return;
    }
    writer_.write(scale.record(), scale.line());
    if (!notice.empty()) complain(notice);
    tellDoubt(scale);
  }

  /// Moves the last minute on.
  void refresh() {
    static constexpr const char* kClearBelow = "\x1B[J";
    if (!inPlace_) return;
    const auto watched = std::chrono::floor<std::chrono::seconds>(Clock::now() - start_).count();
    const std::string time =
        fmt::format("{}:{:02}:{:02}", watched / 3600, watched / 60 % 60, watched % 60);
    std::string screen = shown_ > 0 ? fmt::format("\r\x1B[{}A", shown_) : "";
    shown_ = 0;
    // A full line would wrap, and the cursor stands on the line below the last.
    const auto [columns, rows] = screenSize(STDOUT_FILENO);
    for (const std::string& line : watchLines(scales_, time, {columns - 1, rows - 1})) {
      screen += line + kClearToLineEnd + "\r\n";
      ++shown_;
    }
    printRaw(screen + kClearBelow);
  }

  /// What stands below the table, for those who see none.
  void tellDoubt(WatchedScale& scale) const {
    const auto doubt = scale.takeDoubt();
    if (doubt && !inPlace_) complain(scale.title() + ": " + doubt->cause, doubt->remedy);
  }

  /// Takes away what Ctrl-C left on the line below.
  void finish() {
    if (shown_ > 0) printRaw(fmt::format("\r{}", kClearToLineEnd));
  }

 private:
  const std::vector<WatchedScale>& scales_;
  RecordWriter writer_;
  bool inPlace_;
  std::size_t shown_ = 0;
  Clock::time_point start_ = Clock::now();
};

/// Waits until `time`; true if the program was asked to end before.
bool askedBefore(Clock::time_point time, Display& display) {
  static constexpr std::chrono::seconds kRefresh{1};
  for (;;) {
    const auto soon = Clock::now() + kRefresh;
    if (Ending::askedBefore(std::min(time, soon))) return true;
    if (time <= soon) return false;
    display.refresh();
  }
}

void pollScales(Session& session, std::vector<WatchedScale>& scales, const ReadingOptions& options,
                Display& display) {
  auto next = Clock::now();
  for (std::int64_t done = 0; options.count == 0 || done < options.count; ++done) {
    if (askedBefore(next, display)) return;
    next = std::max(next, Clock::now()) + options.interval;
    for (WatchedScale& scale : scales) {
      const Weighing weighing = session.read(scale.id(), true);
      // A poll that the signal cut into says nothing about the scale.
      if (!weighing.good() && Ending::asked()) return;
      scale.add(weighing);
      // A connection that is kept is the component's alone.
      scale.lookAtFrame(!scale.scale().connection.leave);
      display.show(scale);
      if (Ending::asked()) return;
    }
  }
}

ExitCode watch(const Program& program, const WatchOptions& options) {
  std::optional<Session> session(std::in_place, program.component, options.scale.log);
  std::vector<WatchedScale> scales = registerScales(*session, options);
  if (scales.size() == 1 && isEmulator(scales.front().scale().connection.model))
    complain(say("the emulator makes these weights up; a scale is chosen with --model"));
  Display display(scales, options.reading.format);
  pollScales(*session, scales, options.reading, display);
  display.finish();
  session.reset();
  Complaints complaints;
  for (WatchedScale& scale : scales) {
    if (!Ending::asked()) scale.lookAtFrame(true);
    display.tellDoubt(scale);
    if (options.reading.format == Format::Text) {
      print(scale.summary() + "\n");
    } else {
      tell(scale.summary());
    }
    if (scale.statistics().good() == 0 && scale.statistics().polls() > 0)
      complaints.add(scale.scale(), scale.lastError());
  }
  return complaints.conclude();
}

}  // namespace

void addWatchCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<WatchOptions>();
  CLI::App& command = addCommand(
      app, "watch",
      say("Show one scale or a whole component folder live until Ctrl-C, then a summary"),
      "weigh watch --model 13 --host 192.168.0.200 --interval 0.2\nweigh watch /opt/orbelo",
      say("Each row shows the weight, its state, the last minute as bars from zero to the highest "
          "weight (x for a failure), good and failed polls, how long a poll takes (half of them "
          "take "
          "less than the first number, 99 of 100 less than the second), and how often the scale "
          "came "
          "back after polls without connection or answer. The scales of a folder are polled one "
          "after another, as the platform does it, so a silent one holds up the others. When a USB "
          "adapter comes back under another device name, the new name is told. Where the output is "
          "no terminal, each reading has a line of its own."));
  addFolder(command, options->folder);
  addScaleOptions(command, options->scale);
  addReadingOptions(command, options->reading, 0, say("End after so many readings (0: never)"));
  setAction(command, program, options, watch);
}

}  // namespace weigh
