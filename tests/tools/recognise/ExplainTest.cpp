// Every recorded exchange has to be explained as it ended, and recognised as the model's it is.

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "CaseFile.h"
#include "Explain.h"

namespace recognise {
namespace {

using exchange::ExchangeCase;
using exchange::Log;

std::vector<ExchangeCase> allCases() {
  std::vector<ExchangeCase> cases;
  for (const auto& file : exchange::caseFiles(EXCHANGES)) cases.push_back(exchange::readCase(file));
  return cases;
}

ExchangeCase oneCase(const std::string& name) {
  return exchange::readCase(std::filesystem::path(EXCHANGES) / (name + ".log"));
}

const Verdict& lastVerdict(const Explanation& explanation) {
  const auto last =
      std::find_if(explanation.records.rbegin(), explanation.records.rend(),
                   [](const ExplainedRecord& row) { return row.verdict.has_value(); });
  return *last->verdict;
}

TEST(ExplainLog, AgreesWithEveryRecordedOutcome) {
  for (const ExchangeCase& recorded : allCases()) {
    SCOPED_TRACE(recorded.name);
    const Explanation explanation = explainLog(recorded.log, *findScalesModel(recorded.model));
    const auto heard = std::ranges::count(recorded.log.records, exchange::Record::Kind::Incoming,
                                          &exchange::Record::kind);
    // A scale that transmits by itself and was never heard leaves nothing to explain.
    if (explanation.polls.empty()) {
      EXPECT_EQ(heard, 0);
      continue;
    }
    EXPECT_EQ(explanation.polls.size(), 1U);
    EXPECT_EQ(explanation.polls.back().code, recorded.outcome.code);
    if (recorded.outcome.code != 0) continue;
    const Verdict& last = lastVerdict(explanation);
    EXPECT_NEAR(last.said.reading.weight, recorded.outcome.weight, 1e-6);
    EXPECT_EQ(last.said.reading.stable != 0, recorded.outcome.stable);
  }
}

TEST(RecogniseLog, FindsTheModelOfEveryRecordedExchange) {
  for (const ExchangeCase& recorded : allCases()) {
    // Nothing tells the model where nothing was written and no good frame came.
    const bool asks = !findScalesModel(recorded.model)->sheet->request.first.empty();
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
      {"13-serial-cut", Reason::TooShort, 0, 0, 0},
      {"16-serial-cut", Reason::NoEnd, 0, 0, 0},
      // The damage turns all bits of one byte over.
      {"13-serial-damaged", Reason::WrongBytes, 15, 0xFB, 0x04},
      {"07-serial-damaged", Reason::WrongBytes, 13, 0xFC, 0x03},
      {"37-serial-damaged", Reason::WrongBytes, 11, 0xF5, 0x0A},
      // Two bytes are out of place; the first of them.
      {"37-serial-garbage-shifts", Reason::WrongBytes, 10, 0x30, 0x0D},
  };
  for (const auto& row : rows) {
    const ExchangeCase recorded = oneCase(row.name);
    const Explanation explanation = explainLog(recorded.log, *findScalesModel(recorded.model));
    const Refusal& refusal = lastVerdict(explanation).refusal;
    EXPECT_EQ(refusal.reason, row.reason) << row.name;
    if (row.reason != Reason::WrongBytes) continue;
    ASSERT_FALSE(refusal.wrong.empty()) << row.name;
    EXPECT_EQ(refusal.wrong.front().position, row.position) << row.name;
    EXPECT_EQ(refusal.wrong.front().is, row.is) << row.name;
    EXPECT_EQ(refusal.wrong.front().wanted, std::vector<std::uint8_t>{row.wanted}) << row.name;
  }
}

TEST(Refusal, TellsAChecksumFromAFixedByte) {
  // 7F and the exclusive or of what follows it.
  const std::vector<std::uint8_t> frame = {0x7F, 0x01, 0x30, 0x35, 0x32, 0x21, 0x30, 0x01, 0x27};
  const Refusal refusal = refusalOf(*findScalesModel(18)->sheet, frame);
  EXPECT_EQ(refusal.reason, Refusal::Reason::Checksum);
  EXPECT_EQ(refusal.wrong.back().wanted, std::vector<std::uint8_t>{0x26});
}

TEST(Fields, StandWhereTheProtocolHasThem) {
  // "?" moving at 3, minus at 5, nine places of weight from 6.
  const std::string line = "SUI  -    1.250 kg \r\n";
  const std::vector<std::uint8_t> frame(line.begin(), line.end());
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
