#include "SerialPort.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "Cancellation.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::uint8_t kClosed = 0;
constexpr std::uint8_t kOpen = 1;
constexpr std::int32_t kNoDescriptor = -1;

constexpr std::int32_t kBlockForOneByte = -1;
constexpr std::int32_t kMillisecondsPerVtimeStep = 100;
/// 255 tenths of a second, the most that VTIME holds.
constexpr std::int32_t kLongestTimeout_ms = 25500;

struct Speed {
  std::int32_t bitsPerSecond;
  speed_t constant;
};

constexpr std::array<Speed, 9> kSpeeds = {{{600, B600},
                                           {1200, B1200},
                                           {2400, B2400},
                                           {4800, B4800},
                                           {9600, B9600},
                                           {19200, B19200},
                                           {38400, B38400},
                                           {57600, B57600},
                                           {115200, B115200}}};

/// Device number of the line side of every pseudo-terminal on Linux.
constexpr unsigned kPtyMajor = 136;

bool isPseudoTerminal(int fileDesc) {
  struct stat info = {};
  return ::fstat(fileDesc, &info) == 0 && S_ISCHR(info.st_mode) && major(info.st_rdev) == kPtyMajor;
}

/// How long a line may be without room for what is written: longer than a line at 600 baud takes
/// for the longest request, shorter than a cashier's patience.
constexpr milliseconds kLongestWait{2000};

/// While it lives, a write that finds too little room takes what there is and doesn't wait.
class NonBlocking {
 public:
  explicit NonBlocking(int fileDesc) : fileDesc_(fileDesc), flags_(::fcntl(fileDesc, F_GETFL)) {
    ::fcntl(fileDesc_, F_SETFL, flags_ | O_NONBLOCK);
  }
  NonBlocking(const NonBlocking&) = delete;
  NonBlocking& operator=(const NonBlocking&) = delete;
  ~NonBlocking() { ::fcntl(fileDesc_, F_SETFL, flags_); }

 private:
  int fileDesc_;
  int flags_;
};

/// Nothing to read, and the line is there.
bool isSilent(int fileDesc) {
  pollfd line = {fileDesc, POLLIN, 0};
  return fileDesc >= 0 && ::poll(&line, 1, 0) == 0;
}

/// False once the line has had no room until `end`.
bool awaitRoom(int fileDesc, Clock::time_point end) {
  for (;;) {
    const auto left = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
    pollfd line = {fileDesc, POLLOUT, 0};
    if (::poll(&line, 1, static_cast<int>(std::max<long>(left, 0))) > 0) return true;
    if (left <= 0) return false;
  }
}

/// A line whose adapter was pulled out reads as if it were silent, for ever.
bool isHungUp(int fileDesc) {
  pollfd line = {fileDesc, 0, 0};
  return ::poll(&line, 1, 0) == 1 && (line.revents & POLLHUP) != 0;
}

[[noreturn]] void throwSystemError() {
  // The number is fixed: callers have never been told the real cause, and the log's texts and
  // the result codes don't depend on it.
  throw std::system_error(EFAULT, std::system_category());
}

[[noreturn]] void throwError(const char* where, const char* what) {
  throw std::runtime_error(std::string(where) + what);
}

constexpr const char* kWrite = "long unsigned int COMPort::write(const void*, long unsigned int)";
constexpr const char* kConfigure = "void COMPort::ConfigureTermios()";
constexpr const char* kSetTimeout = "void COMPort::SetTimeout(int32_t)";

void applyStopBits(tcflag_t& flags, std::int32_t stopBits) {
  switch (stopBits) {
    case COMPort::One: flags &= ~tcflag_t{CSTOPB}; return;
    case COMPort::Two: flags |= CSTOPB; return;
    default: throw std::runtime_error("StopBits FAIL.");
  }
}

