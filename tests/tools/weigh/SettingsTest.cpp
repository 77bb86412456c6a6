// A component folder with its settings file.

#include <filesystem>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Run.h"
#include "TempFolder.h"

namespace {

using nlohmann::json;
using sim::SimulatedScale;
using sim::Transport;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(Settings, ReadsEveryScaleOfTheFolder) {
  SimulatedScale serial(13, Transport::Pty);
  SimulatedScale network(17, Transport::Tcp);
  serial.setWeight(1.5);
  network.setWeight(2.25);
  const fixture::TempFolder folder;
  // The second of two scales with one number is the one that stays; 99 is the last that is read.
  folder.write("settings.xml", "<S>" + serialEntry(0, 7, 13, "/dev/no-such-scale") +
                                   serialEntry(3, 7, 13, serial.devicePath()) +
                                   networkEntry(99, 8, 17, network.port(), "2") +
                                   serialEntry(4, 9, 5, "/dev/ttyS0") +
                                   networkEntry(100, 10, 17, network.port()) + "</S>");
  const ProgramRun run = weigh({"settings", folder.path(), "--json"});
  EXPECT_EQ(run.exitCode, kScaleFailed);
  std::map<std::string, json> records;
  for (const json& record : run.records()) records[record["id"]] = record;
  ASSERT_EQ(records.size(), 3U);
  EXPECT_EQ(records["7"]["weight"], 1.5);
  EXPECT_EQ(records["7"]["transport"], "serial");
  EXPECT_EQ(records["8"]["weight"], 4.5);
  EXPECT_EQ(records["8"]["unit"], "kg");
  EXPECT_EQ(records["8"]["transport"], "tcp");
  EXPECT_EQ(records["9"]["code"], 8) << "a model without driver isn't registered";
  EXPECT_THAT(run.err, HasSubstr("scale error 8: Ошибка_8: DeviceID не найден. (scales 9)"));
}

TEST(Settings, ShowsATableAndLeavesLogsOnDemand) {
  SimulatedScale scale(17, Transport::Pty);
  scale.change([](sim::ScaleState& state) {
    state.weight = 2.0;
    state.price = 12.5;
  });
  const fixture::TempFolder folder;
  folder.write("settings.xml", "<S>" + serialEntry(0, 41, 17, scale.devicePath()) + "</S>");
  const ProgramRun run = weigh({"settings", folder.path(), "--log"});
  EXPECT_EQ(run.exitCode, kGood) << run.err;
  EXPECT_THAT(run.out, AllOf(HasSubstr("ID  MODEL  LINE"),
                             HasSubstr("2.000 kg   price 12.50   cost 25.00   stable")));
  EXPECT_TRUE(folder.has("log_scales_41.log"));
  EXPECT_FALSE(folder.has("log.txt"));
  EXPECT_EQ(weigh({"settings", folder.path(), "--csv"}).out.substr(0, 28),
            "id,model,transport,port,rate");
}

TEST(Settings, TellsWhatIsWrongWithTheFolder) {
  const fixture::TempFolder folder;
  const Arguments command = {"settings", folder.path()};
  ProgramRun run = weigh(command);
  EXPECT_EQ(run.exitCode, kWrongUsage);
  EXPECT_THAT(run.err, AllOf(HasSubstr("there is no "), HasSubstr("settings.xml")));

  std::filesystem::create_directory(folder.file("settings.xml"));
  run = weigh(command);
  EXPECT_EQ(run.exitCode, kWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("settings.xml can't be read"));
  std::filesystem::remove(folder.file("settings.xml"));

  // The component reads whatever it can from a document, so a text that is none names no scale.
  for (const char* text : {"no document at all", "<S><SCALE0 fNum=\"1\"/></S>"}) {
    folder.write("settings.xml", text);
    run = weigh(command);
    EXPECT_EQ(run.exitCode, kWrongUsage);
    EXPECT_THAT(run.err, AllOf(HasSubstr("names no scale"), HasSubstr("SCALES0")));
  }
}

TEST(Log, LeavesAMarkerThatWasThereAndSaysThatScalesAreLoaded) {
  const fixture::TempFolder folder;
  folder.write("log.txt", "");
  folder.write("settings.xml", "<S/>");
  const ProgramRun run = weigh({"test", "--log", folder.path()});
  EXPECT_TRUE(folder.has("log.txt"));
  EXPECT_THAT(run.err, AllOf(HasSubstr("settings.xml is there, so its scales are loaded too"),
                             HasSubstr("exchange log: " + folder.path() + "log_scales_")));
}

}  // namespace
