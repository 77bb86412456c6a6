// Every recorded exchange has to be explained as it ended, and recognised as the model's it is.

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "CaseFile.h"
#include "Explain.h"

namespace recognise {
namespace {

using exchange::ExchangeCase;

std::vector<ExchangeCase> allCases() {
  std::vector<ExchangeCase> cases;
  for (const auto& file : exchange::caseFiles(EXCHANGES)) cases.push_back(exchange::readCase(file));
  return cases;
}

ExchangeCase oneCase(const std::string& name) {
  return exchange::readCase(std::filesystem::path(EXCHANGES) / (name + ".log"));
}

std::vector<std::uint8_t> bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

bool hasVerdict(const ExplainedRecord& row) { return row.verdict.has_value(); }

const Verdict& firstVerdict(const Explanation& explanation) {
  return *std::ranges::find_if(explanation.records, hasVerdict)->verdict;
}
const Verdict& lastVerdict(const Explanation& explanation) {
  return *std::find_if(explanation.records.rbegin(), explanation.records.rend(), hasVerdict)
              ->verdict;
}

TEST(ExplainLog, AgreesWithEveryRecordedOutcome) {
  for (const ExchangeCase& recorded : allCases()) {
    SCOPED_TRACE(recorded.name);
    const Explanation explanation = explainLog(recorded.log, *findScalesModel(recorded.model));
    const auto heard =
        std::ranges::count(recorded.log, exchange::Record::Kind::Incoming, &exchange::Record::kind);
    // A scale that transmits by itself and was never heard leaves nothing to explain.
    if (explanation.polls.empty()) {
      EXPECT_EQ(heard, 0);
      continue;
    }
    EXPECT_EQ(explanation.polls.back().code, recorded.outcome.code);
    if (recorded.outcome.code != 0) continue;
    const Verdict& last = lastVerdict(explanation);
    EXPECT_NEAR(last.said.reading.weight, recorded.outcome.weight, 1e-6);
    EXPECT_EQ(last.said.reading.stable, recorded.outcome.stable);
  }
}

TEST(RecogniseLog, FindsTheModelOfEveryRecordedExchange) {
  for (const ExchangeCase& recorded : allCases()) {
    // Nothing tells the model where nothing was written and no good frame came.
    const bool asks = !transmitsByItself(*findScalesModel(recorded.model)->sheet);
    if (!asks && recorded.outcome.code != 0) continue;
    const LogModel found = recogniseLog(recorded.log);
    ASSERT_NE(found.model, nullptr) << recorded.name;
    EXPECT_TRUE(found.model->number == recorded.model ||
                std::ranges::count(found.kin, recorded.model) > 0)
        << recorded.name << " taken for " << found.model->number;
  }
}

/// What the first refused frame of an exchange lacks.
TEST(Refusal, NamesWhatIsWrong) {
  using Reason = Refusal::Reason;
  const struct {
    const char* name;
    Reason reason;
    std::size_t position;
    std::uint8_t is;
    std::uint8_t wanted;
  } rows[] = {
      {"13-serial-silent", Reason::Silence, 0, 0, 0},
      {"38-serial-cut", Reason::TooShort, 0, 0, 0},
      {"16-serial-cut", Reason::NoEnd, 0, 0, 0},
      // The damage turns all bits of one byte over.
      {"13-serial-damaged-once", Reason::WrongBytes, 15, 0xFB, 0x04},
      {"18-serial-damaged", Reason::Checksum, 8, 0xD9, 0x26},
      // Two bytes are out of place; the first of them.
      {"37-serial-garbage-shifts", Reason::WrongBytes, 10, 0x30, 0x0D},
  };
  for (const auto& row : rows) {
    const ExchangeCase recorded = oneCase(row.name);
    const Explanation explanation = explainLog(recorded.log, *findScalesModel(recorded.model));
    const Refusal& refusal = firstVerdict(explanation).refusal;
    EXPECT_EQ(refusal.reason, row.reason) << row.name;
    EXPECT_EQ(refusal.wrong.empty(), row.position == 0) << row.name;
    if (refusal.wrong.empty()) continue;
    EXPECT_EQ(refusal.wrong.front().position, row.position) << row.name;
    EXPECT_EQ(refusal.wrong.front().is, row.is) << row.name;
    EXPECT_EQ(refusal.wrong.front().wanted, std::vector<std::uint8_t>{row.wanted}) << row.name;
  }
}

TEST(Fields, StandWhereTheProtocolHasThem) {
  // "?" moving at 3, minus at 5, nine places of weight from 6.
  const std::vector<std::uint8_t> frame = bytesOf("SUI  -    1.250 kg \r\n");
  std::vector<std::size_t> weight;
  std::vector<std::size_t> stable;
  for (const FrameField& field : fieldsOf(*findScalesModel(35)->sheet, frame)) {
    if (field.name == FrameField::Name::Weight) weight = field.bytes;
    if (field.name == FrameField::Name::Stable) stable = field.bytes;
  }
  EXPECT_EQ(stable, std::vector<std::size_t>{3});
  EXPECT_EQ(weight, (std::vector<std::size_t>{5, 6, 7, 8, 9, 10, 11, 12, 13, 14}));
}

/// A zero that is none, and bytes of a weight's field that its number doesn't use.
TEST(Fields, TellWhatTheNumberLeavesOut) {
  const struct {
    int model;
    std::vector<std::uint8_t> frame;
    bool hides;
    std::vector<std::size_t> unread;
  } rows[] = {
      // Digits as values where characters are meant.
      {17, {5, 7, 2, 0, 0, 0, 0, 0, 3, 2, 1, 3, 8, 3, 3, 0, 0}, true, {}},
      {17,
       {'0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0', '0'},
       false,
       {}},
      // A plus, at which the number ends.
      {39, bytesOf("\nST,GS,+011.120kg\r"), true, {8, 9, 10, 11, 12, 13, 14}},
      {39, bytesOf("\nST,GS, 000.000kg\r"), false, {}},
      // A second comma behind the first.
      {25, bytesOf("\r\nST,GS,   245.6 g\r\n"), false, {}},
      // A unit behind a zero; no digit at all; a reading that the scale calls not valid.
      {16, bytesOf("\x02NW:0000.00(kg)\x03"), false, {}},
      {23, bytesOf("@P\r0    UF\r\n"), true, {}},
      {31, bytesOf("\x02-4   1250     0\r"), true, {}},
      {10, {0, 0}, false, {}},
  };
  for (const auto& row : rows) {
    const ProtocolSheet& sheet = *findScalesModel(row.model)->sheet;
    EXPECT_EQ(hidesWeight(sheet, row.frame), row.hides) << row.model;
    EXPECT_EQ(unreadBytes(sheet, row.frame), row.unread) << row.model;
  }
}

}  // namespace
}  // namespace recognise
