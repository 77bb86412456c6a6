#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "ExchangeRecords.h"

namespace exchange {

/// What a poll came to, as the platform gets it.
struct PollOutcome {
  /// The numbers count only where it is 0.
  int code = 0;
  double weight = 0.0;
  /// 0 for scales without prices.
  double price = 0.0;
  double cost = 0.0;
  bool stable = false;

  /// "weight 1.25, stable", "weight 1.25, price 12.5, cost 15.63, moving", "error 3".
  std::string text() const;
  bool operator==(const PollOutcome& other) const;
};

/// Reads what `text` writes. Throws std::runtime_error.
PollOutcome outcomeFrom(const std::string& text);

/// A recorded exchange with what has to come of it: a head of lines "Name: text", an empty line,
/// and the exchange log as the component wrote it.
struct ExchangeCase {
  std::string name;
  int model = 0;
  bool overTcp = false;
  std::string special;
  PollOutcome outcome;
  std::vector<Record> log;
};

/// Throws std::runtime_error with the name of the file and what is wrong in it.
ExchangeCase readCase(const std::filesystem::path& file);

/// All of a folder, by name.
std::vector<std::filesystem::path> caseFiles(const std::filesystem::path& folder);

}  // namespace exchange
