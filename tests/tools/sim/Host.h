#pragma once

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <string>

#include "FileDescriptor.h"
#include "ScaleState.h"

/// The other end of a simulated scale's line: a host as plain as can be.
class Host {
 public:
  explicit Host(const std::string& device)
      : line_(::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {}
  explicit Host(int port) : line_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    void* any = &address;
    if (::connect(line_.get(), static_cast<sockaddr*>(any), sizeof address) != 0) line_.reset();
  }

  bool open() const { return static_cast<bool>(line_); }
  int descriptor() const { return line_.get(); }
  void say(const sim::Bytes& bytes) const {
    [[maybe_unused]] const ssize_t written = ::write(line_.get(), bytes.data(), bytes.size());
  }
  /// Takes what comes until `count` bytes are there, the line ends, or nothing comes for `limit`.
  sim::Bytes hear(std::size_t count,
                  std::chrono::milliseconds limit = std::chrono::seconds{5}) const {
    sim::Bytes heard;
    while (heard.size() < count) {
      pollfd waiting = {line_.get(), POLLIN, 0};
      if (::poll(&waiting, 1, static_cast<int>(limit.count())) <= 0) break;
      sim::Bytes piece(count - heard.size());
      const ssize_t got = ::read(line_.get(), piece.data(), piece.size());
      if (got <= 0) break;
      heard.insert(heard.end(), piece.begin(), piece.begin() + got);
    }
    return heard;
  }
  /// True once the other side has closed; what comes before is dropped.
  bool hearsTheEnd() const {
    hear(100'000);
    pollfd ended = {line_.get(), POLLIN, 0};
    return ::poll(&ended, 1, 0) > 0;
  }

 private:
  sim::FileDescriptor line_;
};
