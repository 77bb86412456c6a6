// Every recorded exchange has to be explained as it ended, and recognised as the model's it is.

#include <algorithm>

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

std::vector<std::uint8_t> bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

bool hasVerdict(const ExplainedRecord& row) { return row.verdict.has_value(); }

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

}  // namespace
}  // namespace recognise
