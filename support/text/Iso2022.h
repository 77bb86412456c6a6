#pragma once

#include <cstddef>

class DataBuffer;

/// Mail encodings of Japanese, as state machines over Shift-JIS (code page 932). Each returns
/// false if something was dropped.
class Japanese {
 public:
  static bool Iso2022ToShiftJis(const unsigned char* p, std::size_t n, DataBuffer& out);
  /// 50220 writes half-width katakana as full-width ones, 50221 by an escape sequence and 50222
  /// by shift characters.
  static bool ShiftJisToIso2022(int codePage, const unsigned char* p, std::size_t n,
                                DataBuffer& out);
};

/// The mail encoding of Korean, over the 8-bit form of KS X 1001 (a part of code page 949).
class Korean {
 public:
  static bool Iso2022ToKsc(const unsigned char* p, std::size_t n, DataBuffer& out);
  static bool KscToIso2022(const unsigned char* p, std::size_t n, DataBuffer& out);
};
