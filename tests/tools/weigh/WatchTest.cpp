// `weigh watch` as a user meets it.

#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HexBytes.h"
#include "PtyLine.h"
#include "Run.h"
#include "TempFolder.h"

namespace {

using sim::SimulatedScale;
using sim::Transport;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;

TEST(Watch, EndsWellOnCtrlC) {
  SimulatedScale scale(13, Transport::Tcp);
  const ProgramRun run =
      weighUntil(SIGINT, Arguments{"watch", "--interval", "60"} + optionsOf(scale));
  EXPECT_EQ(run.exitCode, kGood) << run.err;
  EXPECT_THAT(run.out, HasSubstr("1 reading, 1 good, 0 failed"));
}

/// A plus where the driver reads digits.
TEST(Watch, TellsAWeightThatIsNotWhatItReadsWhenItHappens) {
  const std::string told = "reads 0, but that is no zero: ";
  fixture::PtyLine line;
  line.play([bytes = fixture::bytes("0A 'ST,GS,+011.120kg' 0D")](fixture::Wire& wire) {
    while (wire.send(bytes) && wire.pause(50)) continue;
  });
  const Arguments scale = {"--model", "39", "--port", line.path(), "--baud", "9600"};
  const ProgramRun watched =
      weigh(Arguments{"watch", "--json", "--count", "2", "--interval", "0"} + scale);
  ASSERT_EQ(watched.records().size(), 2U) << watched.err;
  EXPECT_EQ(watched.records()[0]["doubt"], "hidden-weight");
  EXPECT_THAT(watched.err, HasSubstr(told));
  EXPECT_EQ(watched.err.find(told), watched.err.rfind(told)) << "it is told once";
  EXPECT_THAT(weigh(Arguments{"read"} + scale).err, HasSubstr(told));
}

TEST(Watch, CountsAScaleThatComesBack) {
  // The device vanishes for half a second after its first frame, and then all is well.
  SimulatedScale scale(13, Transport::Pty, {.hangUpAfter = 1, .frames = 1});
  const auto records =
      weigh(Arguments{"watch", "--count", "12", "--interval", "0.2", "--json"} + optionsOf(scale))
          .records();
  ASSERT_EQ(records.size(), 12U);
  const auto& last = records.back();
  EXPECT_EQ(last["code"], 0);
  EXPECT_EQ(last["reconnects"], 1);
  EXPECT_GE(last["polls_failed"], 1);
  EXPECT_EQ(last["polls_good"].get<int>() + last["polls_failed"].get<int>(), 12);
}

TEST(Watch, ShowsATableInPlaceOnATerminal) {
  SimulatedScale scale(13, Transport::Pty);
  const fixture::TempFolder folder;
  folder.write("settings.xml", "<S>" + serialEntry(0, 7, 13, scale.devicePath()) +
                                   networkEntry(1, 8, 14, 1) + "</S>");
  const std::string watch = "stty cols 60 rows 12; " WEIGH_PROGRAM " watch " + folder.path() +
                            " --lang en --count 2 --interval 3";
  const std::string shown = runOf({"script", "-qefc", watch, "/dev/null"}).out;
  EXPECT_THAT(shown, AllOf(HasSubstr("SCALE"), HasSubstr("1.250 kg"), HasSubstr("no connection"),
                           HasSubstr("\x1B[K"), HasSubstr("Ctrl-C ends")));
  // Up over what was drawn, which begins with the headings again.
  EXPECT_THAT(shown, ContainsRegex("\x1B\\[[0-9]+ASCALE"));
  EXPECT_THAT(shown, HasSubstr("weights from 1.250 kg"));
  // After each of four readings, and once a second while it waits: the last minute moves on.
  std::size_t drawn = 0;
  for (std::size_t at = 0; (at = shown.find("SCALE", at)) != shown.npos; ++at) ++drawn;
  EXPECT_GE(drawn, 5U);
}

}  // namespace
