#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "FileDescriptor.h"
#include "SerialLine.h"

namespace sim {

/// The scale's end of a line. Failures to set it up throw std::system_error, which names what
/// failed; what happens on a line that is up is never an error.
class Endpoint {
 public:
  virtual ~Endpoint() = default;
  Endpoint(const Endpoint&) = delete;
  Endpoint& operator=(const Endpoint&) = delete;

  /// What a host connects to: a device path, or "127.0.0.1:port".
  virtual std::string address() const = 0;
  /// The descriptor to wait on for input, -1 while the line is away.
  virtual int descriptor() const = 0;
  /// Takes what arrived; empty also for a connection that came or went.
  virtual Bytes receive() = 0;
  /// Sends what the line takes at once; the rest is lost, as on a line that nobody reads.
  virtual void send(std::span<const std::uint8_t> bytes) { fill(bytes); }
  /// Sends what the line takes at once, behind all that its reader hasn't taken yet, and returns
  /// how many bytes that was.
  virtual std::size_t fill(std::span<const std::uint8_t> bytes) = 0;
  /// Whether a frame that nobody asked for makes sense now.
  virtual bool hasListener() const = 0;
  /// Drops the host: a connection is closed and the next one welcome, a serial line goes away.
  virtual void hangUp() { goAway(); }
  /// Makes the line vanish: no device path, no open connection, no listening port.
  virtual void goAway() = 0;
  /// Brings it back under the same address. Throws like the constructor.
  virtual void comeBack() = 0;
  bool isAway() const { return descriptor() < 0; }

  /// Time between a frame and the hang-up behind it, for which the reader may still take it.
  const std::chrono::milliseconds graceBeforeHangUp;
  /// Time from one frame of a streaming scale to the next.
  const std::chrono::milliseconds streamInterval;

 protected:
  Endpoint(std::chrono::milliseconds grace, std::chrono::milliseconds interval)
      : graceBeforeHangUp(grace), streamInterval(interval) {}
};

/// A new directory with a name of its own, removed with all that is in it at the end.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// A serial line through a pseudo-terminal. Hosts open it by a symbolic link: numbers of
/// pseudo-terminals are given out anew at once, so a number that one simulator left would lead a
/// late host to another's line.
class PtyEndpoint final : public Endpoint {
 public:
  /// `link` is made and, at the end, removed. One that a simulator left behind is replaced; one of
  /// a simulator that still runs, and whatever else has the name, is an error:
  /// std::errc::device_or_resource_busy and file_exists. An empty `link` makes one in a temporary
  /// directory.
  explicit PtyEndpoint(std::filesystem::path link = {});
  ~PtyEndpoint() override;

  /// A pseudo-terminal carries bytes at any speed. With the setting of the scale's own end, what
  /// goes over it arrives as on a wire: garbled unless the host has set the same speed. Parity
  /// can't be told, since a pseudo-terminal doesn't keep it: the host's counts as right.
  void setLineEnd(const LineEnd& own) { own_ = own; }

  std::string address() const override { return link_.string(); }
  int descriptor() const override { return master_.get(); }
  Bytes receive() override;
  void send(std::span<const std::uint8_t> bytes) override;
  std::size_t fill(std::span<const std::uint8_t> bytes) override;
  bool hasListener() const override { return static_cast<bool>(master_); }
  void goAway() override;
  void comeBack() override;

 private:
  LineEnd hostEnd() const;

  std::optional<TemporaryDirectory> directory_;
  std::filesystem::path link_;
  /// Held for as long as the name is this simulator's.
  FileDescriptor claim_;
  FileDescriptor master_;
  /// Kept open, so that the master sees no error while no host has the line.
  FileDescriptor slave_;
  std::string slavePath_;
  std::optional<LineEnd> own_;
};

/// A TCP port on the loopback interface. Like a serial server it serves one host at a time; the
/// next one waits until that one leaves.
class TcpEndpoint final : public Endpoint {
 public:
  /// Port 0 takes any free one.
  explicit TcpEndpoint(std::uint16_t port = 0);

  std::uint16_t port() const { return port_; }
  std::string address() const override;
  int descriptor() const override { return client_ ? client_.get() : listener_.get(); }
  Bytes receive() override;
  std::size_t fill(std::span<const std::uint8_t> bytes) override;
  bool hasListener() const override { return static_cast<bool>(client_); }
  void hangUp() override;
  void goAway() override;
  void comeBack() override;

 private:
  std::uint16_t port_;
  /// Holds the port without listening while the scale is away: hosts are refused, and nobody else
  /// is given the port.
  FileDescriptor reservation_;
  FileDescriptor listener_;
  FileDescriptor client_;
};

}  // namespace sim
