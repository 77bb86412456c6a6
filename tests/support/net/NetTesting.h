#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <utility>

#include "CkSocket.h"
#include "Usage.h"

namespace fixture {

/// Milliseconds since the object was made.
class Stopwatch {
 public:
  int ms() const {
    using namespace std::chrono;
    return static_cast<int>(duration_cast<milliseconds>(steady_clock::now() - start_).count());
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// How much later than its figure a wait may end on a busy machine.
constexpr int kSlack_ms = 1500;

/// A port of the loopback that no one listens on.
int refusingPort();

/// Connected as the port layer does it: 100 ms for receiving, 7 s for sending.
void connectTo(CkSocket& socket, int port);
bool sendBytes(CkSocket& socket, std::string_view bytes);
/// The result of a ReceiveBytesN, and what it gave.
using ReceivedBytes = std::pair<bool, std::string>;
ReceivedBytes receiveBytes(CkSocket& socket, unsigned long n);

}  // namespace fixture
