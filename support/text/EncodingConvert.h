#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "UnicodeLookup.h"

class DataBuffer;
class HashConvert;
class LogBase;

/// Converts texts between code pages (Windows numbering: 65001 UTF-8, 1200 and 1201 UTF-16,
/// 12000 and 12001 UTF-32). One object for one conversion. What is neither UTF-8 nor UTF-16 goes
/// through UTF-16.
///
/// The results say whether everything could be converted; `out` gets all that could.
class EncodingConvert {
 public:
  /// What happens to a character that does not convert.
  enum ErrorAction : int {
    Drop = 0,
    Replace = 1,          ///< the bytes of setDefBytes()
    HexReference = 2,     ///< "&#x", its bytes in hexadecimal as they stand, ";"
    AlternativePage = 6,  ///< once more, to the code page of setAltDestCodepage()
    KeepBytes = 7,        ///< its bytes unchanged
    WidenByte = 8,        ///< from a single-byte page: the byte as a UTF-16 unit; else dropped
  };

  bool EncConvert(int from, int to, const void* p, std::size_t n, DataBuffer& out, LogBase& log);
  /// Puts the mark of UTF-8 or UTF-16 in front.
  bool EncConvertWithPreamble(int from, int to, const void* p, std::size_t n, DataBuffer& out,
                              LogBase& log);

  /// By names; false if one is unknown.
  bool ChConvert(const char* from, const char* to, const void* p, std::size_t n, DataBuffer& out,
                 LogBase& log);
  /// One side by name: an unknown source fails ...
  bool ChConvert2(const char* from, int to, const void* p, std::size_t n, DataBuffer& out,
                  LogBase& log);
  /// ... and an unknown target means UTF-8.
  bool ChConvert3(int from, const char* to, const void* p, std::size_t n, DataBuffer& out,
                  LogBase& log);
  bool ChConvert3_withPreamble(int from, const char* to, const void* p, std::size_t n,
                               DataBuffer& out, LogBase& log);

  bool AnsiToMultiByte(int to, const void* p, std::size_t n, DataBuffer& out, LogBase& log);
  bool MultiByteToAnsi(int from, const void* p, std::size_t n, DataBuffer& out, LogBase& log);
  bool OemToMultiByte(int to, const void* p, std::size_t n, DataBuffer& out, LogBase& log);
  bool MultiByteToOem(int from, const void* p, std::size_t n, DataBuffer& out, LogBase& log);

  void setErrorAction(int action) { m_errorAction = action; }
  void setAltDestCodepage(int codePage) { m_altDestCodePage = codePage; }
  /// Replacement bytes of ErrorAction::Replace; at most 100 are kept.
  void setDefBytes(const void* p, std::size_t n);
  /// True if something did not convert in the last EncConvert().
  bool hadError() const { return m_hadError; }

  /// Frees all code page tables. No conversion may run meanwhile.
  static void cleanupMemory();

 private:
  /// Bytes to convert.
  struct Source {
    const unsigned char* p;
    std::size_t n;

    const unsigned char* end() const { return p + n; }
  };

  /// Remembers a loss. Returns `whole`.
  bool note(bool whole) {
    if (!whole) m_hadError = true;
    return whole;
  }

  bool convert_a(int from, int to, Source source, DataBuffer& out, LogBase& log);
  bool convertNormalised(int from, int to, Source source, DataBuffer& out, LogBase& log);
  bool pivot(int from, int to, Source source, DataBuffer& out, LogBase& log);
  bool convertToUtf32(int from, bool bigEndian, Source source, DataBuffer& out, LogBase& log);

  bool cv_utf8_to_utf16(Source source, DataBuffer& out, LogBase& log);
  bool cv_utf16_to_utf8(Source source, DataBuffer& out);
  bool convertToUnicodeHC(int codePage, Source source, DataBuffer& out, LogBase& log);
  bool convertToUnicodeByLookup(UnicodeLookup table, Source source, DataBuffer& out, LogBase& log);
  bool convertToUnicodeHCVar(const HashConvert& table, Source source, DataBuffer& out,
                             LogBase& log);
  bool convertFromUnicodeHC(int codePage, Source source, DataBuffer& out, LogBase& log);
  bool convertFromUnicodeHC2(const HashConvert& table, Source source, DataBuffer& out,
                             LogBase& log);

  // One pass in place of a pivot, for the conversions of settings, ids and messages. Each gives
  // what the pivot gives; its definition says why.
  template <std::size_t mostBytes, auto store>
  bool singleByteTo(UnicodeLookup table, Source source, DataBuffer& out);
  bool singleByteToUtf8(UnicodeLookup table, Source source, DataBuffer& out);
  bool singleByteToUtf32(UnicodeLookup table, Source source, DataBuffer& out);
  bool utf8ToTable(const HashConvert& table, Source& source, DataBuffer& out, LogBase& log);

  void noteIllegalUtf8(LogBase& log);
  /// A character of source code page `from` did not convert.
  void handleError(int from, Source character, DataBuffer& out, LogBase& log);
  void writeErrorBytes(const void* p, std::size_t n, DataBuffer& out) const;
  void writeHexReference(Source character, DataBuffer& out) const;

  /// Surrogate pairs become one 4-byte sequence of UTF-8.
  bool m_surrogatesTo4Byte = true;
  int m_errorAction = Drop;
  int m_altDestCodePage = 0;
  std::size_t m_defBytesLen = 0;
  std::array<unsigned char, 100> m_defBytes = {};
  int m_fromCodePage = 0;
  int m_toCodePage = 0;
  /// First stage of a pivot: what an error action writes is marked, to pass the second stage.
  bool m_markErrors = false;
  /// Second stage of a pivot: marked bytes are passed through.
  bool m_unmarkErrors = false;
  bool m_hadError = false;
};
