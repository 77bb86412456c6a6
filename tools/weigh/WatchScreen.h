#pragma once

#include <string>
#include <vector>

#include "WatchedScale.h"

namespace weigh {

/// Room for lines of text.
struct ScreenSize {
  std::size_t columns;
  std::size_t rows;
};

/// The lines that show all scales, as many as there is room for: the table, then the remarks, which
/// go on in the next line where they are too long.
std::vector<std::string> watchLines(const std::vector<WatchedScale>& scales,
                                    const std::string& watched, ScreenSize size);

/// Writes lines over those that it wrote before, on a terminal.
class WatchScreen {
 public:
  WatchScreen() = default;
  /// Takes away what Ctrl-C left on the line below.
  ~WatchScreen();
  WatchScreen(const WatchScreen&) = delete;
  WatchScreen& operator=(const WatchScreen&) = delete;

  /// Whether standard output is a terminal.
  static bool possible();
  /// Of the terminal.
  static ScreenSize size();

  void show(const std::vector<std::string>& lines);

 private:
  std::size_t shown_ = 0;
};

}  // namespace weigh
