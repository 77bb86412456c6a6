#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Noise.h"
#include "OpenLine.h"
#include "Questions.h"
#include "Recognise.h"

namespace weigh {

struct FindOptions {
  Connection connection;
  /// Those with a protocol.
  std::vector<const ScalesModel*> models;
  std::vector<int> speeds;
  /// How long each setting is listened to.
  std::chrono::milliseconds listening{1000};
  /// Only listens.
  bool passive = false;
};

/// One model with what speaks for it, and where it was found.
struct Sighting {
  recognise::Candidate candidate;
  LineSetting setting;
  /// It answered its weight request; otherwise it was heard.
  bool asked = false;
};

/// Bytes in which no model found a frame.
struct Unexplained {
  LineSetting setting;
  recognise::Bytes bytes;
  recognise::Noise noise;
};

struct FindResult {
  /// The best first.
  std::vector<Sighting> sightings;
  /// At most one for each setting.
  std::vector<Unexplained> unexplained;
  /// Bytes that came at all.
  std::size_t bytes = 0;
  enum class End { Done, Interrupted, LineLost };
  End end = End::Done;
};

/// What a search will do.
struct FindPlan {
  explicit FindPlan(const FindOptions& options);

  /// In the order in which they are listened to.
  std::vector<LineSetting> listening;
  std::vector<int> speeds;
  /// Asked at each speed; none in a passive search.
  std::vector<recognise::Question> questions;
  /// With what it takes to look twice at what is found.
  std::chrono::milliseconds longest{0};
};

/// Called with what the search is at.
using FindObserver = std::function<void(const LineSetting&, bool asks)>;

/// Throws Failure where the line can't be opened. Ends early on a sure find, and when the user has
/// enough. A speed at which good frames came is the speed: no other is tried then.
FindResult findScale(const FindOptions& options, const FindPlan& plan,
                     const FindObserver& observer);

}  // namespace weigh
