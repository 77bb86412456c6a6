#include <dlfcn.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include "PtyLine.h"
#include "SerialPort.h"
#include "TempFolder.h"
#include "Usage.h"

namespace {

using fixture::Bytes;
using fixture::bytes;
using fixture::PtyLine;

/// What was asked of `tcsetattr` in this process while the object lives. A pseudo-terminal drops
/// parity and frame length, so what a real line would get shows only in the request. There is one
/// object at a time.
struct RequestedSettings {
  RequestedSettings() { current = this; }
  ~RequestedSettings() { current = nullptr; }
  RequestedSettings(const RequestedSettings&) = delete;
  RequestedSettings& operator=(const RequestedSettings&) = delete;

  std::vector<termios> all;
  bool areRefused = false;

  static inline RequestedSettings* current = nullptr;
};

}  // namespace

/// Stands before libc's own for this program.
extern "C" int tcsetattr(int fd, int actions, const termios* settings) noexcept {
  using Function = int (*)(int, int, const termios*);
  static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "tcsetattr"));
  RequestedSettings* const requested = RequestedSettings::current;
  if (requested != nullptr) requested->all.push_back(*settings);
  if (requested == nullptr || !requested->areRefused) return real(fd, actions, settings);
  errno = EIO;
  return -1;
}

namespace {

/// The text of the `std::runtime_error` that `operation` throws; a note of what came instead.
std::string errorOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const std::system_error& error) {
    return "system_error " + std::to_string(error.code().value());
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing was thrown";
}

/// Every trouble without a text of its own, whatever its cause was.
constexpr const char* kSystemError = "system_error 14";
constexpr const char* kCantOpen =
    "Could not open device. Is the device name correct and do you have read/write permission?";

TEST(SerialPort, OpeningSetsEveryFlagAndLeavesTheOthers) {
  constexpr tcflag_t kClearedInput =
      IXON | IXOFF | IXANY | IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR | ICRNL;
  constexpr tcflag_t kClearedLocal = ICANON | ECHO | ECHOE | ECHONL | ISIG;
  constexpr tcflag_t kKeptInput = INPCK | IGNPAR;
  constexpr tcflag_t kKeptLocal = IEXTEN | NOFLSH;
  constexpr tcflag_t kClearedControl = CRTSCTS | CSTOPB;
  for (const bool before : {false, true}) {
    SCOPED_TRACE(before ? "everything set before" : "nothing set before");
    PtyLine line;
    termios settings = line.settings();
    settings.c_iflag = before ? kClearedInput | kKeptInput : 0;
    settings.c_oflag = before ? OPOST | ONLCR : 0;
    settings.c_lflag = before ? kClearedLocal | kKeptLocal : 0;
    settings.c_cflag = CS8 | CREAD | (before ? kClearedControl | PARODD | HUPCL : CLOCAL);
    settings.c_cc[VMIN] = 7;
    settings.c_cc[VTIME] = 9;
    line.apply(settings);

    const COMPort port(line.path().c_str());
    const termios after = line.settings();
    EXPECT_EQ(after.c_iflag, before ? kKeptInput : 0);
    EXPECT_EQ(after.c_oflag, 0U);
    EXPECT_EQ(after.c_lflag, before ? kKeptLocal : 0);
    EXPECT_EQ(after.c_cflag & kClearedControl, 0U);
    EXPECT_EQ(after.c_cflag & (CREAD | CLOCAL), tcflag_t{CREAD | CLOCAL});
    EXPECT_EQ(after.c_cflag & (CSIZE | PARENB), tcflag_t{CS8});
    EXPECT_EQ(after.c_cflag & (PARODD | HUPCL), before ? tcflag_t{PARODD | HUPCL} : 0U);
    EXPECT_EQ(after.c_cc[VMIN], 0);
    EXPECT_EQ(after.c_cc[VTIME], 0);
    EXPECT_EQ(::cfgetispeed(&after), speed_t{B4800});
    EXPECT_EQ(::cfgetospeed(&after), speed_t{B4800});
  }
}

using Setter = void (*)(COMPort&, int);
constexpr Setter kBitRate = [](COMPort& port, int value) { port.setBitRate(value); };
constexpr Setter kParity = [](COMPort& port, int value) {
  port.setParity(static_cast<COMPort::Parity>(value));
};
constexpr Setter kStopBits = [](COMPort& port, int value) {
  port.setStopBits(static_cast<COMPort::StopBits>(value));
};
constexpr Setter kDataBits = [](COMPort& port, int value) {
  port.setDataBits(static_cast<COMPort::DataBits>(value));
};

