#pragma once

#include "CkByteData.h"
#include "CkMultiByteBase.h"
#include "PublicApi.h"

class ClsSocket;

/// One TCP client connection. Results are false on failure; lastErrorText() then tells the story.
/// Nothing throws.
class ORBELO_PUBLIC CkSocket : public CkMultiByteBase {
 public:
  CkSocket();
  ~CkSocket() override;

  /// Connects within `maxWaitMs`, 0 meaning 6 hours. `hostname` is a name or a numeric address; of
  /// a URL the host counts. `ssl` is not available and fails.
  bool Connect(const char* hostname, int port, bool ssl, int maxWaitMs);
  /// Longest silence while receiving, in milliseconds; 0 means 56 hours.
  void put_MaxReadIdleMs(int ms);
  /// Longest receiving altogether, in milliseconds; 0, as at the start, means no limit but the
  /// silence.
  void put_MaxReadMs(int ms);
  /// Longest wait for room while sending, in milliseconds; 0 means 6 hours.
  void put_MaxSendIdleMs(int ms);
  /// Sends all the bytes.
  bool SendBytes(CkByteData& data);
  /// Appends exactly `numBytes` bytes to `data`; false if they don't come within the idle limit,
  /// and then `data` holds those that did.
  bool ReceiveBytesN(unsigned long numBytes, CkByteData& data);
  /// False once the line is found dead.
  bool get_IsConnected();
  /// Ends the connection, waiting for the peer's goodbye at most `maxWaitMs` (0: 30 seconds).
  bool Close(int maxWaitMs);

  /// Why the last call of its kind failed, 0 if it didn't (ConnectFailReason and
  /// ClsSocket::TransferFailReason).
  int get_ConnectFailReason();
  int get_SendFailReason();
  int get_ReceiveFailReason();

 private:
  ClsSocket* impl() const;
};
