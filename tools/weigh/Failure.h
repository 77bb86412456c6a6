#pragma once

#include <stdexcept>
#include <string>

namespace weigh {

/// What the program ends with.
enum ExitCode : int {
  kGood = 0,
  /// The scale or the component reports an error.
  kScaleFailed = 1,
  /// The command can't be carried out as it was given.
  kWrongUsage = 2,
};

/// Ends the command: what failed and why, and what to do about it.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& what, std::string whatToDo = {})
      : std::runtime_error(what), exitCode(code), remedy(std::move(whatToDo)) {}

  ExitCode exitCode;
  /// May be empty.
  std::string remedy;
};

/// Writes "weigh: message" and the remedy, if there is one, to standard error.
void complain(const std::string& message, const std::string& remedy = {});

}  // namespace weigh
