#include <array>
#include <chrono>
#include <functional>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "ComLanPort.h"
#include "PtyLine.h"
#include "TcpPeer.h"

namespace {

using namespace std::chrono_literals;
using fixture::Bytes;
using fixture::bytes;
using fixture::hex;
using fixture::PtyLine;
using fixture::TcpPeer;
using fixture::TcpWire;
using fixture::Wire;

constexpr int kConnected = 0;
constexpr int kNotConnected = 2;

/// Reads once; the bytes as text, and "" for none.
std::string readHex(COrbComLanPort& port, unsigned long size) {
  std::vector<unsigned char> buffer(size);
  const int count = port.read(buffer.data(), size);
  return hex(std::span(buffer).first(static_cast<std::size_t>(count)));
}

/// Reads until something comes, for as long as a slow machine may need.
std::string awaitHex(COrbComLanPort& port, unsigned long size) {
  std::string result;
  for (int i = 0; i < 50 && result.empty(); ++i) result = readHex(port, size);
  return result;
}

int write(COrbComLanPort& port, const Bytes& data) { return port.write(data.data(), data.size()); }

/// The line is closed, and what isn't open transfers nothing.
void expectClosedLine(COrbComLanPort& port) {
  EXPECT_EQ(port.getState(), kNotConnected);
  EXPECT_EQ(readHex(port, 8), "");
  EXPECT_EQ(write(port, bytes("05")), -1);
}

TEST(ComLanPort, CarriesBytesOverASerialLine) {
  COrbComLanPort unset;
  EXPECT_EQ(unset.Open(), 1);
  EXPECT_EQ(write(unset, bytes("01")), -1);
  EXPECT_EQ(unset.Close(true), 0);
  EXPECT_EQ(unset.getBitRate(), 4800U);
  EXPECT_EQ(unset.setHandshaking(true), -1);
  EXPECT_EQ(unset.setxONxOFF(true), -1);
  PtyLine line;
  COrbComLanPort port(line.path().c_str());
  EXPECT_EQ(port.getState(), kConnected);
  EXPECT_EQ(port.Open(), 9);
  EXPECT_EQ(readHex(port, 8), "");
  const Bytes frame = bytes("06 00 01 03 04 0A 0D 11 13 1C 7F 80 FF");  // all that a terminal eats
  line.send(frame);
  EXPECT_EQ(readHex(port, 2), "06 00");
  EXPECT_EQ(readHex(port, 16), "01 03 04 0A 0D 11 13 1C 7F 80 FF");
  EXPECT_EQ(write(port, frame), 13);
  EXPECT_EQ(hex(line.receive(13)), hex(frame));

  port.Close(false);
  EXPECT_EQ(port.getState(), kConnected);
  port.Close(true);
  expectClosedLine(port);
  EXPECT_EQ(port.Open(), 0);
}

TEST(ComLanPort, OpensWithTheSettingsThatWereStored) {
  PtyLine line;
  COrbComLanPort port;
  EXPECT_EQ(port.SetComPort(line.path().c_str(), 19200, COMPort::None, COMPort::Bits8, COMPort::Two,
                            true, true),
            0);
  ASSERT_EQ(port.Open(), 0);
  termios settings = line.settings();
  EXPECT_EQ(::cfgetospeed(&settings), speed_t{B19200});
  EXPECT_TRUE(settings.c_cflag & CSTOPB);

  // By name alone the line goes back to 4800 baud and one stop bit.
  ASSERT_EQ(port.OpenComPort(line.path().c_str()), 0);
  settings = line.settings();
  EXPECT_EQ(::cfgetospeed(&settings), speed_t{B4800});
  EXPECT_FALSE(settings.c_cflag & CSTOPB);
}

TEST(ComLanPort, ARefusedSettingClosesTheLineAndStays) {
  const std::array<std::function<int(COrbComLanPort&)>, 4> refused = {
      [](COrbComLanPort& p) { return p.setBitRate(56000); },
      [](COrbComLanPort& p) { return p.setStopBits(COMPort::OnePointFive); },
      [](COrbComLanPort& p) { return p.setParity(static_cast<COMPort::Parity>(5)); },
      [](COrbComLanPort& p) { return p.setDataBits(static_cast<COMPort::DataBits>(3)); }};
  PtyLine line;
  for (const auto& set : refused) {
    COrbComLanPort port(line.path().c_str());
    EXPECT_EQ(set(port), -2);
    expectClosedLine(port);
    EXPECT_EQ(set(port), -1);
    EXPECT_EQ(port.Open(), 1);
    EXPECT_EQ(port.OpenComPort(line.path().c_str()), 0);
  }
  COrbComLanPort port(line.path().c_str());
  port.setBitRate(56000);
  EXPECT_EQ(port.getBitRate(), 56000U);
}

TEST(ComLanPort, FindsASerialLineDeadAndOpensItAgain) {
  const std::array<std::function<void(COrbComLanPort&)>, 3> transfers = {
      [](COrbComLanPort& p) { EXPECT_EQ(readHex(p, 8), ""); },
      [](COrbComLanPort& p) { EXPECT_EQ(write(p, bytes("05")), -2); },
      [](COrbComLanPort& p) { EXPECT_EQ(p.setBitRate(9600), -2); }};
  for (const auto& transfer : transfers) {
    PtyLine line;
    COrbComLanPort port(line.path().c_str());
    line.unplug();
    // The line object exists until a transfer meets the hang-up.
    EXPECT_EQ(port.getState(), kConnected);
    transfer(port);
    expectClosedLine(port);
    EXPECT_EQ(port.Open(), 1);
    line.plugIn();
    EXPECT_EQ(port.Open(), 0);
    line.send(bytes("07"));
    EXPECT_EQ(readHex(port, 8), "07");
  }
}

TEST(ComLanPort, CantOpenWhatIsntThere) {
  const fixture::TempFolder folder;
  const std::string file = folder.write("file", "");
  COrbComLanPort port;
  EXPECT_EQ(port.OpenComPort(folder.file("missing").c_str()), 1);
  EXPECT_EQ(port.OpenComPort(file.c_str()), 1);
  EXPECT_EQ(port.OpenComPort(""), 1);
  EXPECT_EQ(port.OpenComPort(nullptr), 1);
  EXPECT_EQ(port.OpenNetworkPort("", 20108), 1);
  EXPECT_EQ(port.OpenNetworkPort(nullptr, 20108), 1);
  EXPECT_EQ(port.getState(), kNotConnected);
  TcpPeer gone(fixture::silent());
  gone.stop();
  EXPECT_EQ(port.OpenNetworkPort(TcpPeer::kHost, gone.port()), 1);
  // Without a socket a network port transfers nothing.
  EXPECT_EQ(readHex(port, 8), "");
  EXPECT_EQ(write(port, bytes("05")), 0);
}

TEST(ComLanPort, CutsNamesThatAreTooLong) {
  PtyLine line;
  // Of the path's 1100 bytes the first 1023 name the device.
  std::string path = line.path();
  while (path.size() < 1022) path.insert(0, "/");
  path.insert(0, std::string(1023 - path.size(), '/'));
  COrbComLanPort port;
  EXPECT_EQ(port.OpenComPort((path + std::string(77, 'x')).c_str()), 0);
  EXPECT_EQ(port.OpenComPort((path.substr(1) + std::string(77, 'x')).c_str()), 1);
  EXPECT_EQ(port.OpenNetworkPort(std::string(65536, '1').c_str(), 20108), 1);
}

TEST(ComLanPort, CarriesBytesOverTcpAllOrNothing) {
  std::binary_semaphore sent{0};
  fixture::Received received;
  TcpPeer peer([&](TcpWire& wire) {
    wire.send(bytes("06 01 02"));
    sent.release();
    received.add(wire.receive(2));
    wire.send(bytes("0A 0B 0C 0D"));
    fixture::recording(received)(wire);
  });
  COrbComLanPort port(TcpPeer::kHost, peer.port());
  EXPECT_EQ(port.getState(), kConnected);
  EXPECT_EQ(port.Open(), 9);
  EXPECT_EQ(port.setBitRate(9600), -1);
  ASSERT_TRUE(sent.try_acquire_for(5s));
  // More than there is: the bytes that did come are lost.
  EXPECT_EQ(readHex(port, 4), "");
  EXPECT_EQ(port.getState(), kConnected);
  EXPECT_EQ(write(port, bytes("05 11")), 2);
  EXPECT_EQ(awaitHex(port, 2), "0A 0B");
  EXPECT_EQ(readHex(port, 1), "0C");
  EXPECT_EQ(readHex(port, 0), "");
  EXPECT_EQ(readHex(port, 1), "0D");
  EXPECT_EQ(write(port, bytes("7F")), 1);
  EXPECT_EQ(hex(received.waitFor(3)), "05 11 7F");

  port.Close(false);
  EXPECT_EQ(port.getState(), kConnected);
  port.Close(true);
  EXPECT_EQ(port.getState(), kNotConnected);
  EXPECT_EQ(write(port, bytes("05")), 0);
}

/// The connection in use is given up for a new one, not for none.
TEST(ComLanPort, RenewsAConnectionOrKeepsIt) {
  TcpPeer peer([](TcpWire& wire) {
    wire.send(bytes("'a'"));
    wire.receive(1);
  });
  COrbComLanPort port(TcpPeer::kHost, peer.port());
  EXPECT_TRUE(port.Renew());
  EXPECT_EQ(readHex(port, 1), "61");
  EXPECT_EQ(peer.connections(), 2);

  COrbComLanPort unset;
  EXPECT_FALSE(unset.Renew());
}

TEST(ComLanPort, ReadsWhatCameBeforeThePeerClosedItsSide) {
  for (const unsigned long size : {3UL, 4UL}) {
    std::binary_semaphore halfClosed{0};
    TcpPeer peer([&](TcpWire& wire) {
      wire.send(bytes("06 01 02"));
      wire.halfClose();
      halfClosed.release();
      wire.receive(1);
    });
    COrbComLanPort port(TcpPeer::kHost, peer.port());
    ASSERT_TRUE(halfClosed.try_acquire_for(5s));
    EXPECT_EQ(port.getState(), kConnected);
    // A read that asks for more than came loses it, and finds the line dead.
    EXPECT_EQ(readHex(port, size), size == 3 ? "06 01 02" : "");
    EXPECT_EQ(port.getState(), kNotConnected);
    EXPECT_EQ(readHex(port, 1), "");
    EXPECT_EQ(write(port, bytes("05")), 0);
  }
}

TEST(ComLanPort, ServesManyThreadsOneByOne) {
  PtyLine line;
  COrbComLanPort port;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 25; ++round) {
        port.OpenComPort(line.path().c_str());
        write(port, bytes("05"));
        readHex(port, 8);
        port.getState();
        port.Close(true);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(port.getState(), kNotConnected);
}

}  // namespace
