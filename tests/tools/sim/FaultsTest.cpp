#include <algorithm>

#include <gtest/gtest.h>

#include "Faults.h"

namespace sim {
namespace {

using std::chrono::milliseconds;

const ScaleModel& cas() { return *findScaleModel(13); }
Bytes goodFrame() { return cas().frame(cas().usualState()); }

/// All that goes out for one frame, the pauses left out.
Bytes sentFor(Misbehaviour& misbehaviour) {
  Bytes sent;
  for (const auto& piece : misbehaviour.transmit(cas(), goodFrame()).pieces) {
    sent.insert(sent.end(), piece.bytes.begin(), piece.bytes.end());
  }
  return sent;
}

TEST(Faults, NoneLeaveTheFrameAlone) {
  Misbehaviour none;
  EXPECT_EQ(sentFor(none), goodFrame());
}

TEST(Faults, SilenceSendsNothing) {
  Misbehaviour silent({.silent = true});
  EXPECT_TRUE(sentFor(silent).empty());
}

TEST(Faults, GarbageStandsInFrontOfTheFrame) {
  Misbehaviour garbage({.garbage = 5});
  const Bytes sent = sentFor(garbage);
  const Bytes frame = goodFrame();
  ASSERT_EQ(sent.size(), frame.size() + 5);
  EXPECT_TRUE(std::equal(frame.begin(), frame.end(), sent.begin() + 5));
}

TEST(Faults, GarbageOpensNoFrameOfAnyModel) {
  Misbehaviour garbage({.garbage = 64, .cut = 0});
  const Bytes sent = sentFor(garbage);
  for (const ScaleModel& model : scaleModels()) {
    if (!model.hasStartByte) continue;
    for (const double weight : {1.0, -1.0}) {
      ScaleState state = model.usualState();
      state.weight = weight;
      EXPECT_EQ(std::count(sent.begin(), sent.end(), model.frame(state).front()), 0)
          << model.number;
    }
  }
}

TEST(Faults, CorruptionHitsTheFirstOfEveryFewAtAByteThatIsChecked) {
  Misbehaviour corrupt({.corruptEvery = 3});
  Bytes damaged = goodFrame();
  damaged.back() = 0xFB;
  EXPECT_EQ(sentFor(corrupt), damaged);
  EXPECT_EQ(sentFor(corrupt), goodFrame());
  EXPECT_EQ(sentFor(corrupt), goodFrame());
  EXPECT_EQ(sentFor(corrupt), damaged);
}

TEST(Faults, ACutKeepsTheHeadAndNoMoreThanThereIs) {
  Misbehaviour cut({.cut = 4});
  EXPECT_EQ(sentFor(cut), (Bytes{0x06, 0x01, 0x02, 'S'}));
  Misbehaviour wide({.cut = 1000});
  EXPECT_EQ(sentFor(wide), goodFrame());
}

TEST(Faults, DribbleSendsByteByByteWithAPauseBeforeEach) {
  Misbehaviour dribble({.cut = 3, .dribble = milliseconds{7}});
  const auto pieces = dribble.transmit(cas(), goodFrame()).pieces;
  ASSERT_EQ(pieces.size(), 3U);
  for (const auto& piece : pieces) {
    EXPECT_EQ(piece.bytes.size(), 1U);
    EXPECT_EQ(piece.pause, milliseconds{7});
  }
}

TEST(Faults, HangUpComesBehindEveryFewFrames) {
  Misbehaviour hangUp({.silent = true, .hangUpAfter = 2});
  EXPECT_FALSE(hangUp.transmit(cas(), goodFrame()).hangUp);
  EXPECT_TRUE(hangUp.transmit(cas(), goodFrame()).hangUp);
  EXPECT_FALSE(hangUp.transmit(cas(), goodFrame()).hangUp);
  EXPECT_TRUE(hangUp.transmit(cas(), goodFrame()).hangUp);
}

TEST(Faults, EndAfterSoManyFramesWhenToldSo) {
  Misbehaviour once({.cut = 1, .hangUpAfter = 1, .frames = 1});
  EXPECT_EQ(sentFor(once).size(), 1U);
  EXPECT_EQ(sentFor(once), goodFrame());
  EXPECT_FALSE(once.transmit(cas(), goodFrame()).hangUp);
}

}  // namespace
}  // namespace sim
