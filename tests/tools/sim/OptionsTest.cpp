#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DataFile.h"
#include "ModelSheet.h"
#include "Options.h"

namespace {

using testing::HasSubstr;

Options read(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "scalesim");
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  Options options;
  EXPECT_FALSE(readOptions(static_cast<int>(argv.size()), argv.data(), options));
  return options;
}

class OptionsTest : public testing::Test {
 protected:
  void SetUp() override { useLanguage(Language::English); }
};

TEST_F(OptionsTest, TakeWhatTheScaleShows) {
  const Options options = read({"14", "--weight", "-1,5", "--price", "12.50", "--unstable",
                                "--overload", "--decimals", "2", "--tcp-port", "4001"});
  ASSERT_EQ(options.model, sim::findScaleModel(14));
  EXPECT_EQ(options.tcp, 4001);
  const sim::ScaleState state = options.stateOf(*options.model);
  EXPECT_DOUBLE_EQ(state.weight, -1.5);
  EXPECT_DOUBLE_EQ(state.price, 12.5);
  EXPECT_EQ(state.decimals, 2);
  EXPECT_FALSE(state.stable);
  EXPECT_TRUE(state.overload);
  const Options usual = read({"-m", "30", "--variant", "numbers"});
  ASSERT_EQ(usual.model, sim::findScaleModel(30, "numbers"));
  EXPECT_DOUBLE_EQ(usual.stateOf(*usual.model).weight, usual.model->usualState().weight);
}

TEST_F(OptionsTest, TakeTheFaults) {
  const sim::Faults faults =
      read({"-m", "13", "--silent", "--garbage", "3", "--corrupt", "2", "--cut", "5", "--dribble",
            "40", "--hang-up-after", "7", "--spoil-only", "1"})
          .faults;
  EXPECT_TRUE(faults.silent);
  EXPECT_EQ(faults.garbage, 3U);
  EXPECT_EQ(faults.corruptEvery, 2);
  EXPECT_EQ(faults.cut, 5U);
  EXPECT_EQ(faults.dribble, std::chrono::milliseconds{40});
  EXPECT_EQ(faults.hangUpAfter, 7);
  EXPECT_EQ(faults.frames, 1);
}

TEST_F(OptionsTest, RefuseWhatMakesNoSense) {
  for (const fixture::DataRow& row : fixture::dataRows("scalesim_usage.txt")) {
    std::istringstream words(row.left);
    std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
    std::ranges::replace(arguments, std::string("''"), std::string());
    try {
      read(arguments);
      ADD_FAILURE() << "taken: " << row.left;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.exitCode, kWrongUsage);
      EXPECT_THAT(failure.what(), HasSubstr(row.right));
    }
  }
}

TEST_F(OptionsTest, HelpOnAModelTellsLineAndOptions) {
  const struct {
    int model;
    std::vector<const char*> parts;
  } sheets[] = {
      {17,
       {"17: Camry", "8E2", "even parity", "answers to 00 00 03 00 00 00 00 00", "--weight --price",
        "reads 1.250 kg as 1.25", "(kilograms)"}},
      {8, {"zero: 5A"}},
      {10, {"no commands", "(the scale's raw count)", "always reports"}},
      {12, {"no parity", "(grams)"}},
      {18, {"frame after frame without being asked"}},
      {21, {"tare: 00 00 01; price: 00 00 02 and 6 bytes"}},
      {23, {"no: the component asks for more"}},
      {24, {"setup: 53 54 52"}},
  };
  for (const auto& [model, parts] : sheets) {
    const std::string sheet = modelSheet(*sim::findScaleModel(model));
    for (const char* part : parts) EXPECT_THAT(sheet, HasSubstr(part));
  }
}

TEST_F(OptionsTest, SpeakTheLanguageThatIsAskedFor) {
  useLanguage(Language::Ukrainian);
  const std::string sheet = modelSheet(*sim::findScaleModel(30, "numbers"));
  EXPECT_THAT(sheet, HasSubstr("відповідають на 00 00 03"));
  EXPECT_THAT(sheet, HasSubstr("numbers: передають цифри числами"));
  EXPECT_THAT(modelList(), HasSubstr("decimals-digit"));
}

}  // namespace
