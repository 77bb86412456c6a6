#pragma once

#include <pthread.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "CkSocket.h"
#include "ExchangeLog.h"
#include "SerialPort.h"

/// A network read waits so long for the next byte; a serial read doesn't wait at all.
inline constexpr int kNetworkIdle_ms = 100;

/// The byte pipe of one scale, over a serial line or a TCP connection. Every failure of the
/// transport is a return value; nothing throws. Line settings may be set before or after opening
/// and survive closing. Each operation holds the port's recursive mutex for its whole length. The
/// port owns its transport and its exchange log; all names are copied, and are used as bytes.
///
/// What the opening operations return are result codes, which go up to the platform as they are.
/// All other numbers are the port's own.
///
///     COrbComLanPort port;
///     if (port.OpenNetworkPort("192.168.0.20", 20108) != 0) return;
///     port.write(request, sizeof request);
///     unsigned char answer[14];
///     if (port.read(answer, sizeof answer) == 14) show(answer);
class COrbComLanPort {
 public:
  /// What `getState` answers; 2 is no result code here. Beware the sense: 0 is the good value.
  static constexpr int kConnected = 0;
  static constexpr int kNotConnected = 2;

  COrbComLanPort();
  explicit COrbComLanPort(const char* comName);
  COrbComLanPort(const char* host, int port);
  virtual ~COrbComLanPort();
  COrbComLanPort(const COrbComLanPort&) = delete;
  COrbComLanPort& operator=(const COrbComLanPort&) = delete;

  /// Stores the settings of a serial line; names are cut at 1023 bytes. Returns 0.
  int SetComPort(const char* name, unsigned long rate, COMPort::Parity parity,
                 COMPort::DataBits dataBits, COMPort::StopBits stopBits, bool handshaking,
                 bool xOnxOff);
  /// Stores host and TCP port; the host is cut at 1023 bytes. Returns 0.
  int SetNetworkPort(const char* host, int port);

  /// Opens what was set: 0, 1 if that fails or nothing was set, 9 if it is open already.
  /// A network port takes up to 10 s.
  int Open();
  /// Opens a serial line at 4800 baud, 8N1.
  int OpenComPort(const char* name);
  int OpenNetworkPort(const char* host, int port);
  /// Closes the transport if `really`; returns 0.
  int Close(bool really);
  /// Puts a new connection in the place of the open network connection. False for a serial line,
  /// and if none can be had: the old one is then still in use.
  bool Renew();

  /// Reads up to `size` bytes. A serial line gives at once what it has; a network port waits up
  /// to 100 ms after each byte and gives all `size` bytes or none. 0 if nothing came.
  /// With a `longest_ms` a network read is also over, with none, when so much time has passed
  /// without the last byte, however they come: bytes that drip in below the idle limit would hold
  /// a large read for hours.
  int read(unsigned char* buffer, unsigned long size, int longest_ms = 0);
  /// Returns the number of bytes written; 0 or less on failure. A serial line takes what it has
  /// room for, and fails after 2 s without room; a connection takes all, and fails after 7 s in
  /// which nothing went out.
  int write(const unsigned char* data, unsigned long size);

  /// Looks at the line. A network port whose peer is gone turns to 2 by itself, but isn't closed.
  int getState();
  /// Bits per second as last set. Only tests call it.
  unsigned long getBitRate();

  /// Each setter stores the value: 0 if an open line took it, -1 if it waits for the next
  /// opening, -2 if the line refused it, which closes the port.
  int setBitRate(unsigned long bitsPerSecond);
  int setParity(COMPort::Parity parity);
  int setDataBits(COMPort::DataBits dataBits);
  int setStopBits(COMPort::StopBits stopBits);
  int setHandshaking(bool handshaking);
  int setxONxOFF(bool xOnxOff);

  /// Names the exchange log "<folder>log_scales_<name>.log" (cut at 299 bytes) and switches it on
  /// if the marker "<folder>log.txt" exists. Both texts are used as bytes; returns 0.
  int SetLogName(const char* folder, const char* name);
  /// Switches the exchange log by the low byte of `enabled`, and returns that byte. Only tests call
  /// it: for users the marker does.
  int setPortLog(int enabled);
  /// Adds one record to the exchange log, if it is on; returns 0. A log that can't be opened
  /// switches itself off.
  int logWrite(const unsigned char* data, unsigned long size, int kind);

 private:
  enum ConnType : std::uint8_t { NotConfigured = 0, Serial = 1, Network = 2 };

  void InitAllM();
  int OpenSerial();
  int OpenNetwork();
  std::unique_ptr<CkSocket> connected();
  int ReadSerial(unsigned char* buffer, unsigned long size);
  int ReadNetwork(unsigned char* buffer, unsigned long size, int longest_ms);
  int WriteSerial(const unsigned char* data, unsigned long size);
  int WriteNetwork(const unsigned char* data, unsigned long size);
  void logEvent(std::string_view text);
  void logData(LogRecord kind, const unsigned char* data, unsigned long size);
  /// Hands a setting to the open line, by the rule of the setters above.
  template <typename HandOver>
  int applyToLine(HandOver handOver);

  std::unique_ptr<COMPort> comPort;
  std::unique_ptr<CkSocket> socket;
  ExchangeLog log;
  ConnType connType = NotConfigured;
  std::uint64_t bitRate = 0;
  COMPort::Parity parity = COMPort::None;
  COMPort::DataBits dataBits = COMPort::Bits8;
  COMPort::StopBits stopBits = COMPort::One;
  bool handshaking = false;
  bool xOnxOff = false;
  std::array<char, 1024> comName = {};
  std::array<char, 1024> hostName = {};
  std::int32_t netPort = 0;
  pthread_mutex_t portMutex;
};
