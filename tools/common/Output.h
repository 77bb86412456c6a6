#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

/// What the programs end with.
enum ExitCode : int {
  kGood = 0,
  /// The scale, the component or the machine reports an error.
  kFailed = 1,
  /// The command can't be carried out as it was given.
  kWrongUsage = 2,
};

/// Ends the program: what failed and why, and what to do about it.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& what, std::string whatToDo = {})
      : std::runtime_error(what), exitCode(code), remedy(std::move(whatToDo)) {}

  ExitCode exitCode;
  /// May be empty.
  std::string remedy;
};

/// Runs a program to its exit code: settles the language by --lang or the environment, and says
/// what the body throws. `name` stands before its messages.
int runProgram(const char* name, int argc, char** argv, const std::function<ExitCode()>& body);

/// Writes to standard output at once, `visible`. Throws Failure where that can't be done; one that
/// says nothing if it is because the reader has left.
void print(std::string_view text);
/// The same with a terminal's control sequences in it.
void printRaw(std::string_view text);
/// Writes "weigh: message" and the remedy, if there is one, to standard error.
void complain(std::string_view message, std::string_view remedy = {});
/// Writes a line to standard error.
void tell(std::string_view line);

/// Room on the terminal at a descriptor; the usual 80 by 24 where there is none.
struct ScreenSize {
  std::size_t columns = 80;
  std::size_t rows = 24;
};
ScreenSize screenSize(int descriptor);

/// The text without what would steer a terminal: control characters, but for line end and tab, and
/// bytes that are no UTF-8 become "\x1B".
std::string visible(std::string_view text);
