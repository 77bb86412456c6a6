#include "CaseFile.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iomanip>
#include <map>
#include <sstream>
#include <stdexcept>

namespace exchange {
namespace {

/// Numbers of the platform are compared as people write them.
constexpr double kLastDigit = 1e-6;
constexpr int kDigits = 10;

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
  std::ostringstream text;
  // No minus before a zero.
  text << std::setprecision(kDigits) << "weight " << weight + 0.0;
  if (price != 0 || cost != 0) text << ", price " << price + 0.0 << ", cost " << cost + 0.0;
  text << (stable ? ", stable" : ", moving");
  return text.str();
}

bool PollOutcome::operator==(const PollOutcome& other) const {
  const auto same = [](double a, double b) { return std::abs(a - b) < kLastDigit; };
  if (code != 0 || other.code != 0) return code == other.code;
  return same(weight, other.weight) && same(price, other.price) && same(cost, other.cost) &&
         stable == other.stable;
}

PollOutcome outcomeFrom(const std::string& text) {
  PollOutcome outcome{.stable = text.ends_with(", stable")};
  if (std::sscanf(text.c_str(), "error %d", &outcome.code) == 0) {
    std::sscanf(text.c_str(), "weight %lf, price %lf, cost %lf", &outcome.weight, &outcome.price,
                &outcome.cost);
  }
  if (outcome.text() != text) throw std::runtime_error("no outcome of a poll: \"" + text + '"');
  return outcome;
}

ExchangeCase readCase(const std::filesystem::path& file) {
  try {
    std::ifstream stream(file, std::ios::binary);
    Head head = headIn(stream);
    ExchangeCase read;
    read.name = file.stem().string();
    read.model = std::stoi(head["Model"]);
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
