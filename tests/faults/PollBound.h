#pragma once

#include <chrono>

#include "ProtocolSheet.h"

/// The longest poll that a sheet allows, from a port that opens at once and a peer that takes part
/// in its closing: the sum of all waits. `talk` is how long at a stretch the scale sends bytes with
/// less than the idle limit between them, which a drain waits out.
std::chrono::milliseconds longestPoll(const ProtocolSheet& sheet, bool overTcp,
                                      std::chrono::milliseconds talk = std::chrono::milliseconds{
                                          0});

/// The longest tare command, in the same way.
std::chrono::milliseconds longestTare(const ProtocolSheet& sheet, bool overTcp,
                                      std::chrono::milliseconds talk = std::chrono::milliseconds{
                                          0});
