// The doctor, on lines, hosts and scales that have what it tells of.

#include <fcntl.h>
#include <grp.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Descriptor.h"
#include "Program.h"
#include "PtyLine.h"
#include "Run.h"
#include "SerialLine.h"
#include "TcpPeer.h"
#include "TempFolder.h"

namespace {

using fixture::PtyLine;
using fixture::Wire;
using nlohmann::json;
using sim::SimulatedScale;
using sim::Transport;
using testing::HasSubstr;

/// The one record of a run, with its exit code held against it.
json diagnosisOf(const ProgramRun& run) {
  const auto records = run.records();
  EXPECT_EQ(records.size(), 1U) << run.err;
  if (records.empty()) return {};
  EXPECT_EQ(run.exitCode, records[0]["weighs"] == true ? kGood : kScaleFailed);
  EXPECT_NE(records[0]["cause"], "");
  EXPECT_NE(records[0]["remedy"], "");
  return records[0];
}

json diagnose(const Arguments& scale) {
  return diagnosisOf(weigh(Arguments{"doctor", "--json"} + scale));
}

Arguments serial(int model, const std::string& device) {
  return {"--model", std::to_string(model), "--port", device, "--baud", "9600"};
}

Arguments network(int port) {
  return {"--model", "13", "--host", fixture::TcpPeer::kHost, "--tcp-port", std::to_string(port)};
}

/// Sends the same again and again.
fixture::Script repeating(const fixture::Bytes& data) {
  return [data](Wire& wire) {
    while (wire.send(data) && wire.pause(50)) continue;
  };
}

/// What comes in on a line of 9600 baud when the scale's line is set to another speed.
fixture::Bytes sentAt(int bitsPerSecond, const fixture::Bytes& data) {
  return sim::received(data, {bitsPerSecond, {}}, {9600, {}}, sim::Receiver::TakesAll);
}

/// Runs weigh as a user without rights; as it is for one who has none anyway. Credentials are a
/// thread's own for the system, so the test keeps its own.
ProgramRun weighAsNobody(const Arguments& arguments) {
  constexpr long kNobody = 65534;
  ProgramRun run{};
  std::thread([&] {
    if (::geteuid() == 0) {
      ::syscall(SYS_setgroups, 0, nullptr);
      ::syscall(SYS_setresgid, kNobody, kNobody, kNobody);
      ::syscall(SYS_setresuid, kNobody, kNobody, kNobody);
    }
    run = weigh(arguments);
  }).join();
  return run;
}

json diagnoseAsNobody(const std::string& device) {
  return diagnosisOf(weighAsNobody(Arguments{"doctor", "--json"} + serial(13, device)));
}

/// Whether that user can start the program at all.
bool nobodyCanRun() { return weighAsNobody({"models"}).exitCode == kGood; }

TEST(DoctorOfADevice, NamesOwnerGroupAndTheCommandThatMendsDeniedRights) {
  if (!nobodyCanRun()) GTEST_SKIP() << "the build folder is closed to other users";
  PtyLine line;
  const std::string device = std::filesystem::canonical(line.path());
  const bool root = ::geteuid() == 0;
  constexpr gid_t kDialout = 20;
  // Root hands it to a group; anybody else takes the rights from himself.
  ASSERT_TRUE(!root || ::chown(device.c_str(), 0, kDialout) == 0);
  ASSERT_EQ(::chmod(device.c_str(), root ? 0660 : 0060), 0);
  const json diagnosis = diagnoseAsNobody(device);
  EXPECT_EQ(diagnosis["verdict"], "no-permission");
  EXPECT_THAT(diagnosis["cause"],
              HasSubstr(root ? "owner root, group dialout, rights rw-rw----" : "rights ---rw----"));
  EXPECT_THAT(diagnosis["remedy"],
              HasSubstr(root ? "sudo usermod -aG dialout nobody" : "sudo chmod u+rw " + device));
}

TEST(DoctorOfADevice, NamesTheProgramThatHoldsIt) {
  PtyLine line;
  fixture::Program holder({"sh", "-c", "exec 3<>\"$0\"; echo; read x", line.path()},
                          fixture::Program::Errors::Apart);
  holder.line();
  const json diagnosis = diagnose(serial(13, line.path()));
  EXPECT_EQ(diagnosis["verdict"], "held");
  EXPECT_THAT(diagnosis["cause"], HasSubstr("sh (process " + std::to_string(holder.pid()) + ")"));
}

TEST(DoctorOfADevice, KnowsAHiddenHolderByTheSystemsRefusal) {
  if (!nobodyCanRun()) GTEST_SKIP() << "the build folder is closed to other users";
  PtyLine line;
  const std::string device = std::filesystem::canonical(line.path());
  ASSERT_EQ(::chmod(device.c_str(), 0666), 0);
  const fixture::Descriptor own(::open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  ASSERT_EQ(::ioctl(own.get(), TIOCEXCL), 0);
  const json diagnosis = diagnoseAsNobody(device);
  EXPECT_EQ(diagnosis["verdict"], "held");
  EXPECT_THAT(diagnosis["cause"], HasSubstr("for itself alone"));
}

TEST(DoctorOfALine, JudgesBytesThatAreNoFrames) {
  const fixture::Bytes ticket = fixture::text("TICKET 0042 GROSS 12.5 NET 11.0 OPERATOR SMITH\r\n");
  const struct {
    fixture::Script scale;
    const char* verdict;
    const char* cause;
  } cases[] = {
      {repeating(sentAt(4800, ticket)), "wrong-speed", "another speed than the line's (9600"},
      {fixture::answering(fixture::bytes("05"), fixture::bytes("05")), "echo", "05"},
  };
  for (const auto& [scale, verdict, cause] : cases) {
    PtyLine line;
    line.play(scale);
    const json diagnosis = diagnose(serial(13, line.path()));
    EXPECT_EQ(diagnosis["verdict"], verdict) << diagnosis["cause"];
    EXPECT_THAT(diagnosis["cause"], HasSubstr(cause));
    EXPECT_FALSE(diagnosis["bytes"].empty());
  }
}

TEST(DoctorOfAHost, TellsHangingUp) {
  fixture::TcpPeer rude([](Wire& wire) { wire.hangUp(); });
  EXPECT_EQ(diagnose(network(rude.port()))["verdict"], "hangs-up");
}

TEST(DoctorOfAHost, TellsThatNoAnswerCameInTime) {
  const fixture::SilentPort silent;
  const json diagnosis = diagnose(network(silent.port()));
  EXPECT_EQ(diagnosis["verdict"], "no-answer");
  EXPECT_THAT(diagnosis["cause"], HasSubstr("within 10 s"));
}

TEST(DoctorOfAScale, DoubtsAWeightOnALineThatSpeaksUnasked) {
  // This protocol takes any two bytes for a weight.
  PtyLine line;
  line.play(repeating(fixture::bytes("FF 55 AA FE")));
  const json noise = diagnose(serial(10, line.path()));
  EXPECT_TRUE(noise["weighs"]);
  ASSERT_EQ(noise["notes"].size(), 1U);
  EXPECT_EQ(noise["notes"][0]["code"], "unasked-bytes");
  SimulatedScale scale(10, Transport::Pty);
  EXPECT_TRUE(diagnose(optionsOf(scale))["notes"].empty());
}

TEST(DoctorOfAScale, CountsPollsThatFailAmongGoodOnes) {
  // The three attempts of one poll.
  SimulatedScale scale(13, Transport::Pty, {.corruptEvery = 1, .frames = 3});
  const json diagnosis = diagnose(optionsOf(scale));
  EXPECT_EQ(diagnosis["verdict"], "unsteady");
  EXPECT_EQ(diagnosis["polls"]["done"], diagnosis["polls"]["answered"].get<int>() + 1);
}

TEST(DoctorOfAFolder, StopsOnCtrlC) {
  const SimulatedScale scale(17, Transport::Pty);
  const SimulatedScale silent(13, Transport::Tcp, {.silent = true});
  const fixture::TempFolder folder;
  folder.write("settings.xml", "<S>" + serialEntry(1, 1, 17, scale.devicePath()) +
                                   networkEntry(2, 2, 13, silent.port()) + "</S>");
  const ProgramRun stopped = weighUntil(SIGINT, {"doctor", folder.path(), "--json"});
  EXPECT_EQ(stopped.exitCode, kScaleFailed);
  ASSERT_EQ(stopped.records().size(), 2U);
  EXPECT_EQ(stopped.records()[0]["verdict"], "good");
  EXPECT_EQ(stopped.records()[1]["verdict"], "stopped");
}

}  // namespace
