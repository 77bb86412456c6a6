#include "FrameRows.h"

#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "DataFile.h"

namespace {

/// "weight 1250, stable 1, code 3, ask again"; "refused" for no frame, "nothing" for all zeros.
Says saysOf(const std::string& text) {
  static const std::map<std::string_view, double Says::*> kNumbers = {
      {"weight", &Says::weight}, {"price", &Says::price}, {"cost", &Says::cost}};
  Says says;
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, ',');) {
    std::istringstream words(part);
    std::string word;
    words >> word;
    if (const auto number = kNumbers.find(word); number != kNumbers.end()) {
      words >> says.*number->second;
    } else if (word == "stable") {
      words >> says.stable;
    } else if (word == "code") {
      words >> says.code;
    } else if (word == "ask") {
      says.next = Outcome::Next::AskAgain;
    } else if (word == "hang") {
      says.next = Outcome::Next::HangUp;
    } else if (word == "refused") {
      says.good = false;
    } else if (word != "nothing") {
      words.setstate(std::ios::failbit);
    }
    if (!words) throw std::runtime_error("no meaning of a frame: " + text);
  }
  return says;
}

std::map<int, std::vector<FrameRow>> readRows() {
  constexpr std::size_t kNumber = std::string_view("model ").size();
  std::map<int, std::vector<FrameRow>> rows;
  for (const fixture::DataRow& row : fixture::dataRows("frames.txt")) {
    const int model = std::stoi(row.heading.substr(kNumber));
    rows[model].push_back({model, row.left, row.remark, saysOf(row.right)});
  }
  return rows;
}

}  // namespace

std::span<const FrameRow> frameRowsOf(int model) {
  static const std::map<int, std::vector<FrameRow>> rows = readRows();
  return rows.at(model);
}
