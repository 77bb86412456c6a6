#include "Table.h"

#include <algorithm>

namespace weigh {

namespace {

constexpr std::string_view kGap = "  ";

bool beginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

}  // namespace

std::size_t displayWidth(std::string_view utf8) {
  return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), beginsCharacter));
}

std::string clipped(std::string_view utf8, std::size_t width) {
  const auto end = std::find_if(utf8.begin(), utf8.end(), [left = width](char byte) mutable {
    return beginsCharacter(byte) && left-- == 0;
  });
  return {utf8.begin(), end};
}

std::string Table::text() const {
  std::vector<std::size_t> widths;
  for (const auto& row : rows_) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], displayWidth(row[i]));
    }
  }
  std::string text;
  for (const auto& row : rows_) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line.append(row[i]).append(widths[i] - displayWidth(row[i]), ' ').append(kGap);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text.append(line).append("\n");
  }
  return text;
}

}  // namespace weigh
