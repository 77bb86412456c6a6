#pragma once

#include <atomic>
#include <functional>
#include <thread>
#include <utility>

#include "Descriptor.h"
#include "Wire.h"

namespace fixture {

/// A socket on a port of the loopback that the system chose. Nobody listens there yet.
Descriptor boundToLoopback(int& port);

/// A listener whose queue is full, so that a connect to it gets no answer at all.
class SilentPort {
 public:
  SilentPort();
  int port() const { return port_; }

 private:
  int port_ = 0;  // before the listener, which fills it in
  Descriptor listener_;
  Descriptor queued_[3];
};

/// The scale's end of a TCP connection.
class TcpWire final : public Wire {
 public:
  TcpWire(Descriptor connection, const StopSignal& stop)
      : Wire(connection.get(), stop), connection_(std::move(connection)) {}
  void hangUp() override;
  /// Sends no more, but goes on receiving.
  void halfClose();
  /// Ends the connection the hard way: the driver meets a reset.
  void reset();

 private:
  Descriptor connection_;
};

/// A script that needs what only TCP has; a plain `Script` is one too.
using TcpScript = std::function<void(TcpWire&)>;

/// A network scale on the loopback: listens on a port that the system chose, and runs its script
/// on each connection, one after the other.
class TcpPeer {
 public:
  explicit TcpPeer(TcpScript script);
  ~TcpPeer();
  TcpPeer(const TcpPeer&) = delete;
  TcpPeer& operator=(const TcpPeer&) = delete;

  static constexpr const char* kHost = "127.0.0.1";
  int port() const { return port_; }
  /// How many connections have been taken so far.
  int connections() const { return connections_; }
  /// Ends listener and connection; the port refuses from now on.
  void stop();

 private:
  void run(const TcpScript& script);

  StopSignal stop_;
  int port_ = 0;  // before the listener, which fills it in
  Descriptor listener_;
  std::atomic<int> connections_ = 0;
  std::thread player_;
};

}  // namespace fixture
