#include <gtest/gtest.h>

#include "FrameRows.h"
#include "ModelsUnderTest.h"

// Every driver against its table of frames.

namespace {

/// What a caller left in an output that the poll doesn't clear at entry.
constexpr double kOfCaller = -77.5;

Reading atEntry(const ProtocolSheet& sheet) {
  if (sheet.atEntry == AtEntry::AllZero) return {};
  return {kOfCaller, kOfCaller, kOfCaller, sheet.atEntry == AtEntry::Stable ? 1 : 0};
}

class FrameTable : public testing::TestWithParam<int> {};

TEST_P(FrameTable, SaysWhatTheProtocolSays) {
  const ProtocolSheet& sheet = sheetOf(GetParam());
  int goodFrames = 0;
  int badFrames = 0;
  for (const FrameRow& row : frameRowsOf(GetParam())) {
    const TightFrame frame(fixture::bytes(row.frame));
    SCOPED_TRACE("model " + std::to_string(row.model) + ": " + fixture::hex(frame) + " (" +
                 row.meaning + ")");
    Reading reading = atEntry(sheet);
    if (sheet.glance != nullptr) sheet.glance(frame, reading);
    const bool good = sheet.isGood(frame);
    EXPECT_EQ(good, row.says.good);
    (good ? goodFrames : badFrames) += 1;
    if (!good) {
      // What a glance takes from a bad frame stays, and nothing else of it.
      const Reading untouched = atEntry(sheet);
      EXPECT_EQ(reading.weight, untouched.weight);
      EXPECT_EQ(reading.stable, sheet.glance != nullptr ? row.says.stable : untouched.stable);
      continue;
    }
    const Outcome outcome = sheet.parse(frame, reading);
    EXPECT_EQ(outcome.code, row.says.code);
    EXPECT_EQ(outcome.next, row.says.next);
    EXPECT_DOUBLE_EQ(reading.weight, row.says.weight);
    EXPECT_DOUBLE_EQ(reading.price, row.says.price);
    EXPECT_DOUBLE_EQ(reading.cost, row.says.cost);
    EXPECT_EQ(reading.stable, row.says.stable);
  }
  EXPECT_GE(goodFrames, 2) << "a driver without frames to prove it";
  EXPECT_GE(badFrames, 2);
}

INSTANTIATE_TEST_SUITE_P(Model, FrameTable, testing::ValuesIn(modelsWithSheet()), numberOfModel);

/// Behind 50 characters nothing is looked at but a dash, which makes the number negative even from
/// the last of 300 bytes.
TEST(FrameTable, LongAnswerOfModel26) {
  const ProtocolSheet& sheet = sheetOf(26);
  fixture::Bytes bytes(300, ' ');
  bytes[49] = '7';
  bytes[50] = '5';
  bytes[299] = '-';
  const TightFrame frame(bytes);
  Reading reading;
  ASSERT_TRUE(sheet.isGood(frame));
  sheet.parse(frame, reading);
  EXPECT_DOUBLE_EQ(reading.weight, -7.0);
}

/// Of a text longer than any number the first 50 characters count.
TEST(FrameTable, LongAnswerOfModel16) {
  const ProtocolSheet& sheet = sheetOf(16);
  fixture::Bytes bytes = fixture::bytes("02 'NW:'");
  bytes.resize(299, '1');
  bytes.push_back(0x03);
  const TightFrame frame(bytes);
  Reading reading;
  ASSERT_TRUE(sheet.isGood(frame));
  sheet.parse(frame, reading);
  EXPECT_DOUBLE_EQ(reading.weight, 11111111111111111111111111111111111111111111111111.0);
}

}  // namespace
