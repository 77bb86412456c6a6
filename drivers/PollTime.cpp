#include "PollTime.h"

#include <algorithm>

#include "FrameReader.h"

using std::chrono::milliseconds;

namespace {

constexpr milliseconds kSilence{kSilence_ms};

milliseconds emptyRead(bool overTcp) { return milliseconds{overTcp ? kNetworkIdle_ms : 0}; }

milliseconds longestDrain(bool overTcp, Talk talk) {
  // On a serial line any gap ends it.
  if (!overTcp && talk.gap > milliseconds{0}) return milliseconds{0};
  const milliseconds silence = emptyRead(overTcp);
  return std::min(talk.stretch, milliseconds{kLongestDrain_ms} - silence) + silence +
         (overTcp ? milliseconds{kBacklog_ms} : milliseconds{0});
}

/// A flooded connection is left once, and the new one drained.
milliseconds renewing(const ProtocolSheet& sheet, bool overTcp, Talk talk) {
  const bool flooded = overTcp && !transmitsByItself(sheet) && talk.gap == milliseconds{0} &&
                       talk.stretch >= milliseconds{kLongestDrain_ms};
  return flooded ? longestDrain(overTcp, talk) : milliseconds{0};
}

/// A scale that transmits by itself may send a frame at the very end of an idle wait, which then
/// begins anew and takes nothing off a budget: once in the drain and once in the read.
milliseconds streamedFrames(const ProtocolSheet& sheet, bool overTcp) {
  return transmitsByItself(sheet) ? 2 * emptyRead(overTcp) : milliseconds{0};
}

/// Silences that spend a budget; the last one may begin with 1 ms left.
int silencesIn(int budget_ms) { return (budget_ms + kSilence_ms - 1) / kSilence_ms; }

/// The most bytes that a read waits for. A hunting read takes a millisecond off its budget for a
/// wrong one, however long it was in coming.
int mostBytes(const ProtocolSheet& sheet) {
  if (const auto* read = std::get_if<TerminatorRead>(&sheet.read)) {
    return static_cast<int>(read->capacity);
  }
  const int hunted = transmitsByItself(sheet) ? sheet.asking.budget_ms : 0;
  return hunted + static_cast<int>(frameLength(sheet));
}

}  // namespace

milliseconds longestPoll(const ProtocolSheet& sheet, bool overTcp, Talk talk) {
  const milliseconds asking = longestDrain(overTcp, talk) + streamedFrames(sheet, overTcp) +
                              milliseconds{sheet.request.pause_ms};
  const milliseconds waiting = overTcp ? mostBytes(sheet) * talk.gap : milliseconds{0};
  const milliseconds reading =
      silencesIn(sheet.asking.budget_ms) * (emptyRead(overTcp) + kSilence) + waiting;
  return renewing(sheet, overTcp, talk) + sheet.asking.attempts * asking +
         (sheet.asking.oneBudgetForAll ? 1 : sheet.asking.attempts) * reading;
}

milliseconds longestTare(const ProtocolSheet& sheet, bool overTcp, Talk talk) {
  if (!sheet.commands.tare) return milliseconds{0};
  const milliseconds pressing =
      sheet.commands.tare->times * milliseconds{sheet.commands.tare->pause_ms};
  switch (sheet.commands.tare->afterwards) {
    case Command::Afterwards::Nothing: break;
    case Command::Afterwards::ReadOnce: return pressing + emptyRead(overTcp);
    case Command::Afterwards::Drain: return pressing + longestDrain(overTcp, talk);
  }
  return pressing;
}
