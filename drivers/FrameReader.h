#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "ComLanPort.h"
#include "ReadStyle.h"

/// Throws away what waits on the line: reads `readSize` bytes at a time until nothing comes. A
/// line that never falls silent is left after a bounded number of reads.
void drain(COrbComLanPort& port, std::size_t readSize);

/// Reads one answer into `frame` (at least as long as the style's frame) and returns the number
/// of bytes in it. Sleeps while the line is silent, and takes what waiting costs off `budget_ms`.
std::size_t readFrame(COrbComLanPort& port, const ReadStyle& style, int& budget_ms,
                      std::span<std::uint8_t> frame);
