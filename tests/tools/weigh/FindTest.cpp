// The search for an unknown scale, with the program and simulated scales. The whole table of models
// at random speeds is run by hand: scripts/find-all.

#include <chrono>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HexBytes.h"
#include "Program.h"
#include "PtyLine.h"
#include "Questions.h"
#include "Run.h"

namespace {

using nlohmann::json;
using sim::Action;
using sim::SimulatedScale;
using sim::Transport;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;

struct Unknown {
  int model;
  int speed;
  /// Others that speak the same bytes.
  std::vector<int> kin;
};

class FindOnALine : public testing::TestWithParam<Unknown> {};
INSTANTIATE_TEST_SUITE_P(Find, FindOnALine,
                         testing::Values(Unknown{33, 4800, {}}, Unknown{25, 19200, {}},
                                         Unknown{13, 4800, {27}}, Unknown{35, 19200, {}}),
                         [](const auto& tested) {
                           return "Model" + std::to_string(tested.param.model);
                         });

TEST_P(FindOnALine, NamesModelAndSpeed) {
  const Unknown& unknown = GetParam();
  SimulatedScale scale(unknown.model, Transport::Pty);
  scale.setSpeed(unknown.speed);
  const ProgramRun run = weigh({"find", "--json", "--port", scale.devicePath(), "--baud",
                                "19200,4800", "--listen", "1", "--model", "8,13,16,25,27,33,35"});
  EXPECT_EQ(run.exitCode, kGood) << run.err;
  const json first = run.records().at(0);
  EXPECT_EQ(first["rank"], 1);
  EXPECT_EQ(first["model"], unknown.model);
  EXPECT_EQ(first["kin"], json(unknown.kin));
  EXPECT_EQ(first["uncertain"], !unknown.kin.empty());
  EXPECT_EQ(first["parameters"], (json{{"model", unknown.model},
                                       {"conntype", 0},
                                       {"cport", scale.devicePath()},
                                       {"cbaudrate", unknown.speed}}));
  for (const Action action : {Action::Tare, Action::Zero, Action::Price, Action::Setup}) {
    EXPECT_EQ(scale.count(action), 0);
  }
}

/// To a scale that says nothing each question goes once, and nothing else does.
TEST(Find, SendsWeightRequestsAndNothingElse) {
  SimulatedScale scale(28, Transport::Tcp, {.silent = true});
  const ProgramRun run = weigh({"find", "--host", "127.0.0.1", "--tcp-port",
                                std::to_string(scale.port()), "--listen", "0.1"});
  EXPECT_EQ(run.exitCode, kScaleFailed);
  EXPECT_THAT(run.err, HasSubstr("Nothing came at all"));
  std::vector<const ScalesModel*> all;
  for (const ScalesModel& model : scalesModels()) all.push_back(&model);
  sim::Bytes questions;
  for (const recognise::Question& question : recognise::questionsFor(all)) {
    const recognise::Bytes bytes = question.bytes();
    questions.insert(questions.end(), bytes.begin(), bytes.end());
  }
  EXPECT_EQ(scale.received(), questions);
}

TEST(Find, PassivelySendsNothingAndSaysWhatGarbageLooksLike) {
  SimulatedScale scale(13, Transport::Pty,
                       {.endless = sim::Faults::Endless::Garbage, .bytesPerSecond = 960});
  const ProgramRun run = weigh({"find", "--json", "--passive", "--port", scale.devicePath(),
                                "--baud", "9600", "--listen", "0.3"});
  EXPECT_EQ(run.exitCode, kScaleFailed);
  const json end = run.records().at(0);
  EXPECT_EQ(end["candidates"], 0);
  EXPECT_EQ(end["unexplained"].at(0)["looks_like"], "wrong_speed");
  const ProgramRun told = weigh({"find", "--passive", "--port", scale.devicePath(), "--baud",
                                 "9600", "--listen", "0.3", "--model", "13"});
  EXPECT_THAT(told.out, ContainsRegex("9600 8N1: [0-9]+ bytes, looks like a wrong speed: "));
  EXPECT_THAT(told.err, HasSubstr("Bytes came that belong to no model"));
  EXPECT_TRUE(scale.received().empty());
}

/// The stream of the indicator that model 24 asks.
TEST(Find, NamesAnotherOutputOfAKnownScaleAndTheWayOut) {
  fixture::PtyLine line;
  line.play([frame = fixture::bytes("02 '   1.250KG ' 0D 0A")](fixture::Wire& wire) {
    while (wire.send(frame) && wire.pause(50)) continue;
  });
  const Arguments find = {"find",     "--port", line.path(), "--baud",  "9600",
                          "--listen", "0.3",    "--passive", "--model", "24,34"};
  const json end = weigh(find + Arguments{"--json"}).records().back();
  ASSERT_EQ(end["notes"].size(), 1U) << end;
  EXPECT_EQ(end["notes"][0]["code"], "other-format");
  EXPECT_EQ(end["notes"][0]["remedy"], "Set STREAM to OFF, or choose model 33.");
  EXPECT_THAT(weigh(find).out, HasSubstr("Note: other-format - What comes in on "));
}

/// Good answers at a speed are the speed: no other is asked at, also where two models explain them.
TEST(Find, StopsAtTheSpeedOfGoodAnswers) {
  SimulatedScale scale(21, Transport::Pty);
  scale.setSpeed(19200);
  const auto begin = std::chrono::steady_clock::now();
  const ProgramRun run =
      weigh({"find", "--port", scale.devicePath(), "--baud", "19200,4800,2400,1200", "--listen",
             "0.1", "--model", "8,13,17,21"});
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds{10});
  EXPECT_THAT(run.out, AllOf(HasSubstr("\n1     21     19200 8N1"),
                             HasSubstr("model 17 can't be told apart from it")));
}

/// An uncertain find goes on to the questions, until somebody has had enough.
TEST(Find, EndsOnCtrlCWithWhatItHas) {
  SimulatedScale scale(33, Transport::Tcp, {.corruptEvery = 2});
  // Without exec Ctrl-C may end the shell, too, whose exit code is then what is told.
  const std::string find = "exec " WEIGH_PROGRAM " find --lang en --host 127.0.0.1 --tcp-port " +
                           std::to_string(scale.port());
  fixture::Program terminal({"script", "-qefc", find, "/dev/null"},
                            fixture::Program::Errors::Apart);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds{30};
  while (scale.received().empty() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds{10});
  }
  terminal.say("\x03");
  const std::string told = terminal.rest();
  EXPECT_THAT(told,
              AllOf(HasSubstr("listening 127.0.0.1 ... "), HasSubstr("asking 127.0.0.1 ... "),
                    HasSubstr("Ended early"), HasSubstr("Probably model 33, but uncertain:\r\n"),
                    HasSubstr("frames were refused")));
  EXPECT_EQ(terminal.end(), kGood);
}

}  // namespace
