#include <array>
#include <cmath>
#include <cstdlib>

#include <gtest/gtest.h>

#include "ScalesEmulyator.h"

namespace {

struct Reading {
  double weight = 0;
  double price = 0;
  double cost = 0;
  long stable = 0;
  int code = 0;
};

Reading read(ScalesEmulyator& scale) {
  Reading r;
  r.code = scale.getScalesInfo(&r.weight, &r.price, &r.cost, &r.stable);
  return r;
}

TEST(ScalesEmulyator, GivesTheSequenceOfItsSeed) {
  // What libc.s sequences come to: each band, unstable readings, and one without answer.
  struct Row {
    unsigned seed;
    int price;
    std::array<Reading, 5> readings;
  };
  for (const Row& row : {Row{4,
                             -1,
                             {{{19.326, 699.64, 13521.24, 1, 0},
                               {0.085, 114.29, 9.71, 0, 0},
                               {103.414, 375.58, 38840.23, 1, 0},
                               {2.604, 800.52, 2084.55, 1, 0},
                               {20.882, 887.70, 18536.95, 1, 3}}}},
                         Row{5,
                             1250,
                             {{{19.072, 12.50, 238.40, 0, 0},
                               {2.073, 12.50, 25.91, 1, 0},
                               {0.098, 12.50, 1.22, 1, 3},
                               {20.828, 12.50, 260.35, 0, 0},
                               {97.373, 12.50, 1217.16, 1, 0}}}}}) {
    ScalesEmulyator scale;
    scale.setPrice(row.price);
    std::srand(row.seed);
    for (const Reading& reading : row.readings) {
      const Reading got = read(scale);
      EXPECT_EQ(got.code, reading.code);
      EXPECT_EQ(got.stable, reading.stable);
      EXPECT_DOUBLE_EQ(got.weight, reading.weight);
      EXPECT_DOUBLE_EQ(got.price, reading.price);
      EXPECT_DOUBLE_EQ(got.cost, reading.cost);
    }
  }
}

TEST(ScalesEmulyator, TakesPricesByTheirLow32Bits) {
  ScalesEmulyator scale;
  EXPECT_EQ(scale.setPrice(0x7'0000'04E2), 0);
  EXPECT_DOUBLE_EQ(read(scale).price, 12.5);
  // What a platform's -1 becomes on its way brings random prices back.
  EXPECT_EQ(scale.setPrice(0xFFFF'FFFFL), 0);
  double sum = 0;
  for (int i = 0; i < 50; ++i) sum += read(scale).price;
  EXPECT_GT(sum, 12.5 * 50);
}

TEST(ScalesEmulyator, CutsACostThatFitsNoNumber) {
  ScalesEmulyator scale;
  scale.setPrice(2147483647);
  for (int i = 0; i < 100; ++i) {
    const Reading reading = read(scale);
    EXPECT_DOUBLE_EQ(reading.cost,
                     reading.weight > 1.0
                         ? -21474836.48
                         : std::trunc(100.0 * reading.price * reading.weight) / 100.0);
  }
}

TEST(ScalesEmulyator, KnowsItsCommandsAndNeedsNoPort) {
  ScalesEmulyator scale;
  EXPECT_EQ(scale.SetComPort("/no/such/device", 9600, nullptr), 0);
  EXPECT_EQ(scale.SetLanPort("no.such.host", 1, nullptr), 0);
  EXPECT_EQ(scale.pressT(1.5), 0);
  EXPECT_EQ(scale.pressNull(), 5);
  EXPECT_EQ(scale.isConnected(), 2);
  EXPECT_EQ(scale.isConnectedOrConnect(), 0);
}

}  // namespace
