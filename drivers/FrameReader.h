#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "ComLanPort.h"
#include "ReadStyle.h"

/// A line that hasn't fallen silent for as long as an answer may take never will. What has piled up
/// between the scale and the port is through in a fraction of this.
inline constexpr int kLongestDrain_ms = kLongestBudget_ms;

/// What a flooded connection has waiting when a drain's time is over; no scale talks so fast.
inline constexpr std::size_t kBacklog = 1024;
inline constexpr int kBacklog_ms = 10;

/// Throws away what waits on the line: reads `readSize` bytes at a time until nothing comes, or
/// until `kLongestDrain_ms` have passed, which a flooded connection, one that fills a read, always
/// takes. True if a backlog was waiting even then.
bool drain(COrbComLanPort& port, std::size_t readSize);

/// Reads one answer into `frame` (at least as long as the style's frame) and returns the number
/// of bytes in it. Sleeps while the line is silent, and takes what waiting costs off `budget_ms`.
std::size_t readFrame(COrbComLanPort& port, const ReadStyle& style, int& budget_ms,
                      std::span<std::uint8_t> frame);
