#pragma once

#include <cstddef>

class DataBuffer;

/// Readies Mac Arabic text (code page 10004) for conversion: each run of right-to-left characters
/// is reversed, and the right-to-left twins of ASCII digits and signs become ASCII. False if
/// memory is short.
bool prepareMacArabic(const unsigned char* p, std::size_t n, DataBuffer& out);
