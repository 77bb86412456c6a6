// How weigh ends, whatever ends it, and what it leaves behind.

#include <sys/mount.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"
#include "Run.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;
using sim::SimulatedScale;
using sim::Transport;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

/// Runs weigh in a shell, with its output where `tail` says.
ProgramRun inShell(const std::string& arguments, const std::string& tail) {
  return runOf({"sh", "-c", WEIGH_PROGRAM " --lang en " + arguments + " " + tail});
}

TEST(Endings, AFullDiskIsAFailure) {
  for (const char* command :
       {"read --json", "watch --count 1", "models", "page", "call GetVersion", "test --json",
        "price 5", "doctor", "--help", "--version", "--self-describe man"}) {
    const ProgramRun run = inShell(command, "> /dev/full");
    EXPECT_EQ(run.exitCode, kScaleFailed) << command;
    EXPECT_THAT(run.err, HasSubstr("No space left on device")) << command;
  }
}

TEST(Endings, ALogThatTheDiskHasNoRoomForIsAFailure) {
  const fixture::TempFolder folder;
  if (::mount("none", folder.path().c_str(), "tmpfs", 0, "size=4k") != 0)
    GTEST_SKIP() << "no disk of one's own without root";
  const SimulatedScale scale(13, Transport::Pty);
  folder.write("other", std::string(4096, 'x'));
  const ProgramRun run = weigh({"read", "--count", "1", "--log", folder.path(), "--model", "13",
                                "--port", scale.devicePath(), "--baud", "9600"});
  ::umount2(folder.path().c_str(), MNT_DETACH);
  EXPECT_EQ(run.exitCode, kScaleFailed) << run.out;
  EXPECT_THAT(run.err, HasSubstr("is full, so the exchange log isn't whole"));
}

/// The marker would keep the log on for good.
TEST(Endings, TakeTheLogsMarkerAway) {
  SimulatedScale scale(13, Transport::Pty);
  const fixture::TempFolder folder;
  const Arguments read = Arguments{"read", "--log", folder.path()} + optionsOf(scale);
  const ProgramRun whole = weigh(read);
  EXPECT_FALSE(folder.has("log.txt"));
  const std::string told = "exchange log: " + folder.path();
  ASSERT_THAT(whole.err, StartsWith(told + "log_scales_"));
  const std::string name = whole.err.substr(told.size(), whole.err.find('\n') - told.size());
  EXPECT_THAT(folder.read(name),
              AllOf(HasSubstr("OUT >>>>>"), HasSubstr("IN <<<<<<"), HasSubstr("STOP PROGRAM")));

  const Arguments endless = {"--count", "1000", "--interval", "60"};
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EQ(weighUntil(signal, read + endless).exitCode, kGood) << signal;
    EXPECT_FALSE(folder.has("log.txt")) << signal;
  }
  inShell("read --count 1000 --interval 0 --log " + folder.path(), "| head -n 1");
  EXPECT_FALSE(folder.has("log.txt")) << "the reader left";

  folder.write("log.txt", "");
  weigh(read);
  EXPECT_TRUE(folder.has("log.txt")) << "it was there before";
}

TEST(Endings, ASecondCtrlCEndsAtOnceAndTakesTheMarkerToo) {
  SimulatedScale scale(13, Transport::Pty,
                       {.endless = sim::Faults::Endless::Garbage, .bytesPerSecond = 960});
  const fixture::TempFolder folder;
  const Arguments arguments =
      Arguments{WEIGH_PROGRAM, "watch", "--log", folder.path()} + optionsOf(scale);
  fixture::Program program(arguments, fixture::Program::Errors::Apart);
  while (!folder.has("log.txt") && !::usleep(10000)) continue;
  program.signal(SIGINT);
  ::usleep(50000);
  program.signal(SIGINT);
  program.end();
  EXPECT_FALSE(folder.has("log.txt"));
}

TEST(Endings, OfAReportLeaveForeignFilesAlone) {
  const fixture::TempFolder folder;
  folder.write("log_scales_7 (копия).log", "\r\n____ whole");
  const std::string precious = folder.write("precious", "mine");
  const std::string file = folder.file("report.tar.gz");
  fs::create_symlink(precious, file + ".part");
  const std::string command = "report " + folder.path() + " --no-doctor --output " + file;
  const ProgramRun refused = inShell(command, "");
  EXPECT_EQ(refused.exitCode, kWrongUsage);
  EXPECT_THAT(refused.err, HasSubstr("report.tar.gz.part can't be written: File exists"));
  EXPECT_EQ(folder.read("precious"), "mine");
  fs::remove(file + ".part");
  EXPECT_EQ(inShell(command, "").exitCode, kGood) << "a name that isn't ASCII";
  fs::remove(file);
  EXPECT_EQ(inShell(command, "> /dev/full").exitCode, kScaleFailed);
  EXPECT_TRUE(fs::exists(file));
  EXPECT_FALSE(fs::exists(file + ".part"));
}

}  // namespace
