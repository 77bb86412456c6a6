#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "ScaleLine.h"

/// Commands that a person or a script gives to running scales, one a line.
class Console {
 public:
  /// Answers go to `out`. With `echo` every change is answered with what the scale then shows;
  /// otherwise only errors, `show` and `help` are.
  Console(std::vector<sim::ScaleLine*> lines, std::ostream& out, bool echo);

  /// Takes input in pieces of any size and carries out the lines that are whole.
  void feed(std::string_view input);
  /// Carries out what came without a line end, when nothing more comes.
  void end() { feed("\n"); }
  /// True once `quit` has come.
  bool quit() const { return quit_; }

 private:
  void execute(std::string_view line);
  void apply(sim::ScaleLine& line, std::string_view command, const std::string& whole, bool named);
  void show(const sim::ScaleLine& line);
  void answer(std::string_view text);

  std::vector<sim::ScaleLine*> lines_;
  std::ostream& out_;
  bool echo_;
  bool quit_ = false;
  std::string pending_;
};
