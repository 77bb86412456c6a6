#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <ranges>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// "a, b, c"
template <typename Range>
std::string joined(const Range& items, std::string_view separator = ", ") {
  return fmt::format("{}", fmt::join(items, separator));
}

/// What stands between the separators; nothing of an empty text.
std::vector<std::string_view> partsOf(std::string_view text, char separator);

/// "06 01 02"
std::string hexText(std::span<const std::uint8_t> bytes);
/// The first of them, with " ..." where there are more.
std::string hexText(std::span<const std::uint8_t> bytes, std::size_t most);

/// The word so that a shell takes it for this one word.
std::string shellWord(const std::string& word);

/// Columns that a UTF-8 text takes on a terminal; every character of the tools takes one.
std::size_t displayWidth(std::string_view utf8);
/// The first `width` characters.
std::string clipped(std::string_view utf8, std::size_t width);
/// Lines that end between words, `width` wide where a word isn't wider. Line ends in the text stay,
/// and a line's own indent; what is wrapped goes on behind `indent` blanks.
std::vector<std::string> wrapped(std::string_view utf8, std::size_t width, std::size_t indent = 0);

/// Rows of text under headings, each column as wide as its widest entry.
class Table {
 public:
  explicit Table(std::vector<std::string> headings) { rows_.push_back(std::move(headings)); }

  void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  std::string text() const;

 private:
  std::vector<std::vector<std::string>> rows_;
};
