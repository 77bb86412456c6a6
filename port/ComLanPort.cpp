#include "ComLanPort.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <span>

#include "AutoLockMutex.h"
#include "BoundedCopy.h"
#include "Cancellation.h"
#include "CkByteData.h"

namespace {

constexpr unsigned long kDefaultBitRate = 4800;
constexpr int kDefaultNetPort = 20108;

constexpr int kConnectTimeout_ms = 10000;
constexpr int kSendIdle_ms = 7000;
constexpr int kCloseTimeout_ms = 5000;

// Result codes: the scale's operation hands them up as they are.
constexpr int kOpened = 0;
constexpr int kCantOpen = 1;
constexpr int kAlreadyOpen = 9;

// The port's own numbers, and no result codes.
constexpr int kSet = 0;
constexpr int kSetWaits = -1;
constexpr int kSetRefused = -2;

constexpr int kNoLine = -1;
constexpr int kWriteFailed = -2;

const char* parityName(COMPort::Parity parity) {
  switch (parity) {
    case COMPort::None: return "None";
    case COMPort::Odd: return "Odd";
    case COMPort::Even: return "Even";
    case COMPort::Mark: return "Mark";
    case COMPort::Space: return "Space";
  }
  return "";
}

const char* stopBitsName(COMPort::StopBits stopBits) {
  switch (stopBits) {
    case COMPort::One: return "1";
    case COMPort::OnePointFive: return "1.5";
    case COMPort::Two: return "2";
  }
  return "";
}

/// What an open line or connection is, for the log: the fixed words and the longest name fit.
using ConnectionLine = std::array<char, 1200>;

}  // namespace

COrbComLanPort::COrbComLanPort() { InitAllM(); }

COrbComLanPort::COrbComLanPort(const char* name) {
  InitAllM();
  OpenComPort(name);
}

COrbComLanPort::COrbComLanPort(const char* host, int port) {
  InitAllM();
  OpenNetworkPort(host, port);
}

COrbComLanPort::~COrbComLanPort() {
  const CancellationHeld held;
  Close(true);
  logEvent("STOP PROGRAM");
  CAutoLockMutex::MutexDelete(&portMutex);
}

void COrbComLanPort::InitAllM() {
  CAutoLockMutex::MutexInit(&portMutex);
  bitRate = kDefaultBitRate;
  netPort = kDefaultNetPort;
}

int COrbComLanPort::SetComPort(const char* name, unsigned long rate, COMPort::Parity newParity,
                               COMPort::DataBits newDataBits, COMPort::StopBits newStopBits,
                               bool newHandshaking, bool newXOnxOff) {
  const CAutoLockMutex lock(&portMutex);
  connType = Serial;
  hostName.fill(0);
  copyBounded(comName, name);
  bitRate = rate;
  parity = newParity;
  dataBits = newDataBits;
  stopBits = newStopBits;
  handshaking = newHandshaking;
  xOnxOff = newXOnxOff;
  return 0;
}

int COrbComLanPort::SetNetworkPort(const char* host, int port) {
  const CAutoLockMutex lock(&portMutex);
  connType = Network;
  comName.fill(0);
  copyBounded(hostName, host);
  netPort = port;
  return 0;
}

int COrbComLanPort::OpenComPort(const char* name) {
  const CAutoLockMutex lock(&portMutex);
  Close(true);
  SetComPort(name, kDefaultBitRate, COMPort::None, COMPort::Bits8, COMPort::One, false, false);
  return Open();
}

int COrbComLanPort::OpenNetworkPort(const char* host, int port) {
  const CAutoLockMutex lock(&portMutex);
  Close(true);
  SetNetworkPort(host, port);
  return Open();
}

int COrbComLanPort::Open() {
  const CAutoLockMutex lock(&portMutex);
  if (getState() == kConnected) return kAlreadyOpen;
  Close(true);  // a dead transport may still lie here
  switch (connType) {
    case Serial: return OpenSerial();
    case Network: return OpenNetwork();
    case NotConfigured: break;
  }
  return kCantOpen;
}

