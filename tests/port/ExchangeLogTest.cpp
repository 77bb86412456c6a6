// The exchange log as support reads it, byte for byte. Expectations are written by hand from the
// format; only the time is masked.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <iomanip>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ComLanPort.h"
#include "ExchangeRecords.h"
#include "PtyLine.h"
#include "TcpPeer.h"
#include "TempFolder.h"

namespace {

using fixture::bytes;
using fixture::PtyLine;
using fixture::TcpPeer;
using fixture::TcpWire;
using fixture::TempFolder;
using testing::ElementsAre;

constexpr const char* kLogName = "log_scales_7.log";

/// The header of a record by its label, size as the record shows it, and connection line.
std::string header(const std::string& label, const std::string& size,
                   const std::string& connection) {
  return "\r\n____________________________________________________________________\r\n" + label +
         "  <time> ---- Bytes:" + size + " -----\r\n" + connection +
         "\r\n  N     1  2  3  4  5  6  7  8  9 10   11 12 13 14 15 16 17 18 19 20\r\n\r\n";
}

/// Without the times of its headers, "126-10-23 01:02:03.000".
std::string masked(const std::string& log) {
  static const std::regex kTime(R"(\d{3}-\d\d-\d\d \d\d:\d\d:\d\d\.000 ---- Bytes:)");
  return std::regex_replace(log, kTime, "<time> ---- Bytes:");
}

/// The log as "IN size" or "OUT size" a record, and system records as their text.
std::vector<std::string> records(const std::string& log) {
  using exchange::Record;
  std::vector<std::string> result;
  std::istringstream text(log);
  for (const Record& record : exchange::readLog(text)) {
    const char* const way = record.kind == Record::Kind::Incoming ? "IN " : "OUT ";
    result.push_back(record.kind == Record::Kind::System
                         ? record.text()
                         : way + std::to_string(record.bytes.size()));
  }
  return result;
}

/// A port that logs into the folder.
struct LoggingPort : COrbComLanPort {
  explicit LoggingPort(const TempFolder& folder) {
    EXPECT_EQ(SetLogName(folder.path().c_str(), "7"), 0);
  }
};

class PortLog : public testing::Test {
 protected:
  PortLog() { folder_.write("log.txt", ""); }
  std::string log() const { return folder_.read(kLogName); }

