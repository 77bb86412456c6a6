#include "CaseFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

namespace exchange {
namespace {

/// Numbers of the platform are compared as people write them.
constexpr double kLastDigit = 1e-6;

std::string numberText(double number) {
  std::array<char, 64> text = {};
  std::snprintf(text.data(), text.size(), "%.10g", number == 0 ? 0.0 : number);
  return text.data();
}

std::string wordBehind(const std::string& text, const std::string& name) {
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    if (word != name) continue;
    words >> word;
    if (word.ends_with(',')) word.pop_back();
    return word;
  }
  return {};
}

double numberBehind(const std::string& text, const std::string& name, bool required) {
  const std::string word = wordBehind(text, name);
  if (word.empty() && !required) return 0.0;
  std::size_t used = 0;
  try {
    const double number = std::stod(word, &used);
    if (used == word.size()) return number;
  } catch (const std::logic_error&) {
  }
  throw std::runtime_error("no " + name + " in \"" + text + "\"");
}

using Head = std::map<std::string, std::string>;

/// The lines up to the first empty one.
Head headIn(std::istream& stream) {
  Head head;
  for (std::string line; std::getline(stream, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (line.empty()) break;
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) throw std::runtime_error("no name in \"" + line + "\"");
    const std::size_t text = line.find_first_not_of(' ', colon + 1);
    head[line.substr(0, colon)] = text == std::string::npos ? "" : line.substr(text);
  }
  for (const char* name : {"Model", "Line", "Special", "Outcome", "Reckoned"}) {
    if (head[name].empty()) throw std::runtime_error(std::string("the head has no ") + name);
  }
  return head;
}

}  // namespace

std::string PollOutcome::text() const {
  if (code != 0) return "error " + std::to_string(code);
  std::string text = "weight " + numberText(weight);
  if (price != 0 || cost != 0) {
    text += ", price " + numberText(price) + ", cost " + numberText(cost);
  }
  return text + (stable ? ", stable" : ", moving");
}

bool PollOutcome::operator==(const PollOutcome& other) const {
  const auto same = [](double a, double b) { return std::abs(a - b) < kLastDigit; };
  if (code != 0 || other.code != 0) return code == other.code;
  return same(weight, other.weight) && same(price, other.price) && same(cost, other.cost) &&
         stable == other.stable;
}

PollOutcome outcomeFrom(const std::string& text) {
  if (text.starts_with("error")) {
    return {.code = static_cast<int>(numberBehind(text, "error", true))};
  }
  const bool stable = text.ends_with(", stable");
  if (!stable && !text.ends_with(", moving")) {
    throw std::runtime_error("neither stable nor moving: \"" + text + "\"");
  }
  return {.weight = numberBehind(text, "weight", true),
          .price = numberBehind(text, "price", false),
          .cost = numberBehind(text, "cost", false),
          .stable = stable};
}

ExchangeCase readCase(const std::filesystem::path& file) {
  try {
    std::ifstream stream(file, std::ios::binary);
    Head head = headIn(stream);
    ExchangeCase read;
    read.name = file.stem().string();
    read.model = static_cast<int>(numberBehind("model " + head["Model"], "model", true));
    read.overTcp = head["Line"] == "tcp";
    if (!read.overTcp && head["Line"] != "serial") {
      throw std::runtime_error("the line is serial or tcp, not \"" + head["Line"] + "\"");
    }
    read.special = head["Special"];
    read.outcome = outcomeFrom(head["Outcome"]);
    read.log = readLog(stream);
    if (read.log.empty()) throw std::runtime_error("no exchange log behind the head");
    return read;
  } catch (const std::exception& error) {
    throw std::runtime_error(file.filename().string() + ": " + error.what());
  }
}

std::vector<std::filesystem::path> caseFiles(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".log") files.push_back(entry.path());
  }
  std::ranges::sort(files);
  return files;
}

}  // namespace exchange
