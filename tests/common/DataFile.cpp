#include "DataFile.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace fixture {

std::string dataFile(const std::string& name) {
  std::ifstream file(std::string(ORBELO_TEST_DATA "/") + name, std::ios::binary);
  if (!file) throw std::runtime_error("no test data in " ORBELO_TEST_DATA "/" + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> dataLines(const std::string& name) {
  std::istringstream all(dataFile(name));
  std::vector<std::string> lines;
  for (std::string line; std::getline(all, line);) {
    if (!line.empty() && !line.starts_with("# ")) lines.push_back(line);
  }
  return lines;
}

std::vector<DataRow> dataRows(const std::string& name) {
  constexpr std::string_view kRemark = "  # ";
  constexpr std::string_view kArrow = " ->";
  std::vector<DataRow> rows;
  std::string heading;
  for (const std::string& line : dataLines(name)) {
    const std::size_t end = std::min(line.find(kRemark), line.size());
    const std::size_t arrow = line.find(kArrow);
    if (arrow == line.npos) {
      heading = line;
      continue;
    }
    const std::size_t right = std::min(arrow + kArrow.size() + 1, end);
    rows.push_back({heading, line.substr(0, arrow), line.substr(right, end - right),
                    line.substr(std::min(end + kRemark.size(), line.size()))});
  }
  if (rows.empty()) throw std::runtime_error("no rows in " + name);
  return rows;
}

std::map<std::string, std::string> dataFields(const std::string& text) {
  std::map<std::string, std::string> fields;
  std::istringstream parts(text);
  for (std::string part; std::getline(parts >> std::ws, part, ',');) {
    const std::size_t end = std::min(part.find(' '), part.size());
    fields[part.substr(0, end)] = part.substr(std::min(end + 1, part.size()));
  }
  return fields;
}

}  // namespace fixture