void applyParity(tcflag_t& flags, std::int32_t parity) {
  switch (parity) {
    case COMPort::Odd: flags |= PARENB | PARODD; return;
    case COMPort::Even:
      flags |= PARENB;
      flags &= ~tcflag_t{PARODD};
      return;
    case COMPort::None:
    case COMPort::Mark:
    case COMPort::Space: flags &= ~tcflag_t{PARENB}; return;
    default: throw std::runtime_error("Parity FAIL.");
  }
}

void applyDataBits(tcflag_t& flags, std::int32_t dataBits) {
  flags &= ~tcflag_t{CSIZE};
  switch (dataBits) {
    case COMPort::Bits5: flags |= CS5; return;
    case COMPort::Bits6: flags |= CS6; return;
    case COMPort::Bits7: flags |= CS7; return;
    case COMPort::Bits4:
    case COMPort::Bits8: flags |= CS8; return;
    default: throw std::runtime_error("DataBits FAIL.");
  }
}

void applySpeed(termios& settings, std::int32_t bitsPerSecond) {
  const auto speed = std::find_if(kSpeeds.begin(), kSpeeds.end(),
                                  [&](const Speed& s) { return s.bitsPerSecond == bitsPerSecond; });
  if (speed == kSpeeds.end()) {
    throw std::runtime_error(std::string("baudRate passed to ") + kConfigure + " unrecognized.");
  }
  ::cfsetispeed(&settings, speed->constant);
  ::cfsetospeed(&settings, speed->constant);
}

void applyTimeout(termios& settings, std::int32_t timeout_ms) {
  settings.c_cc[VMIN] = timeout_ms == kBlockForOneByte ? 1 : 0;
  settings.c_cc[VTIME] =
      timeout_ms > 0 ? static_cast<cc_t>(timeout_ms / kMillisecondsPerVtimeStep) : cc_t{0};
}

}  // namespace

COMPort::COMPort()
    : state(kClosed),
      baudRate(4800),
      dataBits(Bits8),
      parity(None),
      stopBits(One),
      handshaking(0),
      xOnxOff(0),
      fileDesc(kNoDescriptor),
      echo(false),
      timeout_ms(0),
      readBufferSize(255) {
  readBuffer.reserve(readBufferSize);
}

COMPort::COMPort(const char* path) : COMPort() { Open(path); }

COMPort::~COMPort() {
  const CancellationHeld held;
  try {
    Close();
  } catch (const std::exception&) {
    // A device that was pulled out may refuse to close; nobody can do anything about it.
  }
}

void COMPort::Open(const char* path) {
  if (path == nullptr) {
    throw std::runtime_error("Attempted to open file when file path has not been assigned to.");
  }
  // Without O_NOCTTY a line becomes the terminal of a host that leads a session, and pulling out
  // its adapter ends that host. A program that the host starts has no business with the line.
  const int opened = ::open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (fileDesc != kNoDescriptor) ::close(fileDesc);
  fileDesc = opened;
  if (fileDesc == kNoDescriptor) {
    throw std::runtime_error(
        "Could not open device. Is the device name correct and do you have read/write "
        "permission?");
  }
  ConfigureTermios();
  state = kOpen;
}

void COMPort::Close() {
  // The number is given up in any case: once close() has failed it may soon be another file's.
  const int closing = std::exchange(fileDesc, kNoDescriptor);
  if (closing != kNoDescriptor && ::close(closing) != 0) {
    throw std::runtime_error("Tried to close serial port, but close() failed.");
  }
  state = kClosed;
}

void COMPort::ConfigureIfOpen() {
  if (state != kClosed) ConfigureTermios();
}

void COMPort::setBitRate(int bitsPerSecond) {
  baudRate = bitsPerSecond;
  ConfigureIfOpen();
}

void COMPort::setParity(Parity value) {
  parity = value;
  ConfigureIfOpen();
}

void COMPort::setDataBits(DataBits value) {
  dataBits = value;
  ConfigureIfOpen();
}

void COMPort::setStopBits(StopBits value) {
  stopBits = value;
  ConfigureIfOpen();
}

