// weigh explain on recorded exchanges. What is explained is held against every one of them in the
// tests of the library; here it is how the program says it.

#include <algorithm>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Run.h"
#include "TempFolder.h"

namespace {

using nlohmann::json;
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
             "1 polls: 1 good, 0 failed"}},
           {"13-serial-silent",
            kScaleFailed,
            {"by its request; no good frame came", "no answer came within 500 ms",
             "1 polls: 0 good, 1 failed", "1 x no answer came"}},
           {"16-serial-cut",
            kScaleFailed,
            {"the frame doesn't end in 03", "1 x the answer broke off"}},
           {"18-serial-damaged", kScaleFailed, {"no model's driver"}},
           {"14-tcp-price", kGood, {"price 1250", "cost 1563"}},
           {"13-tcp-overload", kScaleFailed, {"the scale reports error 7"}},
       }) {
    const ProgramRun run = weigh({"explain", recorded(log)});
    EXPECT_EQ(run.exitCode, exitCode) << log;
    for (const char* word : words) EXPECT_THAT(run.out + run.err, HasSubstr(word)) << log;
  }
}

TEST(Explain, WritesRecordsForPrograms) {
  const ProgramRun run =
      weigh({"explain", "--json", "--model", "18", recorded("18-serial-damaged")});
  const std::vector<json> records = run.records();
  const json& summary = records.back();
  EXPECT_EQ(summary["model"], 18);
  EXPECT_EQ(summary["good"], 0);
  EXPECT_EQ(summary["records"], records.size() - 1);
  const auto refused = std::ranges::find_if(records, [](const json& record) {
    return record.contains("verdict") && !record["verdict"].is_null();
  });
  ASSERT_NE(refused, records.end());
  EXPECT_EQ((*refused)["verdict"]["good"], false);
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
  EXPECT_EQ(weigh({"find", "--port", "/dev/no-such-scale"}).exitCode, kScaleFailed);
}

}  // namespace
