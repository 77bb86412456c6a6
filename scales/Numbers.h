#pragma once

#include <cstdint>
#include <string_view>

/// Reads a number as a scale or a person writes it: blanks and minus signs in front are stepped
/// over (any minus makes the number negative), "." and "," both separate the fraction, and the
/// first character that fits nowhere ends the number. At most 50 characters are looked at; the
/// end of the text counts as a NUL. 0.0 for a text without a number.
double iGatof(std::string_view text);
/// The same for a NUL-terminated text; a null pointer gives 0.0.
double iGatof(const char* text);

/// Cuts towards zero to a whole number of 64 or 32 bits. What doesn't fit gives the smallest
/// number of that width, as the processor's own conversion does.
std::int64_t cutTo64(double value);
std::int32_t cutTo32(double value);
