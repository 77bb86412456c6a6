#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace weigh {

/// How every command ends, whatever ends it. While it exists, which is as long as a command runs,
/// the first Ctrl-C, SIGTERM or SIGHUP asks the command to come to its end; what takes a second or
/// more to do so is told. The next one ends the program at once. One at a time.
class Ending {
 public:
  Ending();
  ~Ending();
  Ending(const Ending&) = delete;
  Ending& operator=(const Ending&) = delete;

  static bool asked();
  /// Waits until `time`; true if the program was asked to end before.
  static bool askedBefore(std::chrono::steady_clock::time_point time);

  /// A file that doesn't stay, also if the program ends at once; none with an empty path.
  static void takeAway(const std::filesystem::path& file);
};

/// The line that shows on a terminal how far long work is, over what stood there before. Goes to
/// standard error, so that the output stays what it is; writes nothing where that is no terminal.
class Progress {
 public:
  /// `longest` is how long the work may take; 0 where nobody knows.
  explicit Progress(std::chrono::milliseconds longest);
  /// Wipes the line.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// "poll 3 ... 4 s of at most 20"
  void show(const std::string& what);

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::chrono::seconds longest_;
  bool onTerminal_;
};

}  // namespace weigh
