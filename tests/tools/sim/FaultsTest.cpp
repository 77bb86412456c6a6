#include <algorithm>

#include <gtest/gtest.h>

#include "Faults.h"

namespace sim {
namespace {

const ScaleModel& cas() { return *findScaleModel(13); }
Bytes goodFrame() { return cas().frame(cas().usualState()); }

Bytes sentFor(Misbehaviour& misbehaviour) {
  return misbehaviour.transmit(cas(), goodFrame()).bytes;
}

TEST(Faults, SpoilTheFramesThatTheyAreToldTo) {
  const Bytes good = goodFrame();
  Bytes damaged = good;
  damaged.back() = 0xFB;
  const struct {
    const char* what;
    Faults faults;
    std::vector<Bytes> sent;
  } rows[] = {
      {"none", {}, {good, good}},
      {"silence", {.silent = true}, {{}, {}}},
      // The first of every three, at a byte that is checked.
      {"corruption", {.corruptEvery = 3}, {damaged, good, good, damaged}},
      {"a cut", {.cut = 4}, {{0x06, 0x01, 0x02, 'S'}, {0x06, 0x01, 0x02, 'S'}}},
      {"a cut behind the end", {.cut = 1000}, {good}},
      {"garbage and a cut", {.garbage = 2, .cut = 1}, {{0xFF, 0x55, 0x06}}},
      {"once only", {.cut = 1, .frames = 1}, {{0x06}, good}},
  };
  for (const auto& row : rows) {
    Misbehaviour misbehaviour(row.faults);
    for (const Bytes& sent : row.sent) EXPECT_EQ(sentFor(misbehaviour), sent) << row.what;
  }
}

TEST(Faults, GarbageOpensNoFrameOfAnyModel) {
  Misbehaviour garbage({.garbage = 64, .cut = 0});
  const Bytes sent = sentFor(garbage);
  for (const ScaleModel& model : scaleModels()) {
    if (!model.hasStartByte()) continue;
    for (const double weight : {1.0, -1.0}) {
      ScaleState state = model.usualState();
      state.weight = weight;
      EXPECT_EQ(std::count(sent.begin(), sent.end(), model.frame(state).front()), 0)
          << model.number;
    }
  }
}

TEST(Faults, HangUpComesBehindEveryFewFramesAndEndsWithTheFaults) {
  Misbehaviour always({.silent = true, .hangUpAfter = 2});
  Misbehaviour once({.hangUpAfter = 2, .frames = 2});
  for (int frame = 1; frame <= 4; ++frame) {
    EXPECT_EQ(always.transmit(cas(), goodFrame()).hangUp, frame % 2 == 0) << frame;
    EXPECT_EQ(once.transmit(cas(), goodFrame()).hangUp, frame == 2) << frame;
  }
}

}  // namespace
}  // namespace sim