void COMPort::setHandshaking(int value) {
  handshaking = value;
  ConfigureIfOpen();
}

void COMPort::setxONxOFF(int value) {
  xOnxOff = value;
  ConfigureIfOpen();
}

void COMPort::SetEcho(bool value) {
  echo = value;
  ConfigureTermios();
}

void COMPort::SetTimeout(std::int32_t value) {
  const std::string provided = std::string("timeout_ms provided to ") + kSetTimeout;
  if (value < kBlockForOneByte) {
    throwError(provided.c_str(), " was < -1, which is invalid.");
  }
  if (value > kLongestTimeout_ms) {
    throwError(provided.c_str(), " was > 25500, which is invalid.");
  }
  if (state != kClosed) throwError(kSetTimeout, " called while state == OPEN.");
  timeout_ms = value;
}

unsigned long COMPort::read(void* buffer, unsigned long size) {
  if (fileDesc == 0) {
    throw std::runtime_error(
        "Read() was called but file descriptor (fileDesc) was 0, indicating file has not been "
        "opened.");
  }
  // Another program may have set the line so that a read waits for bytes.
  if (timeout_ms == 0 && isSilent(fileDesc)) return 0;
  const ssize_t count = ::read(fileDesc, buffer, size);
  if (count < 0 || (count == 0 && size > 0 && isHungUp(fileDesc))) throwSystemError();
  return static_cast<unsigned long>(count);
}

unsigned long COMPort::write(const void* data, unsigned long size) {
  if (state != kOpen) {
    throwError(kWrite, " called but state != OPEN. Please call Open() first.");
  }
  if (fileDesc < 0) {
    throwError(kWrite, " called but file descriptor < 0, indicating file has not been opened.");
  }
  const NonBlocking nonBlocking(fileDesc);
  const Clock::time_point end = Clock::now() + kLongestWait;
  while (awaitRoom(fileDesc, end)) {
    const ssize_t count = ::write(fileDesc, data, size);
    if (count >= 0) return static_cast<unsigned long>(count);
    if (errno != EAGAIN && errno != EINTR) break;
  }
  throwSystemError();
}

termios COMPort::GetTermios() const {
  if (fileDesc == kNoDescriptor) {
    throw std::runtime_error("GetTermios() called but file descriptor was not valid.");
  }
  termios settings = {};
  if (::tcgetattr(fileDesc, &settings) != 0) throwSystemError();
  return settings;
}

void COMPort::SetTermios(const termios& settings) {
  ::tcflush(fileDesc, TCIFLUSH);
  if (::tcsetattr(fileDesc, TCSANOW, &settings) == 0) return;
  if (!isPseudoTerminal(fileDesc)) throwSystemError();
  // A pseudo-terminal carries no parity, and the call fails when the bit didn't stick. Redirectors
  // and serial servers offer their lines as pseudo-terminals, so a scale with parity behind one
  // is reached without it on this last stretch.
  termios withoutParity = settings;
  withoutParity.c_cflag &= ~tcflag_t{PARENB | PARODD};
  if (::tcsetattr(fileDesc, TCSANOW, &withoutParity) != 0) throwSystemError();
}

void COMPort::ConfigureTermios() {
  termios settings = GetTermios();

  settings.c_cflag &= ~tcflag_t{CRTSCTS};
  settings.c_cflag |= CREAD | CLOCAL;
  applyStopBits(settings.c_cflag, stopBits);
  applyParity(settings.c_cflag, parity);
  applyDataBits(settings.c_cflag, dataBits);
  applySpeed(settings, baudRate);

  settings.c_oflag = 0;
  applyTimeout(settings, timeout_ms);

  settings.c_iflag &= ~tcflag_t{IXON | IXOFF | IXANY};
  settings.c_iflag &= ~tcflag_t{IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR | ICRNL};

  settings.c_lflag &= ~tcflag_t{ICANON | ECHO | ECHOE | ECHONL | ISIG};
  if (echo) settings.c_lflag |= ECHO;

  SetTermios(settings);
}
