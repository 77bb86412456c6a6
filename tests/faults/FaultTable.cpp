#include "FaultTable.h"

#include <array>

namespace {

using std::chrono::milliseconds;
using Endless = sim::Faults::Endless;

/// 9600 baud.
constexpr int kLineSpeed = 960;
constexpr milliseconds kEndless = milliseconds::max();
/// What reading a flood costs a call beside its waits, at most, with sanitizers.
constexpr milliseconds kFloodWork{1000};

/// Polls while the scale misbehaves, presses the tare key, and mends the scale.
void misbehave(Trial& trial, sim::Faults faults, Expected expected) {
  trial.scale().setFaults(faults);
  trial.poll("poll in the fault", expected);
  trial.tare("tare in the fault");
  trial.scale().setFaults({});
  trial.scale().change([](sim::ScaleState& state) { state.tare = 0.0; });
}

/// A serial line doesn't show that it is gone before somebody uses it.
void noticeOnSerial(Trial& trial) {
  if (!trial.overTcp()) trial.poll("poll that notices", Expected::RightOrNone);
}

/// The line hangs up once, around its first frame, and comes back.
void hangUpOnce(Trial& trial, sim::Faults faults) {
  faults.hangUpAfter = 1;
  faults.frames = 1;
  trial.scale().setFaults(faults);
  trial.poll("poll in the fault", Expected::RightOrNone);
  trial.scale().setFaults({});
  // However far the hanging-up has got: the line is a new one now.
  trial.scale().goAway();
  trial.scale().comeBack();
  noticeOnSerial(trial);
}

int frameSize(Trial& trial) { return static_cast<int>(trial.scale().frame().size()); }

void silence(Trial& trial) { misbehave(trial, {.silent = true}, Expected::NoAnswer); }

void cutFrame(Trial& trial) {
  const auto shorter = static_cast<std::size_t>(frameSize(trial) - 1);
  // A stream of cut frames has whole ones in it, from start byte to start byte, if nothing but the
  // start byte marks them.
  const bool lookWhole = trial.model().streams() && trial.model().checkedByte == 0;
  misbehave(trial, {.cut = shorter},
            lookWhole ? Expected::Anything : trial.ifTold(Expected::NoAnswer));
}

void corruptFrame(Trial& trial) {
  misbehave(trial, {.corruptEvery = 1}, trial.ifTold(Expected::NoAnswer));
}

void corruptOnce(Trial& trial) {
  misbehave(trial, {.corruptEvery = 1, .frames = 1}, trial.ifTold(Expected::Right));
}

void endlessGarbage(Trial& trial, int bytesPerSecond) {
  const milliseconds gap{(1000 + bytesPerSecond - 1) / bytesPerSecond};
  trial.talks({.stretch = kEndless, .gap = gap});
  misbehave(trial, {.endless = Endless::Garbage, .bytesPerSecond = bytesPerSecond},
            trial.ifTold(Expected::NoAnswer));
}

void garbageAtLineSpeed(Trial& trial) { endlessGarbage(trial, kLineSpeed); }

void garbageTrickle(Trial& trial) { endlessGarbage(trial, 50); }

void flood(Trial& trial, Endless what, Expected expected) {
  trial.talks({.stretch = kEndless}, kFloodWork);
  misbehave(trial, {.endless = what}, trial.ifTold(expected));
}

void garbageFlood(Trial& trial) { flood(trial, Endless::Garbage, Expected::NoAnswer); }

void frameFlood(Trial& trial) { flood(trial, Endless::Frames, Expected::RightOrNone); }

void oneByteAtATime(Trial& trial) {
  constexpr milliseconds kPause{5};
  trial.talks({.stretch = 2 * kPause * frameSize(trial)});
  misbehave(trial, {.dribble = kPause}, Expected::Right);
}

void hangUpBefore(Trial& trial) { hangUpOnce(trial, {.cut = 0}); }

void hangUpDuring(Trial& trial) {
  const auto half = static_cast<std::size_t>(frameSize(trial) / 2);
  hangUpOnce(trial, {.cut = half});
}

void hangUpAfter(Trial& trial) { hangUpOnce(trial, {}); }

void lineComesBack(Trial& trial) {
  trial.poll("poll before the fault", Expected::Right);
  trial.scale().goAway();
  trial.scale().comeBack();
  noticeOnSerial(trial);
}

void lineStaysAway(Trial& trial) {
  trial.poll("poll before the fault", Expected::Right);
  trial.scale().goAway();
  noticeOnSerial(trial);
  trial.poll("poll without a line", Expected::NoConnection);
  trial.tare("tare without a line");
  trial.scale().comeBack();
}

constexpr std::array kFaults = {
    Fault{.name = "silence", .run = silence},
    Fault{.name = "cut frame", .run = cutFrame},
    Fault{.name = "corrupt frame", .run = corruptFrame},
    Fault{.name = "one corrupt frame", .run = corruptOnce},
    // The longest first: a hunting read takes its time over TCP.
    Fault{.name = "endless garbage, a trickle", .run = garbageTrickle},
    Fault{.name = "endless garbage at line speed", .run = garbageAtLineSpeed},
    Fault{.name = "endless garbage, fast", .busy = true, .run = garbageFlood},
    Fault{.name = "frames faster than the line", .busy = true, .run = frameFlood},
    Fault{.name = "one byte at a time", .run = oneByteAtATime},
    Fault{.name = "hang-up before the answer", .run = hangUpBefore},
    Fault{.name = "hang-up during the answer", .run = hangUpDuring},
    Fault{.name = "hang-up after the answer", .run = hangUpAfter},
    Fault{.name = "line goes and comes back", .run = lineComesBack},
    Fault{.name = "device path gone, TCP port refuses", .run = lineStaysAway},
};

}  // namespace

std::span<const Fault> faultTable() { return kFaults; }