int COrbComLanPort::OpenSerial() {
  return unlessThrown(
      [&] {
        comPort = std::make_unique<COMPort>(comName.data());
        comPort->setBitRate(static_cast<int>(bitRate));
        comPort->setParity(parity);
        comPort->setDataBits(dataBits);
        comPort->setStopBits(stopBits);
        comPort->setHandshaking(handshaking);
        comPort->setxONxOFF(xOnxOff);
        logEvent("OPEN");
        return kOpened;
      },
      [&] {
        logEvent("ERROR_OPEN");
        Close(true);
        return kCantOpen;
      });
}

std::unique_ptr<CkSocket> COrbComLanPort::connected() {
  // Short memory is a failure to connect like any other.
  return unlessThrown(
      [&]() -> std::unique_ptr<CkSocket> {
        auto made = std::make_unique<CkSocket>();
        if (!made->Connect(hostName.data(), netPort, false, kConnectTimeout_ms)) return nullptr;
        made->put_MaxReadIdleMs(kNetworkIdle_ms);
        made->put_MaxSendIdleMs(kSendIdle_ms);
        return made;
      },
      []() -> std::unique_ptr<CkSocket> { return nullptr; });
}

int COrbComLanPort::OpenNetwork() {
  socket = connected();
  if (socket) {
    logEvent("OPEN");
    return kOpened;
  }
  // An attempt is told with its end.
  logEvent("ERROR_OPEN");
  logEvent("CLOSE");
  return kCantOpen;
}

bool COrbComLanPort::Renew() {
  const CAutoLockMutex lock(&portMutex);
  if (!socket) return false;
  std::unique_ptr<CkSocket> fresh = connected();
  if (!fresh) return false;
  Close(true);
  socket = std::move(fresh);
  logEvent("OPEN");
  return true;
}

int COrbComLanPort::Close(bool really) {
  const CAutoLockMutex lock(&portMutex);
  if (!really) return 0;
  if (socket) {
    logEvent("CLOSE");
    socket->Close(kCloseTimeout_ms);
    socket.reset();
  }
  if (comPort) {
    logEvent("CLOSE");
    comPort.reset();
  }
  return 0;
}

int COrbComLanPort::getState() {
  const CAutoLockMutex lock(&portMutex);
  if (comPort) return kConnected;
  return socket && socket->get_IsConnected() ? kConnected : kNotConnected;
}

int COrbComLanPort::read(unsigned char* buffer, unsigned long size, int longest_ms) {
  const CAutoLockMutex lock(&portMutex);
  if (getState() != kConnected) logEvent("CAN'T READ");
  const int count =
      connType == Network ? ReadNetwork(buffer, size, longest_ms) : ReadSerial(buffer, size);
  logData(LogRecord::Incoming, buffer, static_cast<unsigned long>(count));
  return count;
}

int COrbComLanPort::ReadSerial(unsigned char* buffer, unsigned long size) {
  if (!comPort) return 0;
  return unlessThrown([&] { return static_cast<int>(comPort->read(buffer, size)); },
                      [&] { return Close(true); });
}

int COrbComLanPort::ReadNetwork(unsigned char* buffer, unsigned long size, int longest_ms) {
  if (!socket) return 0;
  // With short memory nothing was read.
  const int count = unlessThrown(
      [&] {
        socket->put_MaxReadMs(longest_ms);
        CkByteData data;
        if (!socket->ReceiveBytesN(size, data)) return 0;
        const unsigned long got = std::min(size, data.getSize());
        if (got > 0) std::memcpy(buffer, data.getBytes(), got);
        return static_cast<int>(got);
      },
      [] { return 0; });
  if (count == 0 && !socket->get_IsConnected()) Close(true);
  return count;
}

int COrbComLanPort::write(const unsigned char* data, unsigned long size) {
  const CAutoLockMutex lock(&portMutex);
  if (getState() != kConnected) logEvent("CAN'T WRITE");
  return connType == Network ? WriteNetwork(data, size) : WriteSerial(data, size);
}

int COrbComLanPort::WriteSerial(const unsigned char* data, unsigned long size) {
  if (!comPort) return kNoLine;
  return unlessThrown(
      [&] {
        const unsigned long count = comPort->write(data, size);
        logData(LogRecord::Outgoing, data, count);
        return static_cast<int>(count);
      },
      [&] {
        Close(true);
        return kWriteFailed;
      });
}

