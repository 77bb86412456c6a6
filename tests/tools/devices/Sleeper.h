#pragma once

#include <sys/types.h>

#include <string>

namespace fixture {

/// A process named "sleep" that has a file open and does nothing; ended with this.
class Sleeper {
 public:
  explicit Sleeper(const std::string& file);
  ~Sleeper();
  Sleeper(const Sleeper&) = delete;
  Sleeper& operator=(const Sleeper&) = delete;

  pid_t pid() const { return pid_; }

 private:
  pid_t pid_ = 0;
};

}  // namespace fixture
