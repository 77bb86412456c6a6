#include "Text.h"

#include <algorithm>

#include "Output.h"

namespace {

bool beginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80; }

}  // namespace

std::vector<std::string_view> partsOf(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  if (text.empty()) return parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

std::string hexText(std::span<const std::uint8_t> bytes) {
  return fmt::format("{:02X}", fmt::join(bytes, " "));
}

std::string hexText(std::span<const std::uint8_t> bytes, std::size_t most) {
  return hexText(bytes.first(std::min(bytes.size(), most))) + (bytes.size() > most ? " ..." : "");
}

std::string shellWord(const std::string& word) {
  static constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=:,./@%";
  if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) return word;
  if (visible(word) != word || word.find_first_of("\n\t") != std::string::npos) {
    // Spelt out as bash and zsh read it: as it is, it would be no word to copy from a terminal.
    std::string spelt;
    for (const char c : word) {
      if (c == '\'' || c == '\\') spelt += '\\';
      spelt += c == '\n' ? "\\n" : c == '\t' ? "\\t" : std::string(1, c);
    }
    return "$'" + visible(spelt) + "'";
  }
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::size_t displayWidth(std::string_view utf8) {
  return static_cast<std::size_t>(std::ranges::count_if(utf8, beginsCharacter));
}

std::string clipped(std::string_view utf8, std::size_t width) {
  const auto end = std::ranges::find_if(
      utf8, [left = width](char byte) mutable { return beginsCharacter(byte) && left-- == 0; });
  return {utf8.begin(), end};
}

std::vector<std::string> wrapped(std::string_view utf8, std::size_t width, std::size_t indent) {
  std::vector<std::string> lines;
  for (const std::string_view text : partsOf(utf8, '\n')) {
    const std::size_t own = std::min(text.find_first_not_of(' '), text.size());
    std::string line(text.substr(0, own));
    bool empty = true;
    for (const std::string_view word : partsOf(text.substr(own), ' ')) {
      if (!empty && displayWidth(line) + 1 + displayWidth(word) > width) {
        lines.push_back(line);
        line.assign(own + indent, ' ');
      } else if (!empty) {
        line += ' ';
      }
      line += word;
      empty = false;
    }
    lines.push_back(line);
  }
  // No text has one line, too.
  if (lines.empty()) lines.emplace_back();
  return lines;
}

std::string Table::text() const {
  std::vector<std::size_t> widths;
  for (const auto& row : rows_) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i)
      widths[i] = std::max(widths[i], displayWidth(row[i]));
  }
  std::string text;
  for (const auto& row : rows_) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i)
      line.append(row[i]).append(widths[i] - displayWidth(row[i]) + 2, ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    text.append(line).append("\n");
  }
  return text;
}
