#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "FrameSearch.h"
#include "Models.h"

/// Which models explain bytes that were received. By the drivers' own sheets, so that what is
/// recognised here is what a driver reads.
namespace recognise {

using Bytes = std::vector<std::uint8_t>;

/// Why a candidate may be the wrong one. Each is a bit.
enum Doubt : unsigned {
  kNoDoubt = 0,
  /// Another model explains the same bytes as well.
  kKin = 1,
  /// In all good frames together the protocol checked so few bytes that others would have passed
  /// too.
  kFewChecks = 2,
  /// Only one good frame was seen.
  kFewFrames = 4,
  /// Frames were refused.
  kBadFrames = 8,
  /// A good part of the bytes belongs to no frame.
  kStrayBytes = 16,
  /// Most bytes of the frame play no part in the reading, or price and cost don't agree.
  kImplausible = 32,
};

/// How much a good frame proves.
struct Checks {
  std::size_t size = 0;
  /// Bytes that stand as the protocol wants them. All bytes of a frame with a checksum are such.
  std::size_t guarded = 0;
  /// Bytes that the reading depends on, the guarded ones among them. A frame of another protocol
  /// that passes by chance leaves most of its bytes unused.
  std::size_t used = 0;
};

/// What speaks for one model, and how much.
struct Candidate {
  const ScalesModel* model = nullptr;
  std::size_t good = 0;
  std::size_t bad = 0;
  /// Bytes in good frames, and all that were received, without pieces of frames that the beginning
  /// and the end of listening cut.
  std::size_t explained = 0;
  std::size_t bytes = 0;
  /// Of the last good frame.
  Checks checks;
  Bytes frame;
  Said said;
  /// Numbers of the models that explain the same bytes as well or better.
  std::vector<int> kin;
  unsigned doubts = kNoDoubt;

  bool uncertain() const { return doubts != kNoDoubt; }
  /// For ranking: the more bytes are checked and used and the fewer are left over, the higher.
  double weightOfEvidence() const;
};

/// What was received, piece by piece: all pieces of a stream, or the answers to one request.
struct Evidence {
  Origin origin = Origin::Stream;
  std::vector<Bytes> pieces;
};

/// What one model makes of it; none if it finds no good frame. Knows no kin: see `rank`.
std::optional<Candidate> examine(const ScalesModel& model, const Evidence& evidence);

/// The best first. Those of the list that explain as much by as many checks become kin of each
/// other, and each is told its doubts.
void rank(std::vector<Candidate>& candidates);

/// All models with a protocol that find good frames, ranked.
std::vector<Candidate> recognise(const Evidence& evidence);

}  // namespace recognise
