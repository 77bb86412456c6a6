// weigh explain on recorded exchanges. What is explained is held against every one of them in the
// tests of the library; here it is how the program says it.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Run.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using sim::SimulatedScale;
using sim::Transport;
using testing::HasSubstr;

std::string recorded(const std::string& name) {
  return std::string(EXCHANGES) + "/" + name + ".log";
}

TEST(Explain, SaysInWordsWhatHappened) {
  struct Said {
    const char* log;
    int exitCode;
    std::vector<const char*> words;
  };
  for (const auto& [log, exitCode, words] : std::vector<Said>{
           {"13-serial-damaged-once",
            kGood,
            {"Model 13:", "by its frames; models 27 explain the log as well",
             "asks for the weight, first part", "poll 1, attempt 2",
             "refused: byte 16 is FB, the frame ends in 04", "weight 1.25", "(bytes 5-11)",
             "1 poll: 1 good, 0 failed"}},
           {"13-serial-silent",
            kScaleFailed,
            {"by its request; no good frame came", "no answer came within 500 ms",
             "1 poll: 0 good, 1 failed", "1 x no answer came"}},
           {"16-serial-cut",
            kScaleFailed,
            {"the frame doesn't end in 03", "1 x the answer broke off"}},
           {"41-serial-garbage-shifts",
            kScaleFailed,
            {"byte 1 is FF, the protocol wants 01", "thrown away before reading"}},
           {"07-serial-garbage", kGood, {"stepped over, begins no frame"}},
           {"18-serial-damaged", kScaleFailed, {"no model's driver"}},
           {"14-tcp-price", kGood, {"price 1250", "cost 1563"}},
           {"13-tcp-overload", kScaleFailed, {"the scale reports error 7"}},
       }) {
    const ProgramRun run = weigh({"explain", recorded(log)});
    EXPECT_EQ(run.exitCode, exitCode) << log;
    for (const char* word : words) EXPECT_THAT(run.out + run.err, HasSubstr(word)) << log;
  }
}

/// The verdict on the first frame of a log, and the summary behind all.
std::pair<json, json> recordsOf(const std::string& log, const std::string& model) {
  const std::vector<json> records =
      weigh({"explain", "--json", "--model", model, recorded(log)}).records();
  EXPECT_EQ(records.back()["records"], records.size() - 1) << log;
  const auto row = std::ranges::find_if(records, [](const json& record) {
    return record.contains("verdict") && !record["verdict"].is_null();
  });
  return {row == records.end() ? json() : row->at("verdict"), records.back()};
}

TEST(Explain, WritesRecordsForPrograms) {
  const auto [verdict, summary] = recordsOf("14-tcp-price", "14");
  EXPECT_EQ(verdict["good"], true);
  EXPECT_EQ(verdict["weight"], 1250);
  EXPECT_EQ(verdict["price"], 1250);
  EXPECT_EQ(verdict["cost"], 1563);
  EXPECT_EQ(verdict["stable"], true);
  EXPECT_EQ(summary["model"], 14);
  EXPECT_EQ(summary["good"], 1);
  for (const auto& [log, reason] : std::vector<std::pair<std::string, const char*>>{
           {"13-serial-silent", "silence"},
           {"38-serial-cut", "too_short"},
           {"16-serial-cut", "no_end"},
           {"18-serial-damaged", "checksum"},
           {"41-serial-garbage-shifts", "wrong_bytes"},
       }) {
    const auto [refused, end] = recordsOf(log, log.substr(0, 2));
    EXPECT_EQ(refused["good"], false) << log;
    EXPECT_EQ(refused["reason"], reason);
    EXPECT_EQ(end["good"], 0) << log;
  }
}

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
  std::ifstream stream(recorded("13-serial-load"), std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  std::string mailed = content.str();
  std::erase(mailed, '\r');
  EXPECT_EQ(weigh({"explain", folder.write("mailed.log", mailed)}).exitCode, kGood);
  const std::string cut = mailed.substr(0, mailed.rfind("00001: 53 54 4F") + 15);
  EXPECT_THAT(weigh({"explain", folder.write("cut.log", cut)}).out, HasSubstr("lacks bytes"));
}

TEST(Explain, TurnsDownWhatIsNoLog) {
  const fixture::TempFolder folder;
  struct Wrong {
    Arguments arguments;
    const char* told;
  };
  for (const auto& [arguments, told] : std::vector<Wrong>{
           {{"explain", folder.path()}, "can't be read"},
           {{"explain", folder.write("empty.log", "")}, "has no record of an exchange"},
           {{"explain", recorded("13-serial-load"), "--model", "20"}, "model 20 has no protocol"},
       }) {
    const ProgramRun run = weigh(arguments);
    EXPECT_EQ(run.exitCode, kWrongUsage) << testing::PrintToString(arguments);
    EXPECT_THAT(run.err, HasSubstr(told));
  }
}

}  // namespace
