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

/// One reading worked out from `rand` alone, by the order of its calls.
Reading invented(int storedPrice) {
  static constexpr std::array<double, 4> kFrom = {0.08, 2.0, 19.0, 95.0};
  static constexpr std::array<int, 4> kSteps = {30, 1000, 3000, 10000};
  Reading r;
  r.stable = std::rand() % 5 != 0 ? 1 : 0;
  std::rand();
  const auto band = static_cast<std::size_t>(std::rand() % 4);
  r.weight = kFrom.at(band) + (std::rand() % kSteps.at(band)) * 0.001;
  r.price = storedPrice >= 0 ? storedPrice * 0.01 : (std::rand() % 99999) * 0.01;
  r.cost = std::trunc(100.0 * r.price * r.weight) / 100.0;
  r.code = std::rand() % 10 == 0 ? 3 : 0;
  return r;
}

Reading read(ScalesEmulyator& scale) {
  Reading r;
  r.code = scale.getScalesInfo(&r.weight, &r.price, &r.cost, &r.stable);
  return r;
}

TEST(ScalesEmulyator, GivesTheSequenceOfItsSeed) {
  constexpr int kReadings = 500;
  struct Row {
    unsigned seed;
    int price;
  };
  for (const Row row : {Row{1, -1}, Row{2020, 1250}, Row{7, 0}, Row{99, -5}}) {
    ScalesEmulyator scale;
    scale.setPrice(row.price);
    std::array<Reading, kReadings> expected;
    std::srand(row.seed);
    for (Reading& reading : expected) reading = invented(row.price);
    std::srand(row.seed);
    for (const Reading& reading : expected) {
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
