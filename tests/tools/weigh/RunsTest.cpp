// weigh as a user meets it: command lines with what comes of them, from tests/data.

#include <algorithm>
#include <cctype>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DataFile.h"
#include "Run.h"
#include "TempFolder.h"

namespace {

using nlohmann::json;
using sim::SimulatedScale;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// The scale of a heading such as "13 pty weight 1.25"; none for "nothing".
std::unique_ptr<SimulatedScale> scaleOf(const std::string& heading) {
  std::istringstream words(heading);
  int model = 0;
  std::string transport;
  if (!(words >> model >> transport)) return nullptr;
  sim::ScaleState state;
  sim::Faults faults;
  for (std::string word; words >> word;) {
    if (word == "weight") words >> state.weight;
    if (word == "price") words >> state.price;
    state.overload |= word == "overload";
    state.stable &= word != "unstable";
    faults.silent |= word == "silent";
  }
  return std::make_unique<SimulatedScale>(
      model, transport == "tcp" ? sim::Transport::Tcp : sim::Transport::Pty, state, faults);
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
    text.replace(at, from.size(), to);
}

/// The rows of the table by their headings.
std::vector<std::vector<fixture::DataRow>> groups() {
  std::vector<std::vector<fixture::DataRow>> groups;
  for (fixture::DataRow& row : fixture::dataRows("weigh_runs.txt")) {
    if (groups.empty() || groups.back().front().heading != row.heading) groups.emplace_back();
    groups.back().push_back(std::move(row));
  }
  return groups;
}

class Table : public testing::TestWithParam<std::vector<fixture::DataRow>> {};
INSTANTIATE_TEST_SUITE_P(Runs, Table, testing::ValuesIn(groups()), [](const auto& group) {
  std::string name = group.param.front().heading;
  std::erase_if(name, [](unsigned char c) { return std::isalnum(c) == 0; });
  return name + "_" + std::to_string(group.index);
});

TEST_P(Table, SaysWhatComesOfEachRun) {
  const std::unique_ptr<SimulatedScale> scale = scaleOf(GetParam().front().heading);
  const fixture::TempFolder folder;
  if (scale && scale->port() == 0) {
    folder.write("settings.xml", "<S>" +
                                     serialEntry(0, 7, scale->model().number, scale->devicePath()) +
                                     networkEntry(1, 8, 14, 1) + "</S>");
  }
  for (const fixture::DataRow& row : GetParam()) {
    SCOPED_TRACE(row.heading + ": " + row.left);
    std::string line = row.left;
    replaceAll(line, "DIR", folder.path());
    replaceAll(line, "LOGS", EXCHANGES);
    if (scale) replaceAll(line, "PORT", scale->devicePath());
    Arguments words = wordsOf(line);
    if (const auto at = std::ranges::find(words, "@"); at != words.end()) {
      words.erase(at);
      words = words + optionsOf(*scale);
    }
    const ProgramRun run = weigh(words);
    const std::string said = run.out + run.err;
    std::string rest = row.right + " | ";
    EXPECT_EQ(run.exitCode, std::stoi(rest)) << said;
    replaceAll(rest, "\\n", "\n");
    rest.erase(0, rest.find(" | ") + 3);
    for (std::size_t end = 0; (end = rest.find(" | ")) != rest.npos; rest.erase(0, end + 3)) {
      const std::string part = rest.substr(0, end);
      if (part.starts_with("! ")) {
        EXPECT_THAT(said, Not(HasSubstr(part.substr(2))));
      } else {
        EXPECT_THAT(said, HasSubstr(part));
      }
    }
  }
}

TEST(Runs, EndWithCodeTwoAndARemedyForWrongWords) {
  for (const fixture::DataRow& row : fixture::dataRows("weigh_usage.txt")) {
    SCOPED_TRACE(row.left);
    const ProgramRun run = weigh(wordsOf(row.left));
    EXPECT_EQ(run.exitCode, kWrongUsage);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(row.right));
    if (row.heading == "words") {
      EXPECT_THAT(run.err, HasSubstr("--help` shows how it is used"));
    }
  }
}

TEST(Runs, OfTheEmulatorFailOneTimeInTen) {
  const ProgramRun run = weigh({"read", "--price", "--json", "--count", "2", "--interval", "0"});
  EXPECT_THAT(run.err, HasSubstr("the emulator makes these weights up"));
  ASSERT_EQ(run.records().size(), 2U);
  bool failed = false;
  for (const json& record : run.records()) failed |= record["code"] == 3;
  EXPECT_EQ(run.exitCode, failed ? kScaleFailed : kGood);
}

/// The second of two scales with one number is the one that stays; 99 is the last that is read, and
/// a model without driver isn't registered.
TEST(Runs, OfSettingsSeeTheScalesThatTheComponentSees) {
  SimulatedScale scale(13, sim::Transport::Pty);
  scale.setWeight(1.5);
  const fixture::TempFolder folder;
  const Arguments command = {"settings", folder.path(), "--json"};
  folder.write("settings.xml", "<S>" + serialEntry(0, 7, 13, "/dev/no-such-scale") +
                                   serialEntry(3, 7, 13, scale.devicePath()) +
                                   serialEntry(99, 8, 13, scale.devicePath(), "2") +
                                   serialEntry(4, 9, 5, "/dev/ttyS0") +
                                   serialEntry(100, 10, 13, scale.devicePath()) + "</S>");
  const ProgramRun run = weigh(command);
  const auto records = run.records();
  ASSERT_EQ(records.size(), 3U);
  EXPECT_EQ(records[0]["weight"], 1.5);
  EXPECT_EQ(records[1]["code"], 8);
  EXPECT_EQ(records[2]["weight"], 3.0);
  EXPECT_THAT(run.err, HasSubstr("scale error 8: Ошибка_8: DeviceID не найден. (scales 9)"));
  // The component reads whatever it can from a document, so a text that is none names no scale.
  folder.write("settings.xml", "no document at all");
  EXPECT_THAT(weigh(command).err, AllOf(HasSubstr("names no scale"), HasSubstr("SCALES0")));
}

}  // namespace