  TempFolder folder_;
};

TEST_F(PortLog, ShowsASerialExchangeByteForByte) {
  PtyLine line;
  {
    LoggingPort port(folder_);
    ASSERT_EQ(port.OpenComPort(line.path().c_str()), 0);
    port.setStopBits(COMPort::Two);
    const auto request = bytes("'ABCDEFGHIJKLMNOPQRST'");  // a whole line
    ASSERT_EQ(port.write(request.data(), request.size()), 20);
    line.send(bytes("00 1F 20 7E 7F 80 FF 30 31 32 33 34 35 36 37 38 39 41 42 43 0D"));
    std::array<unsigned char, 64> answer = {};
    ASSERT_EQ(port.read(answer.data(), answer.size()), 21);
    EXPECT_EQ(port.read(answer.data(), answer.size()), 0);  // nothing came: no record
  }
  const std::string one = "COMPORT: " + line.path() + R"(;4800\None\8\1, Handshaking=0, xONxOFF=0)";
  const std::string two = "COMPORT: " + line.path() + R"(;4800\None\8\2, Handshaking=0, xONxOFF=0)";
  const std::string expected =
      header("SYS      ", "    4", one) +
      "00001: 4F 50 45 4E                   |                                  OPEN"
      "                \r\n" +
      header("OUT >>>>>", "   20", two) +
      "00001: 41 42 43 44 45 46 47 48 49 4A | 4B 4C 4D 4E 4F 50 51 52 53 54    "
      "ABCDEFGHIJKLMNOPQRST\r\n" +
      header("IN <<<<<<", "   21", two) +
      "00001: 00 1F 20 7E 7F 80 FF 30 31 32 | 33 34 35 36 37 38 39 41 42 43    "
      ".. ~\x7F\x80\xFF"
      "0123456789ABC\r\n"
      "00021: 0D                            |                                  ."
      "                   \r\n" +
      header("SYS      ", "    5", two) +
      "00001: 43 4C 4F 53 45                |                                  CLOSE"
      "               \r\n" +
      header("SYS      ", "   12", two) +
      "00001: 53 54 4F 50 20 50 52 4F 47 52 | 41 4D                            STOP PROGRAM"
      "        \r\n";
  EXPECT_EQ(masked(log()), expected);
}

/// Years since 1900 and months from 0, as the system holds them, in the zone that the host has now.
TEST_F(PortLog, ShowsTheTimeOfTheZone) {
  for (const auto& [zone, hours] : {std::pair{"AAA0", 0}, std::pair{"BBB-5", 5}}) {
    ::setenv("TZ", zone, 1);
    std::remove(folder_.file(kLogName).c_str());
    const std::time_t begin = std::time(nullptr);
    { const LoggingPort port(folder_); }
    const auto there = [offset = hours * 3600](std::time_t at) {
      at += offset;
      std::ostringstream text;
      text << std::put_time(std::gmtime(&at), "%Y-%m-%d %H:%M:%S");
      return text.str();
    };
    std::istringstream written(log());
    const auto records = exchange::readLog(written);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_GE(records[0].time, there(begin)) << zone;
    EXPECT_LE(records[0].time, there(std::time(nullptr))) << zone;
  }
  ::unsetenv("TZ");
}

TEST_F(PortLog, NamesTheConnection) {
  using Row = std::pair<std::string, std::function<void(COrbComLanPort&)>>;
  const auto serial = [](COMPort::Parity parity, COMPort::DataBits dataBits,
                         COMPort::StopBits stopBits, bool handshaking, bool xOnxOff) {
    return [=](COrbComLanPort& port) {
      port.SetComPort("/dev/none", 9600, parity, dataBits, stopBits, handshaking, xOnxOff);
    };
  };
  for (const auto& [expected, set] :
       {Row{R"(COMPORT: /dev/none;9600\Odd\7\2, Handshaking=1, xONxOFF=0)",
            serial(COMPort::Odd, COMPort::Bits7, COMPort::Two, true, false)},
        Row{R"(COMPORT: /dev/none;9600\Even\8\1, Handshaking=0, xONxOFF=1)",
            serial(COMPort::Even, COMPort::Bits8, COMPort::One, false, true)},
        Row{R"(COMPORT: /dev/none;9600\Mark\5\1.5, Handshaking=0, xONxOFF=0)",
            serial(COMPort::Mark, COMPort::Bits5, COMPort::OnePointFive, false, false)},
        Row{R"(COMPORT: /dev/none;9600\Space\4\1, Handshaking=0, xONxOFF=0)",
            serial(COMPort::Space, COMPort::Bits4, COMPort::One, false, false)},
        Row{R"(COMPORT: /dev/none;9600\None\6\1, Handshaking=0, xONxOFF=0)",
            serial(COMPort::None, COMPort::Bits6, COMPort::One, false, false)},
        Row{"ETHERNET: scale.local:20108",
            [](COrbComLanPort& port) { port.SetNetworkPort("scale.local", 20108); }},
        Row{"", [](COrbComLanPort&) {}}}) {
    std::remove(folder_.file(kLogName).c_str());
    {
      LoggingPort port(folder_);
      set(port);
    }
    EXPECT_EQ(masked(log()),
              header("SYS      ", "   12", expected) +
                  "00001: 53 54 4F 50 20 50 52 4F 47 52 | 41 4D                            STOP "
                  "PROGRAM        \r\n");
  }
}

TEST_F(PortLog, TellsTheStoryOfAPort) {
  PtyLine line;
  TcpPeer peer(fixture::sending(bytes("06 01 02")));
  const auto request = bytes("05 11");
  std::array<unsigned char, 8> answer = {};
  {
    LoggingPort port(folder_);
    port.read(answer.data(), answer.size());
    port.write(request.data(), request.size());
    port.OpenComPort("/dev/none");
    port.OpenComPort(line.path().c_str());
    port.setBitRate(56000);
    port.Open();
    port.OpenNetworkPort("", 1);
    port.OpenNetworkPort(TcpPeer::kHost, peer.port());
    port.write(request.data(), request.size());
    for (int i = 0; i < 50 && port.read(answer.data(), 3) == 0; ++i) continue;
  }
  EXPECT_THAT(records(log()), ElementsAre("CAN'T READ", "CAN'T WRITE", "ERROR_OPEN", "OPEN",
                                          "CLOSE", "ERROR_OPEN", "CLOSE", "ERROR_OPEN", "CLOSE",
                                          "OPEN", "OUT 2", "IN 3", "CLOSE", "STOP PROGRAM"));
}

/// A connection that died is closed by the next opening or transfer, whoever found it dead.
TEST_F(PortLog, TellsOfADeadConnection) {
  for (const auto end : {&TcpWire::hangUp, &TcpWire::reset}) {
    TcpPeer peer([&](TcpWire& wire) {
      wire.receive(1);
      (wire.*end)();
    });
    const auto request = bytes("05");
    std::array<unsigned char, 1> answer = {};
    std::remove(folder_.file(kLogName).c_str());
    {
      LoggingPort port(folder_);
      port.OpenNetworkPort(TcpPeer::kHost, peer.port());
      const auto useUp = [&] {
        EXPECT_EQ(port.write(request.data(), request.size()), 1);
        while (port.getState() == COrbComLanPort::kConnected) ::usleep(1000);
      };
      useUp();
      EXPECT_EQ(port.Open(), 0);  // a dead transport is no open one
      useUp();
      EXPECT_EQ(port.read(answer.data(), answer.size()), 0);
      EXPECT_EQ(port.write(request.data(), request.size()), 0);
    }
    EXPECT_THAT(records(log()), ElementsAre("OPEN", "OUT 1", "CLOSE", "OPEN", "OUT 1", "CAN'T READ",
                                            "CLOSE", "CAN'T WRITE", "STOP PROGRAM"));
  }
}

/// A program that the host starts gets neither the line nor the log.
TEST_F(PortLog, NothingIsLeftToOtherPrograms) {
  PtyLine line;
  LoggingPort port(folder_);
  std::array<bool, 64> before = {};
  for (int fd = 0; fd < 64; ++fd)
    before.at(static_cast<std::size_t>(fd)) = ::fcntl(fd, F_GETFD) >= 0;
  ASSERT_EQ(port.OpenComPort(line.path().c_str()), 0);
  int opened = 0;
  for (int fd = 0; fd < 64; ++fd) {
    const int flags = ::fcntl(fd, F_GETFD);
    if (flags < 0 || before.at(static_cast<std::size_t>(fd))) continue;
    ++opened;
    EXPECT_NE(flags & FD_CLOEXEC, 0);
  }
  EXPECT_EQ(opened, 2);
}

TEST_F(PortLog, TakesARecordOnlyIfItHoldsSomething) {
  const auto data = bytes("41 42");
  {
    LoggingPort port(folder_);
    EXPECT_EQ(port.logWrite(data.data(), 0, 1), 0);
    EXPECT_EQ(port.logWrite(nullptr, 2, 1), 0);
    EXPECT_EQ(port.logWrite(data.data(), 2, 3), 0);
    EXPECT_EQ(port.logWrite(data.data(), 2, -1), 0);
    EXPECT_EQ(port.setPortLog(0x100), 0);  // the low byte counts
    port.logWrite(data.data(), 2, 1);
    EXPECT_EQ(port.setPortLog(0x101), 1);
    port.logWrite(data.data(), 2, 2);
    port.SetLogName(nullptr, nullptr);  // closes the file, and the next record opens it again
    port.logWrite(data.data(), 1, 1);
    port.setPortLog(0);
  }
  EXPECT_THAT(records(log()), ElementsAre("IN 2", "OUT 1"));
}

TEST_F(PortLog, IsSwitchedByTheMarkerWhenThePortIsNamed) {
  TempFolder unmarked;
  {
    LoggingPort marked(folder_);
    std::remove(folder_.file("log.txt").c_str());
    COrbComLanPort later;
    later.SetLogName(folder_.path().c_str(), "8");
    folder_.write("log.txt", "");
    LoggingPort elsewhere(unmarked);
    elsewhere.read(nullptr, 0);
  }
  EXPECT_THAT(records(log()), ElementsAre("STOP PROGRAM"));
  EXPECT_FALSE(folder_.has("log_scales_8.log"));
  EXPECT_FALSE(unmarked.has(kLogName));
}

TEST_F(PortLog, SwitchesItselfOffWhenItsFileCantBeOpened) {
  folder_.makeFolder(kLogName);
  LoggingPort port(folder_);
  const auto data = bytes("41");
  EXPECT_EQ(port.logWrite(data.data(), 1, 1), 0);
  std::remove(folder_.file(kLogName).c_str());
  EXPECT_EQ(port.logWrite(data.data(), 1, 1), 0);
  EXPECT_FALSE(folder_.has(kLogName));
}

TEST_F(PortLog, CutsAPathThatIsTooLong) {
  const std::string folder =
      folder_.makeFolder(std::string(100, 'a') + "/" + std::string(100, 'b'));
  folder_.write(folder.substr(folder_.path().size()) + "log.txt", "");
  const std::string wanted = folder + "log_scales_" + std::string(65536, '9');
  {
    COrbComLanPort port;
    port.SetLogName(folder.c_str(), std::string(65536, '9').c_str());
  }
  EXPECT_TRUE(folder_.has(wanted.substr(folder_.path().size(), 299 - folder_.path().size())));
}

}  // namespace
