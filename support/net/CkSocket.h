#pragma once

#include "CkByteData.h"
#include "CkMultiByteBase.h"
#include "PublicApi.h"

class ClsSocket;

/// One TCP client connection. Results are false on failure; lastErrorText() then tells the story.
/// Nothing throws. The object owns the connection, and may be used by one thread in each
/// direction.
///
///     CkSocket socket;
///     if (!socket.Connect("192.168.0.20", 20108, false, 10000)) return;
///     socket.put_MaxReadIdleMs(100);
///     CkByteData request, answer;
///     request.append2("W\r", 2);
///     if (socket.SendBytes(request) && socket.ReceiveBytesN(14, answer)) use(answer);
///     socket.Close(5000);
class ORBELO_PUBLIC CkSocket : public CkMultiByteBase {
 public:
  CkSocket();
  ~CkSocket() override;

  /// Connects, with at most `maxWaitMs` for the host to answer; 0 means 6 hours. Looking up a name
  /// takes what the system's resolver takes, and a host that refuses is asked up to four times.
  /// `hostname` is a name or a numeric address, in UTF-8 or the ANSI code page as put_Utf8() says;
  /// of a URL the host counts. A connection that exists is given up. `ssl` is not available and
  /// fails.
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
  /// Looks at the line, and is false once that is found dead. Bytes that have come and were not
  /// yet taken hide the peer's goodbye.
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
