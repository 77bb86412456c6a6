#include <memory>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Console.h"

namespace {

/// Scales with a console that writes what it says of them.
class Desk {
 public:
  explicit Desk(const std::vector<int>& models, bool echo = false) {
    useLanguage(Language::English);
    std::vector<sim::ScaleLine*> lines;
    for (const int model : models) {
      lines_.push_back(std::make_unique<sim::ScaleLine>(sim::Scale(*sim::findScaleModel(model)),
                                                        std::make_unique<sim::TcpEndpoint>()));
      lines.push_back(lines_.back().get());
    }
    console = std::make_unique<Console>(lines, out, echo);
  }

  std::ostringstream out;
  std::unique_ptr<Console> console;

 private:
  std::vector<std::unique_ptr<sim::ScaleLine>> lines_;
};

TEST(Console, DoesWhatItIsToldAndSaysWhatItCannot) {
  const struct {
    std::vector<int> models;
    const char* input;
    const char* said;
  } rows[] = {
      {{14}, "2.5\nprice 3,75\nshow\n", "14: 2.500 kg, stable, price 3.75, cost 9.38\n"},
      {{14}, "decimals 2\nunstable\nshow\n", "14: 1.25 kg, moving, price 12.50, cost 15.63\n"},
      {{14}, "unstable\nstable\nshow\n", "14: 1.250 kg, stable, price 12.50, cost 15.63\n"},
      {{13}, "overload\nshow\nnormal\nshow\n", "13: 1.250 kg, overload\n13: 1.250 kg, stable\n"},
      {{13}, "silent\naway\nshow\n", "13: 1.250 kg, stable, silent, away\n"},
      {{13}, "silent\naway\nspeak\nback\nshow\n", "13: 1.250 kg, stable\n"},
      {{14},
       " tare \r\n-0.5\nshow\n",
       "-1.750 kg, stable, price 12.50, cost 0.00, tare 1.250 kg\n"},
      {{13}, "price 5\nshow\n", "model 13 doesn't know 'price'\n13: 1.250 kg, stable\n"},
      {{13}, "heavy\nshow\n", "'heavy' is no weight and no command"},
      {{13}, "weight much\n", "weight wants a number"},
      {{13}, "1000\nshow\n", "can't show 1000.000 kg; with 3 decimals it shows"},
      {{13}, "28: 1\n", "no scale of model 28"},
      {{13}, "help\n", "quit"},
      {{13, 28},
       "13: 2\nprice 7\nunstable\nshow\n",
       "13: 2.000 kg, moving\n28: 1.250 kg, stable, price 7.00, cost 8.75\n"},
  };
  for (const auto& [models, input, said] : rows) {
    Desk desk(models);
    desk.console->feed(input);
    EXPECT_THAT(desk.out.str(), testing::HasSubstr(said)) << input;
    EXPECT_FALSE(desk.console->quit());
  }
}

TEST(Console, TakesInputInPiecesAndTheLastLineWithoutAnEnd) {
  Desk desk({13}, true);
  desk.console->feed("2.");
  desk.console->feed("75\n\n3");
  desk.console->end();
  EXPECT_EQ(desk.out.str(), "13: 2.750 kg, stable\n13: 3.000 kg, stable\n");
  desk.out.str({});
  desk.console->feed(std::string(100'000, 'x'));
  desk.console->feed("\n4\nquit\n5\n");
  EXPECT_THAT(desk.out.str(), testing::EndsWith("13: 4.000 kg, stable\n"));
  EXPECT_TRUE(desk.console->quit());
}

}  // namespace
