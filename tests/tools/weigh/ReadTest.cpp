// Readings: of the emulator, and of scales on both kinds of line.

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
using testing::StartsWith;

constexpr double kUsualWeight = 1.25;

class ReadOverBoth : public testing::TestWithParam<Transport> {
 protected:
  ReadOverBoth() { scale_.setWeight(kUsualWeight); }

  SimulatedScale scale_{13, GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Transports, ReadOverBoth, testing::Values(Transport::Pty, Transport::Tcp),
                         [](const auto& transport) {
                           return transport.param == Transport::Pty ? "Pty" : "Tcp";
                         });

TEST_P(ReadOverBoth, GivesTheWeightAsTextJsonAndCsv) {
  const Arguments options = optionsOf(scale_);
  const ProgramRun text = weigh(Arguments{"read", "--price"} + options);
  EXPECT_EQ(text.exitCode, kGood) << text.err;
  EXPECT_EQ(text.out, "1.250 kg   stable\n");

  const ProgramRun csv = weigh(Arguments{"read", "--csv"} + options);
  EXPECT_THAT(csv.out, AllOf(StartsWith("reading,time,weight,unit,code,error,poll_ms\n1,"),
                             HasSubstr(",1.25,kg,0,,")));

  scale_.change([](sim::ScaleState& state) { state.stable = false; });
  const auto records = weigh(Arguments{"read", "--price", "--json"} + options).records();
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0]["weight"], kUsualWeight);
  EXPECT_EQ(records[0]["unit"], "kg");
  EXPECT_EQ(records[0]["stable"], false);
  EXPECT_EQ(records[0]["code"], 0);
  EXPECT_EQ(records[0]["error"], json());
  EXPECT_GT(records[0]["poll_ms"], 0);
}

TEST_P(ReadOverBoth, TellsOfSilenceWithCodeTextAndRemedy) {
  scale_.setFaults({.silent = true});
  const Arguments options = Arguments{"read"} + optionsOf(scale_);
  const ProgramRun text = weigh(options);
  EXPECT_EQ(text.exitCode, kScaleFailed);
  EXPECT_EQ(text.out, "");
  EXPECT_THAT(text.err, AllOf(HasSubstr("scale error 3: Ошибка_3: Нет ответа от весов."),
                              HasSubstr("model 13")));
  const ProgramRun data = weigh(options + Arguments{"--json"});
  EXPECT_EQ(data.exitCode, kScaleFailed);
  ASSERT_EQ(data.records().size(), 1U);
  EXPECT_EQ(data.records()[0]["weight"], json());
  EXPECT_EQ(data.records()[0]["code"], 3);
}

TEST_P(ReadOverBoth, LogsTheExchangeOfOneRun) {
  const fixture::TempFolder folder;
  const ProgramRun run = weigh(Arguments{"read", "--log", folder.path()} + optionsOf(scale_));
  EXPECT_EQ(run.exitCode, kGood) << run.err;
  EXPECT_FALSE(folder.has("log.txt")) << "the marker would keep the log on";
  const std::string told = "exchange log: " + folder.path();
  ASSERT_THAT(run.err, StartsWith(told + "log_scales_"));
  std::string name = run.err.substr(told.size());
  name.resize(name.find('\n'));
  EXPECT_THAT(folder.read(name),
              AllOf(HasSubstr("OUT >>>>>"), HasSubstr("IN <<<<<<"), HasSubstr("STOP PROGRAM")));
}

TEST_P(ReadOverBoth, TaresAndTests) {
  const Arguments options = optionsOf(scale_);
  const ProgramRun test = weigh(Arguments{"test"} + options);
  EXPECT_EQ(test.exitCode, kGood) << test.err;
  EXPECT_EQ(test.out, "Вес:  1.250; \n");

  scale_.setFaults({.silent = true});
  const ProgramRun silent = weigh(Arguments{"test"} + options);
  EXPECT_EQ(silent.exitCode, kScaleFailed);
  EXPECT_THAT(silent.err, HasSubstr("scale error 3: Ошибка_3"));
}

