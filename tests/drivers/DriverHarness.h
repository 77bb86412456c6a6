#pragma once

#include <chrono>
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

enum class Transport { Pty, Tcp };

/// A driver and its scale at a line of either kind.
class Pair {
 public:
  /// The scale answers the n-th request with the n-th answer, and all further ones with the last.
  /// An empty answer is silence. Frames are texts for `fixture::bytes`. The connection is kept
  /// unless `leave` is 0.
  Pair(int model, Transport transport, const std::string& request,
       const std::vector<std::string>& answers, int leave = 1);
  Pair(int model, Transport transport, const fixture::Script& script, int leave = 1);

  Poll poll() { return pollOnce(*scales_); }
  bool isConnected() { return scales_->isConnected() == COrbComLanPort::kConnected; }
  /// What the scale has received, in hexadecimal, once there are so many bytes.
  std::string received(std::size_t count) const { return fixture::hex(received_.waitFor(count)); }
  IScalesObject& scales() { return *scales_; }
  fixture::PtyLine& pty() { return *pty_; }
  int connections() const { return tcp_->connections(); }

 private:
  void start(int model, Transport transport, const fixture::Script& script, int leave);
  /// May run on one connection after the other.
  void answer(fixture::Wire& wire);

  fixture::Bytes request_;
  std::vector<fixture::Bytes> answers_;
  std::size_t requests_ = 0;
  fixture::Received received_;
  std::unique_ptr<fixture::PtyLine> pty_;
  std::unique_ptr<fixture::TcpPeer> tcp_;
  std::unique_ptr<IScalesObject> scales_;
};
