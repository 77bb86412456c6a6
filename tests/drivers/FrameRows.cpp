#include "FrameRows.h"

#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "DataFile.h"

namespace {

/// "weight 1250, stable 1, code 3, ask again"; "refused" for no frame, "nothing" for all zeros.
Says saysOf(const std::string& text) {
  Says says;
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, ',');) {
    std::istringstream words(part);
    std::string word;
    words >> word;
    if (word == "weight")
      words >> says.weight;
    else if (word == "price")
      words >> says.price;
    else if (word == "cost")
      words >> says.cost;
    else if (word == "stable")
      words >> says.stable;
    else if (word == "code")
      words >> says.code;
    else if (word == "ask")
      says.next = Outcome::Next::AskAgain;
    else if (word == "hang")
      says.next = Outcome::Next::HangUp;
    else if (word == "refused")
      says.good = false;
    else if (word != "nothing")
      words.setstate(std::ios::failbit);
    if (!words) throw std::runtime_error("no meaning of a frame: " + text);
  }
  return says;
}

std::map<int, std::vector<FrameRow>> readRows() {
  constexpr std::string_view kModel = "model ";
  constexpr std::string_view kArrow = " -> ";
  constexpr std::string_view kRemark = "  # ";
  std::map<int, std::vector<FrameRow>> rows;
  int model = -1;
  for (const std::string& line : fixture::dataLines("frames.txt")) {
    if (line.starts_with(kModel)) {
      model = std::stoi(line.substr(kModel.size()));
      continue;
    }
    const std::size_t arrow = line.find(kArrow);
    const std::size_t remark = line.find(kRemark, arrow);
    if (remark == std::string::npos) throw std::runtime_error("no row of a frame: " + line);
    const std::size_t says = arrow + kArrow.size();
    rows[model].push_back({model, line.substr(0, arrow), line.substr(remark + kRemark.size()),
                           saysOf(line.substr(says, remark - says))});
  }
  return rows;
}

}  // namespace

std::span<const FrameRow> frameRowsOf(int model) {
  static const std::map<int, std::vector<FrameRow>> rows = readRows();
  return rows.at(model);
}
