#pragma once

#include <utility>

namespace fixture {

/// An owned file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    reset();
    fd_ = std::exchange(other.fd_, -1);
    return *this;
  }
  ~Descriptor() { reset(); }

  int get() const { return fd_; }
  bool isOpen() const { return fd_ >= 0; }
  void reset();

  /// Takes the result of a system call; throws `std::system_error` if it failed.
  static Descriptor checked(int fd, const char* call);

 private:
  int fd_ = -1;
};

/// Throws `std::system_error` with `errno` and the call's name.
[[noreturn]] void throwErrno(const char* call);

/// A flag that ends waits: `poll` for its descriptor beside the one that is waited for.
class StopSignal {
 public:
  StopSignal();
  /// Can't fail: the count of an open event is far from full.
  void raise() noexcept;
  int descriptor() const { return event_.get(); }

 private:
  Descriptor event_;
};

}  // namespace fixture
