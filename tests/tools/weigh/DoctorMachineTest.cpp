// What the doctor knows without a scale: of adapters, and of what protocols say.

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
  const weigh::Interrupt interrupt;
  weigh::Progress progress(std::chrono::seconds{1});
  return weigh::diagnose(connection, {.component = WEIGH_COMPONENT,
                                      .roots = machine.roots(),
                                      .interrupt = interrupt,
                                      .progress = progress});
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
}

TEST(DoctorOfAMachine, CallsAWeightMovingOnlyWhereTheProtocolSaysSo) {
  for (const sim::ScaleModel& model : sim::scaleModels()) {
    EXPECT_EQ(weigh::tellsMotion(model.number), model.stableReading == sim::StableReading::AsShown)
        << model.number;
  }
}

}  // namespace
