// The devices of a machine: which there are, and which is which after replugging.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeMachine.h"
#include "SerialDevices.h"

namespace {

using devices::SerialDevice;
using fixture::FakeMachine;

const FakeMachine::Adapter kFtdi{.serialNumber = "A50285BI"};
const FakeMachine::Adapter kCheap{.vendor = "1a86",
                                  .product = "7523",
                                  .maker = "",
                                  .name = "USB Serial",
                                  .driver = "ch341-uart",
                                  .latency = ""};

std::vector<std::string> names(const std::vector<SerialDevice>& devices) {
  std::vector<std::string> names;
  for (const SerialDevice& device : devices) names.push_back(device.path.filename());
  return names;
}

TEST(SerialDevices, ListsHardwareInOrderAndLeavesOutBareNumbers) {
  FakeMachine machine;
  EXPECT_TRUE(devices::serialDevices(machine.roots()).empty());
  machine.plugIn("ttyUSB10", "1-3", kCheap);
  machine.plugIn("ttyUSB2", "1-2", kFtdi);
  machine.addBoardPort("ttyS0", 4);
  machine.addBoardPort("ttyS1", 0);
  EXPECT_THAT(names(devices::serialDevices(machine.roots())),
              testing::ElementsAre("ttyS0", "ttyUSB2", "ttyUSB10"));
}

TEST(SerialDevices, TellsTheDriverAndWhatADeviceLacks) {
  FakeMachine machine;
  // A device and no plain file: the two aren't compared in the same way.
  machine.plugIn("ttyUSB0", "1-1.2", kFtdi, "/dev/zero");
  machine.plugIn("ttyUSB1", "1-1.3", kCheap);
  machine.addBoardPort("ttyS0", 4);

  // A stable name leads to the same device as its own.
  const auto device = devices::deviceAt(
      machine.roots().dev / "serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0",
      machine.roots());
  ASSERT_TRUE(device);
  EXPECT_EQ(device->path, machine.device("ttyUSB0"));
  EXPECT_EQ(device->driver, "ftdi_sio");

  const auto cheap = devices::deviceAt(machine.device("ttyUSB1"), machine.roots());
  ASSERT_TRUE(cheap && cheap->adapter);
  EXPECT_EQ(cheap->adapter->maker, "");
  EXPECT_EQ(cheap->adapter->serialNumber, "");
  EXPECT_EQ(cheap->latency_ms, std::nullopt);

  const auto board = devices::deviceAt(machine.device("ttyS0"), machine.roots());
  ASSERT_TRUE(board);
  EXPECT_EQ(board->driver, "serial");
  EXPECT_FALSE(board->adapter);
  EXPECT_EQ(board->byAdapter, "");
  EXPECT_FALSE(devices::findAgain(*board, {}, machine.roots()));

  EXPECT_FALSE(devices::deviceAt("/dev/null", machine.roots()));
  EXPECT_FALSE(devices::deviceAt(machine.device("ttyUSB7"), machine.roots()));
}

/// An adapter in a socket, under a name.
struct Plugged {
  const char* name;
  const char* socket;
  FakeMachine::Adapter adapter;
};

TEST(Replugged, AdapterIsFoundAgainWhereNothingElseCanBeMeant) {
  FakeMachine::Adapter otherFtdi = kFtdi;
  otherFtdi.serialNumber = "B1";
  const struct {
    const char* what;
    FakeMachine::Adapter adapter;
    std::vector<Plugged> others;
    std::vector<Plugged> meanwhile;
    const char* found;
  } rows[] = {
      {"by serial number in any socket",
       kFtdi,
       {},
       {{"ttyUSB0", "1-1", otherFtdi}, {"ttyUSB3", "2-4", kFtdi}},
       "ttyUSB3"},
      {"by socket", kCheap, {{"ttyUSB5", "1-7", kCheap}}, {{"ttyUSB1", "1-1", kCheap}}, "ttyUSB1"},
      {"the only one of its kind",
       kCheap,
       {{"ttyUSB5", "1-7", kFtdi}},
       {{"ttyUSB1", "1-3", kCheap}},
       "ttyUSB1"},
      {"one of twins", kCheap, {}, {{"ttyUSB1", "1-3", kCheap}, {"ttyUSB2", "1-4", kCheap}}, ""},
      {"its neighbour", kCheap, {{"ttyUSB5", "1-7", kCheap}}, {}, ""},
      {"away", kFtdi, {}, {}, ""},
  };
  for (const auto& row : rows) {
    FakeMachine machine;
    for (const Plugged& one : row.others) machine.plugIn(one.name, one.socket, one.adapter);
    machine.plugIn("ttyUSB0", "1-1", row.adapter);
    const auto before = devices::deviceAt(machine.device("ttyUSB0"), machine.roots());
    const auto all = devices::serialDevices(machine.roots());
    machine.unplug("ttyUSB0", "1-1");
    machine.addBoardPort("ttyS0", 4);
    for (const Plugged& one : row.meanwhile) machine.plugIn(one.name, one.socket, one.adapter);
    const auto found = devices::findAgain(before.value(), all, machine.roots());
    EXPECT_EQ(found ? found->path.filename() : "", row.found) << row.what;
  }
}

}  // namespace
