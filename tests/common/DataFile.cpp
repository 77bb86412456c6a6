#include "DataFile.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

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

}  // namespace fixture
