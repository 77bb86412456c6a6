// weigh explain on recorded exchanges. What is explained is held against every one of them in the
// tests of the library; here it is how the program says it.

#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DataFile.h"
#include "Run.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;
using sim::SimulatedScale;
using sim::Transport;
using testing::HasSubstr;

const char* const kRecorded = "exchanges/13-serial-load.log";

TEST(Explain, NamesCommandsAndAPortThatFails) {
  SimulatedScale scale(8, Transport::Pty);
  const std::string device = scale.devicePath();
  const struct {
    Arguments logged;
    const char* driver;
    const char* model;
    const char* told;
  } cases[] = {
      {{"tare", "--port", device}, "8", "8", "sets the tare"},
      {{"tare", "--port", device}, "8", "13", "is no command of this model"},
      {{"price", "5", "--port", device}, "0", "0", "sends a price"},
      {{"read", "--port", "/dev/no-such-scale"}, "8", "8", "1 x the port could not be opened"},
  };
  for (const auto& [logged, driver, model, told] : cases) {
    const fixture::TempFolder folder;
    weigh(logged + Arguments{"--model", driver, "--log", folder.path()});
    const fs::path log = *fs::directory_iterator(folder.path());
    EXPECT_THAT(weigh({"explain", "--model", model, log}).out, HasSubstr(told));
  }
}

TEST(Explain, TakesALogThatWasCutOrMailed) {
  const fixture::TempFolder folder;
  std::string mailed = fixture::dataFile(kRecorded);
  std::erase(mailed, '\r');
  EXPECT_EQ(weigh({"explain", folder.write("mailed.log", mailed)}).exitCode, kGood);
  const std::string cut = mailed.substr(0, mailed.rfind("00001: 53 54 4F") + 15);
  EXPECT_THAT(weigh({"explain", folder.write("cut.log", cut)}).out, HasSubstr("lacks bytes"));
}

TEST(Explain, EndsOnCtrlCWithWhatItHas) {
  const std::string content = fixture::dataFile(kRecorded);
  std::string many;
  for (int i = 0; i < 1000; ++i) many += content;
  const fixture::TempFolder folder;
  const ProgramRun run =
      weighUntil(SIGINT, {"explain", "--model", "13", folder.write("many.log", many)});
  EXPECT_EQ(run.exitCode, kScaleFailed);
  EXPECT_THAT(run.out, HasSubstr("Ended early; this is of what was read:\n"));
}

}  // namespace
