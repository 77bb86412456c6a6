#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ModelSheet.h"
#include "Options.h"

namespace {

using testing::HasSubstr;

Options read(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "scalesim");
  return readOptions(static_cast<int>(arguments.size()), arguments.data());
}

class OptionsTest : public testing::Test {
 protected:
  void SetUp() override { useLanguage(Language::English); }
};

TEST_F(OptionsTest, TakeWhatTheScaleShows) {
  const Options options = read({"14", "--weight", "-1,5", "--price", "12.50", "--unstable",
                                "--overload", "--decimals", "2", "--tcp", "4001"});
  ASSERT_EQ(options.model, sim::findScaleModel(14));
  EXPECT_EQ(options.tcp, 4001);
  const sim::ScaleState state = options.stateOf(*options.model);
  EXPECT_DOUBLE_EQ(state.weight, -1.5);
  EXPECT_DOUBLE_EQ(state.price, 12.5);
  EXPECT_EQ(state.decimals, 2);
  EXPECT_FALSE(state.stable);
  EXPECT_TRUE(state.overload);
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

TEST_F(OptionsTest, DefaultToTheModelsUsualStateOnAPseudoTerminal) {
  const Options options = read({"12"});
  EXPECT_FALSE(options.tcp.has_value());
  EXPECT_DOUBLE_EQ(options.stateOf(*options.model).weight, 25.0);
  EXPECT_EQ(read({"13", "--tcp"}).tcp, 0);
}

TEST_F(OptionsTest, TellTheTasksApart) {
  EXPECT_EQ(read({"--help"}).task, Options::Task::Help);
  EXPECT_EQ(read({"--help", "13"}).task, Options::Task::HelpOnModel);
  EXPECT_EQ(read({"--model", "13", "-h"}).task, Options::Task::HelpOnModel);
  EXPECT_EQ(read({"--list"}).task, Options::Task::List);
  EXPECT_EQ(read({"--all", "/tmp/x"}).task, Options::Task::PlayAll);
  EXPECT_EQ(read({"--replay", "x.log", "--tcp"}).task, Options::Task::Replay);
}

struct WrongUsage {
  std::vector<const char*> arguments;
  const char* message;
};

TEST_F(OptionsTest, RefuseWhatMakesNoSense) {
  const WrongUsage cases[] = {
      {{}, "no model was named"},
      {{"20"}, "no simulator of model 20"},
      {{"abc"}, "no simulator of model abc"},
      {{"13", "--price", "5"}, "model 13 has no --price; it knows: --weight --decimals --unstable"},
      {{"7", "--unstable"}, "model 7 has no --unstable"},
      {{"7", "--overload"}, "model 7 has no --overload"},
      {{"28", "--decimals", "2"}, "model 28 has no --decimals"},
      {{"13", "--decimals", "5"}, "takes 0 to 4 decimals"},
      {{"13", "--weight", "heavy"}, "--weight wants a number"},
      {{"13", "--weight", "1000"}, "can't show 1000.000 kg; with 3 decimals it shows -99.999"},
      {{"28", "--weight", "-1"}, "with 3 decimals it shows 0.000 to 999.999"},
      {{"21", "--price", "1000"}, "prices from 0 to 999.99"},
      {{"13", "--pty", "--tcp"}, "exclude each other"},
      {{"13", "--tcp", "--link", "x"}, "--link goes with"},
      {{"13", "--tcp", "--speed", "9600"}, "--speed goes with"},
      {{"13", "--speed", "300"}, "--speed"},
      {{"13", "--replay", "x.log"}, "--replay takes no model"},
      {{"--replay", "x.log", "--silent"}, "--replay takes no model"},
      {{"--replay", "x.log", "--pty", "--tcp"}, "exclude each other"},
      {{"13", "--tcp", "65536"}, "--tcp"},
      {{"13", "--corrupt", "0"}, "--corrupt"},
      {{"13", "--cut", "-1"}, "--cut"},
      {{"13", "--bogus"}, "unknown argument: --bogus"},
      {{"13", "--all", "x"}, "--all takes no model"},
      {{"13", "--lang", "xx"}, "--lang xx"},
  };
  for (const WrongUsage& wrong : cases) {
    try {
      read(wrong.arguments);
      ADD_FAILURE() << "taken, where was wanted: " << wrong.message;
    } catch (const UsageError& error) {
      EXPECT_THAT(error.what(), HasSubstr(wrong.message));
    }
  }
}

TEST_F(OptionsTest, HelpOnAModelTellsLineAndOptions) {
  const std::string sheet = modelSheet(*sim::findScaleModel(17));
  for (const char* part : {"17: Camry", "8E2", "even parity", "00 00 03 00 00 00 00 00",
                           "--weight --price", "reads 1.250 kg as 1.25"}) {
    EXPECT_THAT(sheet, HasSubstr(part));
  }
  EXPECT_THAT(modelSheet(*sim::findScaleModel(23)), HasSubstr("no: the component asks for more"));
}

TEST_F(OptionsTest, SpeakTheLanguageThatIsAskedFor) {
  read({"--lang", "ru", "--help"});
  EXPECT_THAT(helpText(), HasSubstr("Номер модели"));
  EXPECT_THAT(modelSheet(*sim::findScaleModel(13)), HasSubstr("отвечают на 05 11"));
  read({"--lang=en", "--help"});
  EXPECT_THAT(helpText(), HasSubstr("Model number"));
}

}  // namespace
