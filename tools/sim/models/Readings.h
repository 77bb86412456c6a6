#pragma once

#include <cstdint>

#include "Language.h"
#include "ScaleState.h"

/// What the component makes of the weights on the wire. Written from the protocols: the order of
/// the floating-point steps counts, since some weights are cut and not rounded.
namespace sim {

/// A decimal text in kilograms, read as its whole part plus its fraction: kilograms.
double kilogramsAsWritten(std::int64_t units, int decimals);
/// The same times 1000, cut to whole grams: 1.001 reads as 1000, since it lies just below.
double gramsCut(std::int64_t units, int decimals);
/// Digits without point and a code for the point's place: exact grams.
double gramsByDecimalCode(std::int64_t units, int decimals);
/// Digits without point, times 0.1 for each decimal: kilograms.
double kilogramsByFactor(std::int64_t units, int decimals);
/// The number on the wire as it stands.
double rawCount(std::int64_t units, int decimals);
/// The digits with their point left out, times 1000.
double digitsRunTogether(std::int64_t units, int decimals);

/// Overload is result code 7 and leaves all values at zero.
void overloadIsCode7(const Display& display, Reading& reading);

/// A request of up to 300 bytes that waits for an end mark never ends well over TCP.
extern const Text kEndMarkNeedsSerialLine;

}  // namespace sim
