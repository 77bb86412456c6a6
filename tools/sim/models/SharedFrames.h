#pragma once

#include "ScaleState.h"

/// Frames that several makers have in common.
namespace sim {

/// Weight in six digits, price in `priceDigits`, cost in six, the units first, each with `zero`
/// added: '0' for characters, 0 for numbers.
Bytes unitsFirstFrame(const Display& display, int priceDigits, char zero);

/// 02 A D sign | 0 0 1 . 2 5 0 | checksum | 03
///
/// The answer to the command AD of the scale with address A: sign ('-' or `plus`), seven places of
/// weight text, and the exclusive or of all behind the 02 as two hexadecimal characters.
Bytes addressedFrame(const Display& display, char plus);

}  // namespace sim
