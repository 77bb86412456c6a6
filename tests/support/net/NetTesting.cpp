#include "NetTesting.h"

#include <gtest/gtest.h>

#include "TcpPeer.h"

namespace fixture {

int refusingPort() {
  int port = 0;
  // Bound for as long as the process lives, so that nobody else listens there.
  static const Descriptor holder = boundToLoopback(port);
  static const int held = port;
  return held;
}

void connectTo(CkSocket& socket, int port) {
  ASSERT_TRUE(socket.Connect("127.0.0.1", port, false, 10'000)) << socket.lastErrorText();
  socket.put_MaxReadIdleMs(100);
  socket.put_MaxSendIdleMs(7000);
}

bool sendBytes(CkSocket& socket, std::string_view bytes) {
  CkByteData data;
  data.append2(bytes.data(), bytes.size());
  return socket.SendBytes(data);
}

ReceivedBytes receiveBytes(CkSocket& socket, unsigned long n) {
  CkByteData data;
  const bool ok = socket.ReceiveBytesN(n, data);
  return {ok, std::string(data.getData() == nullptr ? "" : data.getData(), data.getSize())};
}

}  // namespace fixture
