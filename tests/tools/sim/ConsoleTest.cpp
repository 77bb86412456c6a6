#include <memory>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Console.h"

namespace {

using testing::HasSubstr;

class ConsoleTest : public testing::Test {
 protected:
  void SetUp() override { useLanguage(Language::English); }

  sim::ScaleLine& add(int model) {
    const sim::ScaleModel& found = *sim::findScaleModel(model);
    lines_.push_back(
        std::make_unique<sim::ScaleLine>(sim::Scale(found), std::make_unique<sim::TcpEndpoint>()));
    return *lines_.back();
  }
  /// What the console answers to `input`.
  std::string after(const std::string& input, bool echo = false) {
    std::vector<sim::ScaleLine*> lines;
    for (const auto& line : lines_) lines.push_back(line.get());
    std::ostringstream out;
    Console console(lines, out, echo);
    console.feed(input);
    quit_ = console.quit();
    return out.str();
  }

  std::vector<std::unique_ptr<sim::ScaleLine>> lines_;
  bool quit_ = false;
};

TEST_F(ConsoleTest, ChangesWhatTheScaleShows) {
  sim::ScaleLine& line = add(14);
  const sim::ScaleState& state = line.scale().state();
  EXPECT_EQ(after("2.5\nprice 3,75\nunstable\noverload\ndecimals 2\n"), "");
  EXPECT_DOUBLE_EQ(state.weight, 2.5);
  EXPECT_DOUBLE_EQ(state.price, 3.75);
  EXPECT_FALSE(state.stable);
  EXPECT_TRUE(state.overload);
  EXPECT_EQ(state.decimals, 2);
  after("stable\nnormal\n tare \r\n-0.5\n");
  EXPECT_TRUE(state.stable);
  EXPECT_FALSE(state.overload);
  EXPECT_THAT(after("show\n"), HasSubstr("14: -3.00 kg, stable, price 3.75, cost 0.00, tare 2.50"));
  EXPECT_THAT(after("zero\n", true), HasSubstr("14: 0.00 kg"));
}

TEST_F(ConsoleTest, ChangesTheLine) {
  sim::ScaleLine& line = add(13);
  after("silent\naway\n");
  EXPECT_TRUE(line.faults().silent);
  EXPECT_TRUE(line.endpoint().isAway());
  after("speak\nback\n");
  EXPECT_FALSE(line.faults().silent);
  EXPECT_FALSE(line.endpoint().isAway());
}

TEST_F(ConsoleTest, SaysWhatItCantDoAndChangesNothing) {
  const sim::ScaleState& state = add(13).scale().state();
  EXPECT_THAT(after("price 5\n"), HasSubstr("model 13 doesn't know 'price'"));
  EXPECT_THAT(after("heavy\n"), HasSubstr("'heavy' is no weight and no command"));
  EXPECT_THAT(after("weight much\n"), HasSubstr("weight wants a number"));
  EXPECT_THAT(after("1000\n"), HasSubstr("can't show 1000.000 kg"));
  EXPECT_THAT(after("28: 1\n"), HasSubstr("no scale of model 28"));
  EXPECT_DOUBLE_EQ(state.weight, 1.25);
}

TEST_F(ConsoleTest, TakesInputInPiecesAndTheLastLineWithoutAnEnd) {
  const sim::ScaleState& state = add(13).scale().state();
  std::vector<sim::ScaleLine*> lines = {lines_.front().get()};
  std::ostringstream out;
  Console console(lines, out, false);
  console.feed("2.");
  console.feed("75\n\n3");
  EXPECT_DOUBLE_EQ(state.weight, 2.75);
  console.end();
  EXPECT_DOUBLE_EQ(state.weight, 3.0);
  console.feed(std::string(100'000, 'x'));
  console.feed("\n4\nquit\n5\n");
  EXPECT_DOUBLE_EQ(state.weight, 4.0);
  EXPECT_TRUE(console.quit());
}

TEST_F(ConsoleTest, SpeaksToOneModelOrToAllThatKnow) {
  const sim::ScaleState& cas = add(13).scale().state();
  const sim::ScaleState& uns = add(28).scale().state();
  EXPECT_EQ(after("13: 2\nprice 7\nunstable\n"), "");
  EXPECT_DOUBLE_EQ(cas.weight, 2.0);
  EXPECT_DOUBLE_EQ(uns.weight, 1.25);
  EXPECT_DOUBLE_EQ(uns.price, 7.0);
  EXPECT_FALSE(cas.stable);
  EXPECT_TRUE(uns.stable);
}

TEST_F(ConsoleTest, HelpsAndQuits) {
  add(13);
  EXPECT_THAT(after("help\n"), HasSubstr("quit"));
  EXPECT_FALSE(quit_);
  after("quit\n");
  EXPECT_TRUE(quit_);
}

}  // namespace
