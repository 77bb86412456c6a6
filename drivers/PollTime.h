#pragma once

#include <chrono>

#include "ProtocolSheet.h"

// How long the operations of a sheet may take.

/// How a scale talks that never pauses for the idle limit.
struct Talk {
  /// How long it goes on, which a drain waits out.
  std::chrono::milliseconds stretch{0};
  /// From one byte to the next.
  std::chrono::milliseconds gap{0};
};

/// The longest poll that a sheet allows, from a port that opens at once and a peer that takes part
/// in its closing: the sum of all waits.
std::chrono::milliseconds longestPoll(const ProtocolSheet& sheet, bool overTcp, Talk talk = {});

/// The longest tare command, in the same way.
std::chrono::milliseconds longestTare(const ProtocolSheet& sheet, bool overTcp, Talk talk = {});
