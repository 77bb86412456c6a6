#include "PollBound.h"

#include <algorithm>

#include "FrameReader.h"

using std::chrono::milliseconds;

namespace {

/// A network read waits so long for the next byte; a serial read doesn't wait at all.
constexpr milliseconds kNetworkIdle{100};
constexpr milliseconds kSilence{kSilence_ms};

milliseconds emptyRead(bool overTcp) { return overTcp ? kNetworkIdle : milliseconds{0}; }

milliseconds longestDrain(bool overTcp, milliseconds talk) {
  return std::min(talk, milliseconds{kLongestDrain_ms}) + emptyRead(overTcp);
}

/// Silences that spend a budget; the last one may begin with 1 ms left.
int silencesIn(int budget_ms) { return (budget_ms + kSilence_ms - 1) / kSilence_ms; }

}  // namespace

milliseconds longestPoll(const ProtocolSheet& sheet, bool overTcp, milliseconds talk) {
  const milliseconds asking = longestDrain(overTcp, talk) + milliseconds{sheet.request.pause_ms};
  const milliseconds reading = silencesIn(sheet.budget_ms) * (emptyRead(overTcp) + kSilence);
  return sheet.attempts * asking + (sheet.oneBudgetForAll ? 1 : sheet.attempts) * reading;
}

milliseconds longestTare(const ProtocolSheet& sheet, bool overTcp, milliseconds talk) {
  if (!sheet.tare) return milliseconds{0};
  const milliseconds pressing = sheet.tare->times * milliseconds{sheet.tare->pause_ms};
  switch (sheet.tare->afterwards) {
    case Command::Afterwards::Nothing: break;
    case Command::Afterwards::ReadOnce: return pressing + emptyRead(overTcp);
    case Command::Afterwards::Drain: return pressing + longestDrain(overTcp, talk);
  }
  return pressing;
}
