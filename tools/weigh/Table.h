#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace weigh {

/// Characters that a UTF-8 text takes on a terminal; every character of the tool takes one.
std::size_t displayWidth(std::string_view utf8);
/// The first `width` characters.
std::string clipped(std::string_view utf8, std::size_t width);

/// Rows of text under headings, each column as wide as its widest entry.
class Table {
 public:
  explicit Table(std::vector<std::string> headings) { rows_.push_back(std::move(headings)); }

  void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  std::string text() const;

 private:
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace weigh
