// What the doctor knows without a scale: of adapters, and of what protocols say.

#include <bit>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Doctor.h"
#include "FakeMachine.h"
#include "Library.h"
#include "SimulatedScale.h"

namespace {

using fixture::FakeMachine;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;

weigh::Diagnosis diagnose(const FakeMachine& machine, const std::string& device) {
  useLanguage(Language::English);
  weigh::Connection connection;
  connection.model = 13;
  connection.device = device;
  connection.baud = 9600;
  weigh::Progress progress(std::chrono::seconds{1});
  return weigh::diagnose(
      connection, {.component = WEIGH_COMPONENT, .progress = progress, .roots = machine.roots()});
}

TEST(DoctorOfAMachine, NamesAnAdapterThatGathersBytesAndItsStableName) {
  sim::SimulatedScale scale(13, sim::Transport::Pty);
  FakeMachine machine;
  machine.plugIn("ttyUSB0", "1-1.2", {.latency = "16"}, scale.devicePath());
  const weigh::Diagnosis slow = diagnose(machine, machine.device("ttyUSB0"));
  EXPECT_EQ(slow.verdict.code, "good") << slow.verdict.cause;
  using weigh::Finding;
  const std::string setting = "bus/usb-serial/devices/ttyUSB0/latency_timer";
  EXPECT_THAT(slow.notes,
              ElementsAre(AllOf(Field(&Finding::code, "usb-latency"),
                                Field(&Finding::cause, HasSubstr("FTDI FT232R USB UART")),
                                Field(&Finding::cause, HasSubstr("16 ms")),
                                Field(&Finding::remedy, HasSubstr(setting))),
                          AllOf(Field(&Finding::code, "name-may-change"),
                                Field(&Finding::remedy, HasSubstr("/serial/by-id/usb-FTDI")))));

  // Neither is worth a word once it is mended.
  machine.unplug("ttyUSB0", "1-1.2");
  machine.plugIn("ttyUSB0", "1-1.2", {.latency = "1"}, scale.devicePath());
  const std::string stable = machine.device("serial/by-id/usb-FTDI_FT232R_USB_UART-if00-port0");
  const weigh::Diagnosis mended = diagnose(machine, stable);
  EXPECT_EQ(mended.verdict.code, "good") << mended.verdict.cause;
  EXPECT_TRUE(mended.notes.empty());
}

TEST(DoctorOfAMachine, ListsTheDevicesInPlaceOfOneThatIsNotThere) {
  FakeMachine machine;
  machine.plugIn("ttyUSB1", "1-1.2", {});
  machine.addBoardPort("ttyS0", 4);
  const weigh::Diagnosis diagnosis = diagnose(machine, machine.device("ttyUSB0"));
  EXPECT_EQ(diagnosis.verdict.code, "no-device");
  EXPECT_THAT(diagnosis.verdict.remedy,
              HasSubstr(machine.device("ttyS0") + ", " + machine.device("ttyUSB1")));
  ASSERT_EQ(diagnosis.devices.size(), 2U);
  EXPECT_EQ(diagnosis.devices[1].bySocket.filename(), "usb-0:1-1.2:1.0-port0");
  EXPECT_FALSE(diagnosis.weighs);
  const weigh::Json record = weigh::diagnosisRecord({}, diagnosis)["devices"];
  EXPECT_EQ(record[0]["device"], machine.device("ttyS0"));
  EXPECT_FALSE(record[0].contains("usb_id"));
  EXPECT_EQ(record[1]["usb_id"], "0403:6001");
  EXPECT_EQ(record[1]["socket"], "1-1.2");
}

/// What a pseudo-terminal can't bring about: counts of the hardware, an adapter that goes.
TEST(DoctorOfAMachine, JudgesALineByAllThatCameOfIt) {
  useLanguage(Language::English);
  std::vector<std::uint8_t> plain;
  std::vector<std::uint8_t> odd;
  std::vector<std::uint8_t> even;
  for (const char c : std::string("TICKET 0042 GROSS 12.5 NET 11.0\r\n")) {
    const auto byte = static_cast<std::uint8_t>(c);
    const bool ones = std::popcount(byte) % 2 != 0;
    plain.push_back(byte);
    odd.push_back(byte | (ones ? 0U : 0x80U));
    even.push_back(byte | (ones ? 0x80U : 0U));
  }
  const struct {
    std::vector<std::uint8_t> bytes;
    bool hungUp;
    int framingErrors;
    int parityErrors;
    const char* verdict;
    const char* cause;
  } cases[] = {
      {{}, true, 0, 0, "line-fails", "Input/output error"},
      {{0x55}, false, 1, 0, "wrong-speed", "another speed"},
      {{0x55}, false, 0, 1, "wrong-parity", "come with the wrong parity"},
      {odd, false, 0, 0, "wrong-parity", "odd parity"},
      {even, false, 0, 0, "wrong-parity", "even parity, and model 13"},
      {plain, false, 0, 0, "garbled", "never a frame of model 13: 54 49 43"},
      {{0x55, 0xAA}, false, 0, 0, "garbled", "never a frame of model 13: 55 AA"},
  };
  for (const auto& row : cases) {
    weigh::Heard heard;
    heard.unasked = row.bytes;
    heard.hungUp = row.hungUp;
    heard.framingErrors = row.framingErrors;
    heard.parityErrors = row.parityErrors;
    weigh::Connection connection;
    connection.model = 13;
    const weigh::Finding found = weigh::judge(heard, *findScalesModel(13), connection);
    EXPECT_EQ(found.code, row.verdict) << row.cause;
    EXPECT_THAT(found.cause, HasSubstr(row.cause));
  }
}

TEST(DoctorOfAMachine, CallsAWeightMovingOnlyWhereTheProtocolSaysSo) {
  for (const sim::ScaleModel& model : sim::scaleModels()) {
    EXPECT_EQ(weigh::tellsMotion(model.number), model.showsStability()) << model.number;
  }
}

}  // namespace
