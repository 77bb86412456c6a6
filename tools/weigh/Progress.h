#pragma once

#include <chrono>
#include <string>

namespace weigh {

/// The line that shows on a terminal how far long work is, over what stood there before. Goes to
/// standard error, so that the output stays what it is; writes nothing where that is no terminal.
class Progress {
 public:
  /// `longest` is how long the work may take.
  explicit Progress(std::chrono::seconds longest);
  /// Wipes the line.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// "poll 3 ... 4 s of at most 20".
  void show(const std::string& what);

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::chrono::seconds longest_;
  bool onTerminal_;
};

}  // namespace weigh
