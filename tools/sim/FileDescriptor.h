#pragma once

#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

namespace sim {

/// Throws errno as a std::system_error.
[[noreturn]] inline void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

/// Owns a file descriptor.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int fd) : fd_(fd) {}
  FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  FileDescriptor& operator=(FileDescriptor other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~FileDescriptor() { reset(); }

  int get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }
  void reset() {
    if (fd_ >= 0) ::close(std::exchange(fd_, -1));
  }

 private:
  int fd_ = -1;
};

}  // namespace sim
