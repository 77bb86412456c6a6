// What `weigh watch` gathers about a scale: times, bars of the last minute, and the adapter that
// comes back under another name.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeMachine.h"
#include "Messages.h"
#include "Text.h"
#include "WatchedScale.h"

namespace {

using fixture::FakeMachine;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using weigh::Milliseconds;
using weigh::PollStatistics;
using weigh::WatchedScale;
using weigh::Weighing;
using weigh::WeightHistory;

Weighing good(double weight, double poll_ms = 10) {
  return {.error = {0, "OK"},
          .weight = weight,
          .details = Weighing::Details{.stable = true},
          .poll = Milliseconds(poll_ms)};
}

Weighing failed(std::uint32_t code, const std::string& text = "no answer") {
  return {.error = {code, text}, .details = Weighing::Details{}};
}

TEST(PollStatistics, TellTimesByTheirRank) {
  PollStatistics statistics;
  EXPECT_EQ(statistics.median().count(), 0);
  for (int i = 1; i <= 200; ++i) statistics.add(good(1.0, i));
  EXPECT_EQ(statistics.median().count(), 100);
  EXPECT_EQ(statistics.percentile99().count(), 198);
  EXPECT_EQ(statistics.longest().count(), 200);
  // Long runs forget their beginning, but for the longest.
  for (int i = 0; i < 10'000; ++i) statistics.add(good(1.0, 5));
  EXPECT_EQ(statistics.percentile99().count(), 5);
  EXPECT_EQ(statistics.longest().count(), 200);
}

TEST(PollStatistics, CountReturnsAfterALostConnection) {
  PollStatistics statistics;
  for (const std::uint32_t code : {1U, 1U, 3U, 0U, 7U, 0U, 3U, 0U}) {
    statistics.add(code == 0 ? good(2.0) : failed(code));
  }
  EXPECT_EQ(statistics.reconnects(), 2);
  EXPECT_EQ(statistics.good(), 3);
  EXPECT_EQ(statistics.failed(), 5);
}

TEST(WeightHistory, DrawsTheLastMinuteFromZeroUp) {
  const WeightHistory::Time start{std::chrono::seconds{990}};
  const auto at = [&](int second) { return start + std::chrono::seconds{second}; };
  WeightHistory history;
  EXPECT_EQ(history.bars(start, 4), "    ");
  history.add(at(0), 4.0);
  history.add(at(20), std::nullopt);
  history.add(at(31), std::nullopt);
  history.add(at(32), 8.0);
  history.add(at(33), std::nullopt);
  history.add(at(59), 0.0);
  EXPECT_EQ(history.bars(at(59), 4), "▅x█▁") << "a weight tells more than a failure beside it";
  EXPECT_EQ(history.bars(at(80), 4), "█▁  ");
  history.add(at(81), -8.0);
  EXPECT_EQ(history.bars(at(81), 4), "█▅ ▁") << "below zero the range begins there";
}

class ReplacedAdapter : public testing::Test {
 protected:
  ReplacedAdapter() { useLanguage(Language::English); }

  WatchedScale scaleAt(const std::string& device) {
    weigh::Connection connection;
    connection.model = 13;
    connection.device = device;
    return {"id", {.id = "7", .connection = connection}, machine_.roots()};
  }

  FakeMachine machine_;
  FakeMachine::Adapter adapter_{.serialNumber = "A50285BI"};
};

TEST_F(ReplacedAdapter, IsToldOnceWithItsNewName) {
  machine_.plugIn("ttyUSB0", "1-1", adapter_);
  WatchedScale scale = scaleAt(machine_.device("ttyUSB0"));
  scale.add(good(1.0));
  scale.add(failed(3));
  EXPECT_EQ(scale.takeNotice(), "") << "a silent scale on an adapter in its place";
  machine_.unplug("ttyUSB0", "1-1");
  scale.add(failed(1));
  EXPECT_EQ(scale.takeNotice(), "") << "gone, but nowhere else";

  machine_.plugIn("ttyUSB3", "2-4", adapter_);
  scale.add(failed(1));
  const std::string notice = scale.takeNotice();
  EXPECT_THAT(notice, AllOf(HasSubstr("adapter of 7 " + machine_.device("ttyUSB0")),
                            HasSubstr("back as " + machine_.device("ttyUSB3")),
                            HasSubstr("/serial/by-id/")));
  scale.add(failed(1));
  EXPECT_EQ(scale.takeNotice(), "");
  EXPECT_EQ(scale.record()["moved_to"], machine_.device("ttyUSB3"));
  EXPECT_THAT(weigh::csvRow(scale.record()), EndsWith("," + machine_.device("ttyUSB3")));
  EXPECT_THAT(scale.remarks(), ElementsAre(HasSubstr("error 1"), notice));

  machine_.unplug("ttyUSB3", "2-4");
  machine_.plugIn("ttyUSB0", "1-1", adapter_);
  scale.add(good(1.0));
  EXPECT_THAT(scale.remarks(), ElementsAre(HasSubstr("error 1")));
  EXPECT_EQ(scale.statistics().reconnects(), 1);
}

TEST_F(ReplacedAdapter, IsKnownAlsoIfItCameAfterTheStart) {
  WatchedScale scale = scaleAt(machine_.device("ttyUSB0"));
  scale.add(failed(1));
  machine_.plugIn("ttyUSB0", "1-1", adapter_);
  scale.add(good(1.0));
  machine_.unplug("ttyUSB0", "1-1");
  machine_.plugIn("ttyUSB1", "1-1", adapter_);
  scale.add(failed(1));
  EXPECT_THAT(scale.takeNotice(), HasSubstr(machine_.device("ttyUSB1")));
}

TEST(WatchLines, KeepToTheirRoom) {
  useLanguage(Language::English);
  std::vector<WatchedScale> scales;
  for (const char* name : {"7", "8", "9"}) {
    scales.emplace_back(name, weigh::NamedScale{.id = name, .connection = {.network = true}});
  }
  scales[1].add(failed(3, "a text that is longer than the screen"));
  const auto lines = weigh::watchLines(scales, "0:00:01", {.columns = 44, .rows = 24});
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_THAT(lines[0], StartsWith("SCALE"));
  EXPECT_THAT(lines[2], HasSubstr("no answer"));
  EXPECT_THAT(lines[4], StartsWith("8 192.168.0.200:20108: error 3 at "));
  EXPECT_THAT(lines[5], StartsWith("   "));
  for (const std::string& line : lines) EXPECT_LE(displayWidth(line), 44U);

  const auto few = weigh::watchLines(scales, "0:00:01", {.columns = 80, .rows = 3});
  ASSERT_EQ(few.size(), 3U);
  EXPECT_THAT(few[2], HasSubstr("4 more"));
}

/// The names that the guide recommends are longer than half a screen.
TEST(WatchLines, ShortenNamesForTheWeights) {
  useLanguage(Language::English);
  weigh::Connection connection;
  connection.model = 13;
  connection.device = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0";
  std::vector<WatchedScale> scales;
  scales.emplace_back("", weigh::NamedScale{.id = {}, .connection = connection});
  scales[0].add(good(1.25));
  const std::string row = weigh::watchLines(scales, "0:00:01", {.columns = 79, .rows = 24})[1];
  EXPECT_THAT(row, AllOf(StartsWith("…"), HasSubstr("port0  1.250 kg  stable"), HasSubstr("1/0")));
}

}  // namespace
