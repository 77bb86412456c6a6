#include "WatchScreen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <sstream>

#include "Table.h"
#include "Texts.h"
#include "WatchTexts.h"

namespace weigh {

namespace {

constexpr unsigned kUsualColumns = 80;
constexpr unsigned kUsualRows = 24;
constexpr const char* kClearToLineEnd = "\x1B[K";

winsize terminalSize() {
  winsize size = {};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) size = {};
  if (size.ws_col < 2) size.ws_col = kUsualColumns;
  if (size.ws_row < 2) size.ws_row = kUsualRows;
  return size;
}

/// Adds a text in lines that end between words and are indented from the second on.
void addWrapped(std::vector<std::string>& lines, const std::string& text, std::size_t columns) {
  constexpr std::string_view kIndent = "   ";
  std::istringstream words(text);
  std::string line;
  for (std::string word; words >> word;) {
    if (!line.empty() && displayWidth(line) + 1 + displayWidth(word) > columns) {
      lines.push_back(line);
      line = kIndent;
    } else if (!line.empty()) {
      line += ' ';
    }
    line += word;
  }
  lines.push_back(line);
}

}  // namespace

std::vector<std::string> watchLines(const std::vector<WatchedScale>& scales,
                                    const std::string& watched, ScreenSize size) {
  Table table(WatchedScale::headings());
  for (const WatchedScale& scale : scales) table.add(scale.row());
  std::vector<std::string> lines;
  std::istringstream rows(table.text());
  for (std::string row; std::getline(rows, row);) lines.push_back(row);
  for (const WatchedScale& scale : scales) {
    for (const std::string& remark : scale.remarks()) addWrapped(lines, remark, size.columns);
  }
  std::string last = fill(text::kWatching, {watched});
  if (lines.size() + 1 > size.rows) {
    const std::size_t kept = std::max<std::size_t>(size.rows, 2) - 1;
    last += "; " + fill(text::kMoreRows, {std::to_string(lines.size() - kept)});
    lines.resize(kept);
  }
  lines.push_back(last);
  for (std::string& line : lines) line = clipped(line, size.columns);
  return lines;
}

bool WatchScreen::possible() { return ::isatty(STDOUT_FILENO) == 1; }

ScreenSize WatchScreen::size() {
  const winsize size = terminalSize();
  // A full line would wrap, and the cursor stands on the line below the last.
  return {.columns = size.ws_col - 1U, .rows = size.ws_row - 1U};
}

WatchScreen::~WatchScreen() {
  if (shown_ > 0) std::cout << '\r' << kClearToLineEnd << std::flush;
}

void WatchScreen::show(const std::vector<std::string>& lines) {
  static constexpr const char* kClearBelow = "\x1B[J";
  if (shown_ > 0) std::cout << "\r\x1B[" << shown_ << 'A';
  for (const std::string& line : lines) {
    std::cout << line << kClearToLineEnd << "\r\n";
  }
  std::cout << kClearBelow << std::flush;
  shown_ = lines.size();
}

}  // namespace weigh