TEST(SerialPort, AsksForTheFrameThatWasSet) {
  constexpr tcflag_t kParityFlags = PARENB | PARODD;
  const struct {
    Setter set;
    int value;
    tcflag_t mask;
    tcflag_t expected;
  } rows[] = {
      {kParity, COMPort::Odd, kParityFlags, PARENB | PARODD},
      {kParity, COMPort::Even, kParityFlags, PARENB},
      // No parity leaves the odd bit, and so does mark, which is none.
      {kParity, COMPort::None, kParityFlags, PARODD},
      {kParity, COMPort::Mark, kParityFlags, PARODD},
      {kStopBits, COMPort::One, CSTOPB, 0},
      {kStopBits, COMPort::Two, CSTOPB, CSTOPB},
      {kDataBits, 4, CSIZE, CS8},
      {kDataBits, 5, CSIZE, CS5},
      {kDataBits, 6, CSIZE, CS6},
      {kDataBits, 7, CSIZE, CS7},
      {kDataBits, 8, CSIZE, CS8},
  };
  for (const auto& row : rows) {
    PtyLine line;
    COMPort port(line.path().c_str());
    termios oddBit = line.settings();
    oddBit.c_cflag |= PARODD;
    line.apply(oddBit);
    const RequestedSettings requested;
    // Frames of 6 and 7 bits are none that a pseudo-terminal has, so those calls end in a refusal.
    errorOf([&] { row.set(port, row.value); });
    ASSERT_FALSE(requested.all.empty());
    EXPECT_EQ(requested.all.front().c_cflag & row.mask, row.expected) << row.mask << row.value;
  }
}

TEST(SerialPort, TakesNineSpeeds) {
  PtyLine line;
  COMPort port(line.path().c_str());
  const std::pair<int, speed_t> speeds[] = {{600, B600},     {1200, B1200},   {2400, B2400},
                                            {4800, B4800},   {9600, B9600},   {19200, B19200},
                                            {38400, B38400}, {57600, B57600}, {115200, B115200}};
  for (const auto& [rate, constant] : speeds) {
    port.setBitRate(rate);
    const termios settings = line.settings();
    EXPECT_EQ(::cfgetispeed(&settings), constant) << rate;
    EXPECT_EQ(::cfgetospeed(&settings), constant) << rate;
  }
}

TEST(SerialPort, RefusesWhatALineCantHave) {
  const struct {
    const char* error;
    std::vector<int> values;
    Setter set;
  } rows[] = {
      {"baudRate passed to void COMPort::ConfigureTermios() unrecognized.",
       {-1, 0, 300, 4801, 56000, 230400, 256000},
       kBitRate},
      {"StopBits FAIL.", {-1, 1, 3}, kStopBits},
      {"Parity FAIL.", {-1, 5}, kParity},
      {"DataBits FAIL.", {0, 3, 9}, kDataBits},
  };
  PtyLine line;
  for (const auto& row : rows) {
    for (const int value : row.values) {
      COMPort open(line.path().c_str());
      EXPECT_EQ(errorOf([&] { row.set(open, value); }), row.error);
      // Before opening it is stored, and the opening meets it.
      COMPort later;
      row.set(later, value);
      EXPECT_EQ(errorOf([&] { later.Open(line.path().c_str()); }), row.error);
    }
  }
}

TEST(SerialPort, ReachesAnEvenParityScaleOverAPseudoTerminal) {
  PtyLine line;
  COMPort port(line.path().c_str());
  const RequestedSettings requested;
  port.setParity(COMPort::Even);
  ASSERT_EQ(requested.all.size(), 2U);
  EXPECT_TRUE(requested.all[0].c_cflag & PARENB);
  EXPECT_FALSE(requested.all[1].c_cflag & (PARENB | PARODD));
  line.send(bytes("05"));
  std::array<std::uint8_t, 8> buffer = {};
  EXPECT_EQ(port.read(buffer.data(), buffer.size()), 1U);
  // The setting stays, and the next change asks for parity again.
  port.setStopBits(COMPort::Two);
  EXPECT_TRUE(requested.all.at(2).c_cflag & PARENB);
  EXPECT_TRUE(line.settings().c_cflag & CSTOPB);
}

TEST(SerialPort, GivesUpWhenTheLineRefusesTwice) {
  PtyLine line;
  COMPort port(line.path().c_str());
  RequestedSettings requested;
  requested.areRefused = true;
  EXPECT_EQ(errorOf([&] { port.setBitRate(9600); }), kSystemError);
  EXPECT_EQ(requested.all.size(), 2U);
}

