#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <memory>

#include "Commands.h"
#include "Interrupt.h"
#include "Records.h"
#include "Report.h"
#include "Session.h"
#include "Table.h"
#include "Texts.h"

namespace weigh {

namespace {

struct WatchOptions {
  ScaleOptions scale;
  ReadingOptions reading{.count = 0, .interval = std::chrono::milliseconds(500)};
};

/// What there is to say of all readings together.
class Summary {
 public:
  void add(const Reading& reading) {
    ++readings_;
    shortest_ = std::min(shortest_, reading.poll);
    longest_ = std::max(longest_, reading.poll);
    total_ += reading.poll;
    if (!reading.good()) return;
    ++good_;
    lowest_ = good_ == 1 ? reading.weight : std::min(lowest_, reading.weight);
    highest_ = good_ == 1 ? reading.weight : std::max(highest_, reading.weight);
    last_ = reading.weight;
  }

  bool anyGood() const { return good_ > 0; }

  std::string text(Units units) const {
    if (readings_ == 0) return fill(text::kSummary, {"0", "0", "0", "-", "-", "-"});
    std::string text =
        fill(text::kSummary,
             {std::to_string(readings_), std::to_string(good_), std::to_string(readings_ - good_),
              milliseconds(shortest_), milliseconds(total_ / readings_), milliseconds(longest_)});
    if (anyGood()) {
      text += '\n' +
              fill(text::kSummaryWeights, {weightText(lowest_, units), weightText(highest_, units),
                                           weightText(last_, units)});
    }
    return text;
  }

 private:
  long readings_ = 0;
  long good_ = 0;
  Milliseconds shortest_ = Milliseconds::max();
  Milliseconds longest_{0};
  Milliseconds total_{0};
  double lowest_ = 0.0;
  double highest_ = 0.0;
  double last_ = 0.0;
};

/// Writes each reading over the one before, on a terminal.
class LiveLine {
 public:
  static bool possible() { return ::isatty(STDOUT_FILENO) == 1; }

  void show(const std::string& text) {
    static constexpr const char* kRestart = "\r\x1B[K";
    std::cout << kRestart << clipped(text, width()) << std::flush;
    shown_ = true;
  }
  ~LiveLine() {
    if (shown_) std::cout << std::endl;
  }

 private:
  /// One less than the terminal has: a full line would wrap.
  static std::size_t width() {
    static constexpr std::size_t kUsual = 79;
    winsize size = {};
    const bool known = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    return known ? size.ws_col - 1U : kUsual;
  }

  bool shown_ = false;
};

std::string liveText(const Reading& reading, Units units) {
  return readingText(reading, units) + "   " + fill(text::kMs, {milliseconds(reading.poll)});
}

ExitCode watchScale(const Program& program, const WatchOptions& options) {
  const Connection& connection = options.scale.connection;
  const Units units = unitsOf(connection.model);
  const bool plain = options.reading.format == Format::Text;
  const Interrupt interrupt;
  Session session(program.component, options.scale.log);
  const std::string id = session.open(connection);
  Summary summary;
  {
    LiveLine live;
    ReadingWriter writer(options.reading.format, units, true);
    auto next = std::chrono::steady_clock::now();
    for (std::int64_t done = 0; options.reading.count == 0 || done < options.reading.count;
         ++done) {
      if (interrupt.askedBefore(next)) break;
      next = std::max(next, std::chrono::steady_clock::now()) + options.reading.interval;
      const Reading reading = session.read(id, true);
      // A poll that the signal cut into says nothing about the scale.
      if (!reading.good() && interrupt.asked()) break;
      summary.add(reading);
      if (!plain) {
        writer.write(reading);
      } else if (LiveLine::possible()) {
        live.show(liveText(reading, units));
      } else {
        std::cout << liveText(reading, units) << std::endl;
      }
    }
  }
  (plain ? std::cout : std::cerr) << summary.text(units) << std::endl;
  return summary.anyGood() ? kGood : judge(session.component().lastError(), connection);
}

}  // namespace

void addWatchCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<WatchOptions>();
  CLI::App& command =
      addCommand(app, {.name = "watch",
                       .about = text::kWatchAbout,
                       .example = "weigh watch --model 13 --host 192.168.0.200 --interval 0.2",
                       .notes = &text::kWatchNotes});
  addScaleOptions(command, options->scale);
  addReadingOptions(command, options->reading, 0, text::kWatchCountOption);
  command.callback([&program, options] {
    program.action = [&program, options] { return watchScale(program, *options); };
  });
}

}  // namespace weigh