TEST(Read, CountsCorrectsAndKeepsTheConnection) {
  SimulatedScale scale(13, Transport::Tcp);
  scale.setWeight(2.0);
  const ProgramRun run = weigh(
      Arguments{"read", "--count", "3", "--interval", "0", "--coeff", "0,5", "--leave", "--json"} +
      optionsOf(scale));
  EXPECT_EQ(run.exitCode, kGood) << run.err;
  const auto records = run.records();
  ASSERT_EQ(records.size(), 3U);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(records[static_cast<std::size_t>(i)]["reading"], i + 1);
    EXPECT_EQ(records[static_cast<std::size_t>(i)]["weight"], 1.0);
  }
}

TEST(Read, EmulatorAnswersWithoutHardware) {
  const ProgramRun run = weigh({"read", "--price", "--json", "--count", "2", "--interval", "0"});
  EXPECT_THAT(run.err, StartsWith("weigh: the emulator makes these weights up; a scale is chosen "
                                  "with --model\n"));
  const auto records = run.records();
  ASSERT_EQ(records.size(), 2U);
  bool failed = false;
  for (const json& record : records) {
    EXPECT_EQ(record["unit"], "kg");
    EXPECT_EQ(record["money_unit"], "whole");
    // One reading in ten fails on purpose.
    if (record["code"] == 3) {
      failed = true;
      EXPECT_EQ(record["weight"], json());
      continue;
    }
    EXPECT_EQ(record["code"], 0);
    EXPECT_GE(record["weight"], 0.08);
    EXPECT_LT(record["weight"], 105.0);
    EXPECT_TRUE(record["stable"].is_boolean());
  }
  EXPECT_EQ(run.exitCode, failed ? kScaleFailed : kGood);
}

TEST(Read, ShowsMoneyAsTheScaleCountsIt) {
  const struct {
    int model;
    const char* text;
  } cases[] = {
      {0, "2000 g   price 1250/100   cost 2500/100   stable\n"},
      {14, "2000 (as shown)   price 1250   cost 2500   stable\n"},
      {17, "2.000 kg   price 12.50   cost 25.00   stable\n"},
  };
  for (const auto& [model, text] : cases) {
    SimulatedScale scale(model, Transport::Pty, {.weight = 2.0, .price = 12.5});
    EXPECT_EQ(weigh(Arguments{"read", "--price"} + optionsOf(scale)).out, text);
  }
}

TEST(Read, NamesCauseAndRemedyOfAnError) {
  SimulatedScale scale(13, Transport::Tcp, {.overload = true});
  const struct {
    Arguments options;
    const char* error;
    const char* remedy;
  } cases[] = {
      {{"--model", "13", "--port", "/dev/no-such-scale"},
       "scale error 1: ",
       "There is no /dev/no-such-scale"},
      {{"--model", "13", "--port", "/dev/null"}, "scale error 1: ", "Is /dev/null in use"},
      {optionsOf(scale), "scale error 7: ", "Take the load off the scale"},
  };
  for (const auto& [options, error, remedy] : cases) {
    const ProgramRun run = weigh(Arguments{"read", "--count", "2", "--interval", "0"} + options);
    EXPECT_EQ(run.exitCode, kScaleFailed);
    EXPECT_THAT(run.err, AllOf(HasSubstr(error), HasSubstr(remedy)));
    EXPECT_EQ(run.err.find(remedy), run.err.rfind(remedy)) << "what to do is said once";
  }
}

TEST(Commands, ReachTheScaleOrTellThatItHasNone) {
  SimulatedScale scale(35, Transport::Pty);
  const ProgramRun tare = weigh(Arguments{"tare"} + optionsOf(scale));
  EXPECT_EQ(tare.exitCode, kGood) << tare.err;
  EXPECT_EQ(scale.count(sim::Action::Tare), 1);

  const ProgramRun price = weigh({"price", "1250"});
  EXPECT_EQ(price.exitCode, kGood) << price.err;
  EXPECT_EQ(price.out, "price 1250 sent\n");

  SimulatedScale plain(13, Transport::Pty);
  const ProgramRun refused = weigh(Arguments{"price", "1250", "--json"} + optionsOf(plain));
  EXPECT_EQ(refused.exitCode, kScaleFailed);
  EXPECT_THAT(refused.err, HasSubstr("scale error 5: Ошибка_5"));
  ASSERT_EQ(refused.records().size(), 1U);
  EXPECT_EQ(refused.records()[0]["code"], 5);
}

}  // namespace
