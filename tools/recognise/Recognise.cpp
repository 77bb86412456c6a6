#include "Recognise.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "Fields.h"

namespace recognise {

namespace {

/// Checked bytes of all good frames: chance makes so many agree once in four thousand million
/// times.
constexpr std::size_t kEnoughChecks = 4;
constexpr std::size_t kEnoughFrames = 2;
/// Of all bytes, in good frames.
constexpr double kEnoughExplained = 0.8;
/// Of the bytes of a frame, in the reading.
constexpr double kEnoughUsed = 0.5;
/// Kin differ by less than one checked byte.
constexpr double kTie = 1.0;

std::set<std::size_t> bytesInUse(const ProtocolSheet& sheet, Frame frame) {
  std::set<std::size_t> used;
  for (const FrameField& field : fieldsOf(sheet, frame)) {
    used.insert(field.bytes.begin(), field.bytes.end());
  }
  for (const NumberField* field : {&sheet.weight, &sheet.price, &sheet.cost}) {
    for (const std::size_t place : placesOf(*field, frame)) {
      if (!isRead(*field, frame, place)) used.erase(place);
    }
  }
  return used;
}

Checks checksOf(const ProtocolSheet& sheet, Frame frame) {
  Checks checks{.size = frame.size()};
  const std::set<std::size_t> used = bytesInUse(sheet, frame);
  std::vector<std::uint8_t> changed(frame.begin(), frame.end());
  for (std::size_t place = 0; place < frame.size(); ++place) {
    // What is wanted of a byte is never its opposite, too.
    changed[place] = static_cast<std::uint8_t>(~frame[place]);
    const bool guarded = !isTaken(sheet, changed);
    changed[place] = frame[place];
    checks.guarded += guarded ? 1 : 0;
    checks.used += guarded || used.contains(place) ? 1 : 0;
  }
  return checks;
}

double share(std::size_t part, std::size_t whole) {
  return whole == 0 ? 0.0 : static_cast<double>(part) / static_cast<double>(whole);
}

/// Whether the cost is weight times price, as far as the units are known. A scale without prices
/// can't disagree.
bool moneyAgrees(const ProtocolSheet& sheet, const Outputs& reading) {
  if (sheet.moneyUnit == MoneyUnit::None) return true;
  const double kilograms =
      sheet.weightUnit == WeightUnit::Kilogram ? reading.weight : reading.weight / 1000.0;
  const double cost = std::abs(kilograms) * reading.price;
  const double lastDigit = sheet.moneyUnit == MoneyUnit::Whole ? 0.01 : 1.0;
  constexpr double kRounding = 0.01;
  return std::abs(cost - std::abs(reading.cost)) <= lastDigit + kRounding * cost;
}

bool plausible(const Candidate& candidate) {
  return share(candidate.checks.used, candidate.checks.size) >= kEnoughUsed &&
         moneyAgrees(*candidate.model->sheet, candidate.said.reading);
}

unsigned doubtsOf(const Candidate& candidate) {
  unsigned doubts = kNoDoubt;
  const auto add = [&](bool there, Doubt doubt) { doubts |= there ? doubt : kNoDoubt; };
  add(!candidate.kin.empty(), kKin);
  add(candidate.checks.guarded * candidate.good < kEnoughChecks, kFewChecks);
  add(candidate.good < kEnoughFrames, kFewFrames);
  add(candidate.bad > 0, kBadFrames);
  add(share(candidate.explained, candidate.bytes) < kEnoughExplained, kStrayBytes);
  add(!plausible(candidate), kImplausible);
  return doubts;
}

}  // namespace

double Candidate::weightOfEvidence() const {
  // Checked bytes can't agree by chance, used ones only say that nothing speaks against it.
  const double proof = static_cast<double>(checks.guarded) + share(checks.used, checks.size);
  const double doubtful = plausible(*this) ? 1.0 : 0.25;
  return proof * doubtful * share(good, good + bad) * share(explained, bytes);
}

std::optional<Candidate> examine(const ScalesModel& model, const Evidence& evidence) {
  if (model.sheet == nullptr) return std::nullopt;
  Candidate candidate;
  candidate.model = &model;
  for (const Bytes& piece : evidence.pieces) {
    const Found found = findFrames(*model.sheet, piece, evidence.origin);
    candidate.good += found.good.size();
    candidate.bad += found.bad;
    candidate.explained += found.explained;
    candidate.bytes += piece.size() - found.cut;
    if (!found.good.empty()) {
      candidate.frame.assign(found.good.back().begin(), found.good.back().end());
    }
  }
  if (candidate.good == 0) return std::nullopt;
  candidate.checks = checksOf(*model.sheet, candidate.frame);
  candidate.said = readingOf(*model.sheet, candidate.frame);
  candidate.doubts = doubtsOf(candidate);
  return candidate;
}

void rank(std::vector<Candidate>& candidates) {
  std::ranges::stable_sort(candidates, std::ranges::greater{}, &Candidate::weightOfEvidence);
  for (Candidate& candidate : candidates) {
    candidate.kin.clear();
    for (const Candidate& other : candidates) {
      const double lead = candidate.weightOfEvidence() - other.weightOfEvidence();
      if (other.model == candidate.model || lead >= kTie) continue;
      candidate.kin.push_back(other.model->number);
    }
    candidate.doubts = doubtsOf(candidate);
  }
}

std::vector<Candidate> recognise(const Evidence& evidence) {
  std::vector<Candidate> candidates;
  for (const ScalesModel& model : scalesModels()) {
    if (auto candidate = examine(model, evidence)) candidates.push_back(std::move(*candidate));
  }
  rank(candidates);
  return candidates;
}

}  // namespace recognise
