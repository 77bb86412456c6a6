#pragma once

#include <sys/types.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Descriptor.h"

namespace fixture {

/// A running program with pipes at its input and output. Killed with this if it hasn't ended.
class Program {
 public:
  /// Where its errors go: into its output, or to `errors`.
  enum class Errors { WithOutput, Apart };

  /// The first word is the program, looked for as a shell does it.
  Program(std::vector<std::string> commandLine, Errors errors);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void say(const std::string& text) const;
  void closeInput() { input_.reset(); }
  pid_t pid() const { return pid_; }
  void signal(int number) const;

  /// Waits for a line of its output, and gives it without the line end.
  std::string line() const;
  /// Waits for all that it still writes.
  std::string rest() const;
  /// Waits for the end; the exit code, or -1 for an end by a signal.
  int end();
  /// What it wrote as errors, once it has ended.
  std::string errors() const;

 private:
  pid_t pid_ = 0;
  Descriptor input_;
  Descriptor output_;
  /// A file, since errors may be longer than a pipe holds while nobody reads it.
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> errors_;
};

}  // namespace fixture
