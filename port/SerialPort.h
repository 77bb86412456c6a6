#pragma once

#include <termios.h>

#include <cstdint>
#include <string>
#include <vector>

/// One open serial line in raw mode. Reads never wait. All troubles are exceptions: a
/// `std::runtime_error` with a text of its own, or a `std::system_error` that carries EFAULT
/// whatever the real cause was. The object owns the descriptor; it has no lock.
///
///     COMPort line("/dev/ttyUSB0");  // 4800 baud, 8N1
///     line.setBitRate(9600);
///     line.write("W\r", 2);
///     unsigned char answer[20];
///     const unsigned long count = line.read(answer, sizeof answer);  // what has come until now
class COMPort {
 public:
  enum Parity : std::int32_t { None = 0, Odd = 1, Even = 2, Mark = 3, Space = 4 };
  /// The number of bits, 4 to 8; 4 stands for 8 on the line.
  enum DataBits : std::int32_t { Bits4 = 4, Bits5 = 5, Bits6 = 6, Bits7 = 7, Bits8 = 8 };
  /// One and a half is a value of the interface that the line can't have: setting it throws.
  enum StopBits : std::int32_t { One = 0, OnePointFive = 1, Two = 2 };

  /// A line that is not open.
  COMPort();
  /// Opens `path`; if that throws, nothing stays open.
  explicit COMPort(const char* path);
  virtual ~COMPort();
  COMPort(const COMPort&) = delete;
  COMPort& operator=(const COMPort&) = delete;

  /// Opens the device and applies the stored settings. A line that is open is given up, also when
  /// the new one can't be had. `path` is in the encoding of the file system.
  void Open(const char* path);
  void Close();

  /// Each setter stores the value and, on an open line, applies all settings at once, which
  /// discards what has been received and not yet read.
  void setBitRate(int bitsPerSecond);
  void setParity(Parity parity);
  void setDataBits(DataBits dataBits);
  void setStopBits(StopBits stopBits);
  /// Stored only: the line never has hardware flow control.
  void setHandshaking(int handshaking);
  /// Stored only: the line never has software flow control.
  void setxONxOFF(int xOnxOff);
  void SetEcho(bool echo);
  /// How long a read waits, for the next `Open`: -1 for the first byte, 0 not at all, otherwise
  /// up to that many milliseconds (25500 at most, in steps of 100).
  void SetTimeout(std::int32_t timeout_ms);

  /// Reads what the line has, up to `size` bytes; 0 if there is nothing. A line that was hung up,
  /// as when its adapter is pulled out, is a failure. `buffer` must hold `size` bytes.
  unsigned long read(void* buffer, unsigned long size);
  /// Writes once and returns the number of bytes taken, which may be fewer than `size`. Waits for
  /// room at most 2 s, and then fails.
  unsigned long write(const void* data, unsigned long size);

  termios GetTermios() const;
  void SetTermios(const termios& settings);

 private:
  void ConfigureTermios();
  void ConfigureIfOpen();

  std::uint8_t state;  // 1 open, 0 closed
  std::string filePath;
  std::int32_t baudRate;
  std::int32_t dataBits;
  std::int32_t parity;
  std::int32_t stopBits;
  std::int32_t handshaking;
  std::int32_t xOnxOff;
  std::int32_t fileDesc;  // -1 when there is none
  bool echo;
  std::int32_t timeout_ms;
  std::vector<char> readBuffer;
  std::uint8_t readBufferSize;
};
