#pragma once

#include "CkByteData.h"
#include "PublicApi.h"

/// One TCP client connection.
class ORBELO_PUBLIC CkSocket {
 public:
  CkSocket() = default;
  ~CkSocket();
  CkSocket(const CkSocket&) = delete;
  CkSocket& operator=(const CkSocket&) = delete;

  /// Connects within `maxWaitMs`; `ssl` is not supported and fails.
  bool Connect(const char* host, int port, bool ssl, int maxWaitMs);
  /// Longest silence while receiving, in milliseconds.
  void put_MaxReadIdleMs(int ms) { maxReadIdleMs_ = ms; }
  /// Longest wait for room while sending, in milliseconds.
  void put_MaxSendIdleMs(int ms) { maxSendIdleMs_ = ms; }
  /// Sends all the bytes.
  bool SendBytes(CkByteData& data);
  /// Receives exactly `n` bytes into `data`; false if they don't come within the idle limit.
  bool ReceiveBytesN(unsigned long n, CkByteData& data);
  /// False once the line is found dead.
  bool get_IsConnected();
  /// Closes the connection.
  void Close(int maxWaitMs);

 private:
  bool await(short events, int ms) const;

  int fd_ = -1;
  int maxReadIdleMs_ = 0;
  int maxSendIdleMs_ = 0;
};