int COrbComLanPort::WriteNetwork(const unsigned char* data, unsigned long size) {
  if (!socket) return 0;
  // With short memory nothing was written.
  const bool sent = unlessThrown(
      [&] {
        CkByteData bytes;
        bytes.append2(data, size);
        return socket->SendBytes(bytes);
      },
      [] { return false; });
  if (sent) {
    logData(LogRecord::Outgoing, data, size);
    return static_cast<int>(size);
  }
  if (!socket->get_IsConnected()) Close(true);
  return 0;
}

unsigned long COrbComLanPort::getBitRate() {
  const CAutoLockMutex lock(&portMutex);
  return bitRate;
}

template <typename HandOver>
int COrbComLanPort::applyToLine(HandOver handOver) {
  if (!comPort) return kSetWaits;
  return unlessThrown(
      [&] {
        handOver(*comPort);
        return kSet;
      },
      [&] {
        Close(true);
        return kSetRefused;
      });
}

int COrbComLanPort::setBitRate(unsigned long bitsPerSecond) {
  const CAutoLockMutex lock(&portMutex);
  bitRate = bitsPerSecond;
  return applyToLine([&](COMPort& line) { line.setBitRate(static_cast<int>(bitRate)); });
}

int COrbComLanPort::setParity(COMPort::Parity value) {
  const CAutoLockMutex lock(&portMutex);
  parity = value;
  return applyToLine([&](COMPort& line) { line.setParity(parity); });
}

int COrbComLanPort::setDataBits(COMPort::DataBits value) {
  const CAutoLockMutex lock(&portMutex);
  dataBits = value;
  return applyToLine([&](COMPort& line) { line.setDataBits(dataBits); });
}

int COrbComLanPort::setStopBits(COMPort::StopBits value) {
  const CAutoLockMutex lock(&portMutex);
  stopBits = value;
  return applyToLine([&](COMPort& line) { line.setStopBits(stopBits); });
}

int COrbComLanPort::setHandshaking(bool value) {
  const CAutoLockMutex lock(&portMutex);
  handshaking = value;
  return applyToLine([&](COMPort& line) { line.setHandshaking(handshaking); });
}

int COrbComLanPort::setxONxOFF(bool value) {
  const CAutoLockMutex lock(&portMutex);
  xOnxOff = value;
  return applyToLine([&](COMPort& line) { line.setxONxOFF(xOnxOff); });
}

int COrbComLanPort::SetLogName(const char* folder, const char* name) {
  const CAutoLockMutex lock(&portMutex);
  log.setName(folder, name);
  return 0;
}

int COrbComLanPort::setPortLog(int enabled) {
  const CAutoLockMutex lock(&portMutex);
  const auto lowByte = static_cast<std::uint8_t>(enabled);
  log.enable(lowByte != 0);
  return lowByte;
}

int COrbComLanPort::logWrite(const unsigned char* data, unsigned long size, int kind) {
  const CAutoLockMutex lock(&portMutex);
  const bool known =
      kind >= static_cast<int>(LogRecord::System) && kind <= static_cast<int>(LogRecord::Incoming);
  if (!log.isOn() || size == 0 || data == nullptr || !known) return 0;
  ConnectionLine connection = {};
  if (connType == Serial) {
    std::snprintf(connection.data(), connection.size(),
                  "COMPORT: %s;%d\\%s\\%d\\%s, Handshaking=%d, xONxOFF=%d", comName.data(),
                  static_cast<int>(bitRate), parityName(parity), static_cast<int>(dataBits),
                  stopBitsName(stopBits), handshaking ? 1 : 0, xOnxOff ? 1 : 0);
  } else if (connType == Network) {
    std::snprintf(connection.data(), connection.size(), "ETHERNET: %s:%d", hostName.data(),
                  netPort);
  }
  log.record(static_cast<LogRecord>(kind), connection.data(), std::span(data, size));
  return 0;
}

void COrbComLanPort::logEvent(std::string_view text) {
  // The log takes bytes; a text is a row of them.
  logWrite(reinterpret_cast<const unsigned char*>(text.data()), text.size(),
           static_cast<int>(LogRecord::System));
}

void COrbComLanPort::logData(LogRecord kind, const unsigned char* data, unsigned long size) {
  logWrite(data, size, static_cast<int>(kind));
}
