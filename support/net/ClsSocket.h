#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "ClsBase.h"
#include "SocketParams.h"

class DataBuffer;
class Socket2;
class XString;

/// A TCP client with its settings and the reasons of its last failures. Each operation holds the
/// object's lock for its whole length; a second send, receive or close that comes meanwhile from
/// another thread is turned away at once.
class ClsSocket : public ClsBase {
 public:
  /// Why a transfer failed.
  enum TransferFailReason : int {
    None = 0,
    NoConnection = 2,
    General = 3,
    NothingToSend = 4,
    TimedOut = 5,
    SocketError = 9,
    ClosedByPeer = 10,
    /// The numbers between belong to asynchronous calls and application callbacks.
    OtherThread = 12,
  };

  ClsSocket();
  ~ClsSocket() override;
  /// Null if memory is short. The caller ends it by deleteSelf().
  static ClsSocket* createNewCls();

  /// Replaces a connection that exists. `maxWaitMs` 0 means 6 hours.
  bool Connect(XString& hostname, int port, bool ssl, std::uint32_t maxWaitMs);
  /// After an exception in Connect: no connection, and a reason.
  void giveUpConnect();
  /// 0 means 56 hours.
  void put_MaxReadIdleMs(std::uint32_t ms);
  void put_MaxReadMs(std::uint32_t ms);
  /// 0 means 6 hours.
  void put_MaxSendIdleMs(std::uint32_t ms);
  bool SendBytes(const unsigned char* data, std::uint32_t size);
  /// Appends exactly `numBytes` bytes to `data`. After a failure the bytes that did come are there
  /// too; bytes that came beyond are kept for the next call.
  bool ReceiveBytesN(std::uint32_t numBytes, DataBuffer& data);
  bool get_IsConnected();
  /// False only if a Close is running.
  bool Close(std::uint32_t maxWaitMs);

  int get_ConnectFailReason() const { return m_connectFailReason; }
  int get_SendFailReason() const { return m_sendFailReason; }
  int get_ReceiveFailReason() const { return m_receiveFailReason; }

 private:
  bool connectTo(XString& hostname, int port, bool ssl, std::uint32_t maxWaitMs);
  bool sendAll(const unsigned char* data, std::uint32_t size);
  bool receiveAll(std::uint32_t wanted, DataBuffer& data);
  bool receiveSome(std::uint32_t& wanted, std::uint32_t idleMs, DataBuffer& data);

  std::uint32_t m_maxReadIdleMs = 0;
  std::uint32_t m_maxReadMs = 0;
  std::uint32_t m_maxSendIdleMs = 0;
  TcpSettings m_tcp;
  std::unique_ptr<Socket2> m_connection;
  std::atomic<int> m_connectFailReason{0};
  std::atomic<int> m_sendFailReason{None};
  std::atomic<int> m_receiveFailReason{None};
  std::atomic<bool> m_sending{false};
  std::atomic<bool> m_receiving{false};
  std::atomic<bool> m_closing{false};
};