TEST(SerialPort, OpenLeavesNothingBehindWhenItFails) {
  const fixture::TempFolder folder;
  const std::string file = folder.write("file", "not a device");
  const std::string missing = folder.file("missing");
  const auto before = fixture::openDescriptors();
  EXPECT_EQ(errorOf([&] { COMPort port(file.c_str()); }), kSystemError);
  EXPECT_EQ(errorOf([&] { COMPort port(missing.c_str()); }), kCantOpen);
  EXPECT_EQ(errorOf([&] { COMPort port(folder.path().c_str()); }), kCantOpen);
  EXPECT_EQ(errorOf([&] { COMPort port(nullptr); }),
            "Attempted to open file when file path has not been assigned to.");
  EXPECT_EQ(fixture::openDescriptors(), before);
}

/// Another program may have set the line so that a read waits for bytes.
TEST(SerialPort, ReadDoesntWaitWhateverTheLineIsSetTo) {
  PtyLine line;
  COMPort port(line.path().c_str());
  termios settings = line.settings();
  settings.c_cc[VMIN] = 1;
  line.apply(settings);
  std::array<std::uint8_t, 8> buffer = {};
  EXPECT_EQ(port.read(buffer.data(), buffer.size()), 0U);
  line.send(bytes("01"));
  EXPECT_EQ(port.read(buffer.data(), buffer.size()), 1U);
}

TEST(SerialPort, WriteToAStuckLineFailsAfterTwoSeconds) {
  PtyLine line;
  COMPort port(line.path().c_str());
  const Bytes much(4096, 0x55);
  std::string error = "nothing was thrown";
  auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 100 && error == "nothing was thrown"; ++i) {
    begin = std::chrono::steady_clock::now();
    error = errorOf([&] { port.write(much.data(), much.size()); });
  }
  EXPECT_EQ(error, kSystemError);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

/// A host that leads a session and takes the line for its terminal dies when the adapter goes.
TEST(SerialPort, LineIsNobodysTerminal) {
  PtyLine line;
  const pid_t host = ::fork();
  ASSERT_GE(host, 0);
  if (host == 0) {
    ::setsid();
    const COMPort port(line.path().c_str());
    ::_exit(::open("/dev/tty", O_RDWR | O_CLOEXEC) < 0 ? EXIT_SUCCESS : EXIT_FAILURE);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(host, &status, 0), host);
  EXPECT_EQ(status, EXIT_SUCCESS);
}

TEST(SerialPort, OpeningAgainGivesTheFirstLineUp) {
  PtyLine first;
  PtyLine second;
  const auto before = fixture::openDescriptors();
  COMPort port(first.path().c_str());
  port.Open(second.path().c_str());
  EXPECT_EQ(fixture::openDescriptors(), before + 1);
  const Bytes frame = bytes("05");
  EXPECT_EQ(port.write(frame.data(), frame.size()), 1U);
  EXPECT_EQ(second.receive(1), frame);
  EXPECT_EQ(errorOf([&] { port.Open("/dev/none"); }), kCantOpen);
  EXPECT_EQ(fixture::openDescriptors(), before);
}

TEST(SerialPort, EveryChangeOfSettingsDiscardsWhatCame) {
  using Change = std::function<void(COMPort&)>;
  PtyLine line;
  COMPort port(line.path().c_str());
  for (const Change& change : {Change([](COMPort& p) { p.setBitRate(9600); }),
                               Change([](COMPort& p) { p.setHandshaking(1); }),
                               Change([](COMPort& p) { p.setxONxOFF(1); }),
                               Change([](COMPort& p) { p.SetEcho(false); })}) {
    line.send(bytes("01 02 03"));
    change(port);
    std::array<std::uint8_t, 8> buffer = {};
    EXPECT_EQ(port.read(buffer.data(), buffer.size()), 0U);
  }
  // Handshaking is a stored word: the line has no flow control.
  EXPECT_FALSE(line.settings().c_cflag & CRTSCTS);
  EXPECT_FALSE(line.settings().c_iflag & (IXON | IXOFF | IXANY));
}

TEST(SerialPort, ARefusedCloseGivesTheDescriptorUp) {
  PtyLine line;
  const auto openNext = [] { return ::open("/dev/null", O_RDONLY | O_CLOEXEC); };
  const int next = openNext();
  ::close(next);
  COMPort port(line.path().c_str());
  EXPECT_EQ(errorOf([&] { port.Close(); }), "nothing was thrown");
  port.Open(line.path().c_str());
  ASSERT_EQ(::close(next), 0);
  EXPECT_EQ(errorOf([&] { port.Close(); }), "Tried to close serial port, but close() failed.");
  // From now on the number is another file's, which the port must leave alone.
  ASSERT_EQ(openNext(), next);
  const std::uint8_t byte = 0;
  EXPECT_EQ(errorOf([&] { port.write(&byte, 1); }),
            "long unsigned int COMPort::write(const void*, long unsigned int) called but file "
            "descriptor < 0, indicating file has not been opened.");
  port.Close();
  EXPECT_EQ(::close(next), 0);
}

}  // namespace
