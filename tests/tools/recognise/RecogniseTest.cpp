// Every simulated scale's frames must lead to its model.

#include <algorithm>

#include <gtest/gtest.h>

#include "Recognise.h"
#include "ScaleModel.h"

namespace recognise {
namespace {

sim::Bytes frameOf(int model, double weight) {
  const sim::ScaleModel& scale = *sim::findScaleModel(model);
  sim::ScaleState state = scale.usualState();
  state.weight = weight;
  if (scale.hasPrice()) state.price = 12.5;
  return scale.frame(state);
}

/// Cut into in front and behind, as whoever begins to listen at any time hears it.
Bytes heard(int model) {
  Bytes bytes;
  for (const double weight : {0.45, 0.45, 1.25, 3.5, 3.5}) {
    const sim::Bytes frame = frameOf(model, weight);
    bytes.insert(bytes.end(), frame.begin(), frame.end());
  }
  const auto part = static_cast<std::ptrdiff_t>(frameOf(model, 0.45).size() / 2);
  return {bytes.begin() + part, bytes.end() - part};
}

bool firstOrTied(const std::vector<Candidate>& ranked, int model) {
  const auto own = std::ranges::find_if(
      ranked, [&](const Candidate& candidate) { return candidate.model->number == model; });
  if (own == ranked.end()) return false;
  return own == ranked.begin() || std::ranges::count(ranked.front().kin, model) > 0;
}

std::string told(const std::vector<Candidate>& ranked) {
  std::string text;
  for (const Candidate& candidate : ranked) {
    text += "\n  " + std::to_string(candidate.model->number) + ": evidence " +
            std::to_string(candidate.weightOfEvidence()) + ", doubts " +
            std::to_string(candidate.doubts);
  }
  return text;
}

class EveryModel : public testing::TestWithParam<int> {};

/// Scales that transmit by themselves among all models that do, the others among those whose
/// request has the same bytes.
TEST_P(EveryModel, IsRecognisedByItsFrames) {
  const ScalesModel& own = *findScalesModel(GetParam());
  const bool streams = transmitsByItself(*own.sheet);
  const Evidence evidence =
      streams ? Evidence{Origin::Stream, {heard(own.number)}}
              : Evidence{Origin::Answer, {frameOf(own.number, 1.25), frameOf(own.number, 0.45)}};
  std::vector<Candidate> ranked;
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet == nullptr ||
        !std::ranges::equal(model.sheet->request.first.view(), own.sheet->request.first.view())) {
      continue;
    }
    if (auto candidate = examine(model, evidence)) ranked.push_back(std::move(*candidate));
  }
  rank(ranked);
  EXPECT_TRUE(firstOrTied(ranked, own.number)) << told(ranked);
}

std::vector<int> modelsWithProtocol() {
  std::vector<int> numbers;
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet != nullptr) numbers.push_back(model.number);
  }
  return numbers;
}
INSTANTIATE_TEST_SUITE_P(Models, EveryModel, testing::ValuesIn(modelsWithProtocol()),
                         testing::PrintToStringParamName());

/// Bytes of one scale, doubts that its own model must have. `bytes` in place of the frames.
TEST(Recognise, TellsItsDoubts) {
  const sim::Bytes cas = frameOf(13, 1.25);
  const sim::Bytes ocs = frameOf(18, 1.25);
  sim::Bytes damaged = ocs;
  damaged[3] ^= 1U;
  const Bytes garbage(2 * ocs.size(), 0x55);
  const struct {
    const char* what;
    int model;
    Evidence evidence;
    unsigned doubts;
  } rows[] = {
      {"kin", 13, {Origin::Answer, {cas, cas}}, kKin},
      {"one frame", 18, {Origin::Stream, {ocs}}, kFewFrames},
      {"two frames", 18, {Origin::Stream, {ocs, ocs}}, kNoDoubt},
      {"a refused frame", 18, {Origin::Stream, {ocs, ocs, damaged, ocs, ocs}}, kBadFrames},
      {"much else", 18, {Origin::Stream, {ocs, garbage, ocs}}, kStrayBytes},
      {"no checks", 28, {Origin::Answer, {frameOf(28, 1.25), frameOf(28, 2.0)}}, kFewChecks},
      {"characters for digits",
       28,
       {Origin::Answer, {Bytes(18, 'A'), Bytes(18, 'A')}},
       kFewChecks | kImplausible},
  };
  for (const auto& row : rows) {
    Bytes all;
    for (const Bytes& piece : row.evidence.pieces)
      all.insert(all.end(), piece.begin(), piece.end());
    const Evidence evidence =
        row.evidence.origin == Origin::Stream ? Evidence{Origin::Stream, {all}} : row.evidence;
    const std::vector<Candidate> ranked = recognise(evidence);
    const auto own = std::ranges::find_if(
        ranked, [&](const Candidate& candidate) { return candidate.model->number == row.model; });
    ASSERT_NE(own, ranked.end()) << row.what << told(ranked);
    EXPECT_EQ(own->doubts & ~(row.doubts == kKin ? 0U : unsigned{kKin}), row.doubts)
        << row.what << told(ranked);
  }
  for (const Origin origin : {Origin::Stream, Origin::Answer})
    EXPECT_TRUE(recognise({origin, {Bytes(40, 0x55)}}).empty());
}

}  // namespace
}  // namespace recognise
