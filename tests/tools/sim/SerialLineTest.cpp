// What a wire does to bytes whose two ends are set differently, worked out from the bits.

#include <termios.h>

#include <gtest/gtest.h>

#include "Host.h"
#include "SerialLine.h"
#include "SimulatedScale.h"

namespace sim {
namespace {

constexpr Framing kEven = {.dataBits = 8, .parity = Parity::Even, .stopBits = 1};

TEST(SerialLine, GarblesBytesBetweenUnlikeEnds) {
  const struct {
    const char* what;
    Bytes sent;
    LineEnd sender;
    LineEnd receiver;
    Receiver manner;
    Bytes heard;
  } rows[] = {
      {"alike", {0x00, 0x55, 0xFF}, {9600, {}}, {9600, {}}, Receiver::TakesAll, {0x00, 0x55, 0xFF}},
      // The line is 0 1010 1010 1 from the start bit on. Taken at 0.75, 1.25 ... 4.25 it reads
      // 0110 0110, lowest bit first; from the next fall, at 6, 0110 0111.
      {"twice as fast", {0x55}, {9600, {}}, {19200, {}}, Receiver::TakesAll, {0x66, 0xE6}},
      // Taken at 3, 5, 7, 9 and then at rest: ones only.
      {"half as fast", {0x55}, {9600, {}}, {4800, {}}, Receiver::TakesAll, {0xFF}},
      // The parity bit of a byte with an odd number of ones stands where the stop bit should.
      {"parity for a stop bit",
       {0x03, 0x07},
       {9600, kEven},
       {9600, {}},
       Receiver::TakesAll,
       {0x03, 0x07}},
      {"and a strict receiver", {0x03}, {9600, kEven}, {9600, {}}, Receiver::Strict, {}},
      {"and a strict receiver", {0x07}, {9600, kEven}, {9600, {}}, Receiver::Strict, {0x07}},
      // The stop bit stands where the parity should.
      {"no parity", {0x07}, {9600, {}}, {9600, kEven}, Receiver::Strict, {0x07}},
      {"no parity", {0x03}, {9600, {}}, {9600, kEven}, Receiver::Strict, {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(received(row.sent, row.sender, row.receiver, row.manner), row.heard) << row.what;
  }
}

void setSpeed(const Host& host, speed_t speed) {
  termios settings = {};
  ASSERT_EQ(::tcgetattr(host.descriptor(), &settings), 0);
  ::cfsetspeed(&settings, speed);
  ASSERT_EQ(::tcsetattr(host.descriptor(), TCSAFLUSH, &settings), 0);
}

TEST(SimulatedScale, UnderstandsAHostAtItsOwnSpeedOnly) {
  SimulatedScale scale(13, Transport::Pty);
  scale.setSpeed(4800);
  const Host host(scale.devicePath());
  setSpeed(host, B9600);
  host.say({0x05, 0x11});
  EXPECT_TRUE(host.hear(1, std::chrono::milliseconds{200}).empty());
  EXPECT_EQ(scale.count(Action::Weigh), 0);
  setSpeed(host, B4800);
  host.say({0x05, 0x11});
  EXPECT_EQ(host.hear(16), scale.frame());
}

}  // namespace
}  // namespace sim
