#pragma once

#include <chrono>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "ProtocolSheet.h"
#include "PtyLine.h"
#include "ScalesObject.h"
#include "TcpPeer.h"

using std::chrono::milliseconds;

/// What the drivers have slept so far. The tests bring their own `orbSleep_mSec`, which sleeps and
/// adds up, so that budgets can be held to the millisecond on a machine however busy.
milliseconds sleptSoFar();

/// What the caller finds in its outputs after a poll, and what that slept.
struct Poll {
  int code;
  Outputs reading;
  milliseconds slept;
};

/// What a caller has in an output before the poll.
inline constexpr double kOfCaller = -77.5;
inline constexpr long kStableOfCaller = -7;

Poll pollOnce(IScalesObject& scales);

/// A scale's wits: answers the n-th request with the n-th answer, and all further ones with the
/// last. An empty answer is silence.
class Answers {
 public:
  Answers(fixture::Bytes request, std::vector<fixture::Bytes> answers);

  /// May run on one connection after the other.
  fixture::Script script() const;
  /// Waits for so many bytes in all, and gives what has come.
  fixture::Bytes received(std::size_t count) const { return state_->received.waitFor(count); }

 private:
  struct State {
    fixture::Bytes request;
    std::vector<fixture::Bytes> answers;
    std::size_t requests = 0;
    fixture::Received received = {};
  };
  std::shared_ptr<State> state_;
};

enum class Transport { Pty, Tcp };

/// A driver and its scale at a line of either kind.
class Pair {
 public:
  /// Frames are texts for `fixture::bytes`. The connection is kept unless `leave` is 0.
  Pair(int model, Transport transport, const char* request,
       std::initializer_list<const char*> answers, int leave = 1);
  Pair(int model, Transport transport, const fixture::Script& script, int leave = 1);

  Poll poll() { return pollOnce(*scales_); }
  bool isConnected() { return scales_->isConnected() == COrbComLanPort::kConnected; }
  /// What the scale has received, in hexadecimal, once there are so many bytes.
  std::string received(std::size_t count) const;
  IScalesObject& scales() { return *scales_; }
  fixture::PtyLine& pty() { return *pty_; }
  int connections() const { return tcp_->connections(); }

 private:
  void start(int model, Transport transport, const fixture::Script& script, int leave);

  Answers answers_;
  std::unique_ptr<fixture::PtyLine> pty_;
  std::unique_ptr<fixture::TcpPeer> tcp_;
  std::unique_ptr<IScalesObject> scales_;
};
