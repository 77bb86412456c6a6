#pragma once

#include <cstdint>

/// Milliseconds of a clock that no setting of the time moves, cut to 32 bits: it wraps after
/// 49 days, so that only differences mean anything.
std::uint32_t ckTickCount();
