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

}  // namespace
}  // namespace recognise
