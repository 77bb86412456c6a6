// The loops of EncodingConvert over characters, and what happens to those that don't convert.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "CkUtf.h"
#include "CodePageTables.h"
#include "CodePages.h"
#include "ContentCoding.h"
#include "ConversionOutput.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "HashConvert.h"
#include "LogBase.h"
#include "StringBuffer.h"
#include "UnitIo.h"

namespace {

using code_page::kUtf16Le;
using code_page::kUtf8;

// What the characters of each loop grow to.
constexpr ConversionOutput::Growth kUtf8ToUtf16{2, 1};  ///< a byte that stands for itself
constexpr ConversionOutput::Growth kUtf16ToUtf8{3, 2};
constexpr ConversionOutput::Growth kTableToUtf16{2, 1};
constexpr ConversionOutput::Growth kUtf16ToTable{1, 1};
constexpr ConversionOutput::Growth kUtf8ToTable{2,
                                                1};  ///< a byte that stands for itself, to a pair

/// Stand in front of bytes that pass the second stage of a pivot unconverted, with a length byte
/// behind them. The reader of code pages looks for the bytes, that of UTF-8 for the unit, which
/// has them the other way round.
constexpr unsigned char kErrorMark[] = {0xFD, 0xEF};
constexpr std::uint16_t kErrorMarkOfTables = 0xEFFD;
constexpr std::uint16_t kErrorMarkOfUtf8 = 0xFDEF;
constexpr std::size_t kMostMarkedBytes = 5;
/// Mark and length byte.
constexpr std::size_t kErrorMarkHead = sizeof kErrorMark + 1;

/// Writes a code point to UTF-8 where a surrogate counts as a character of its own.
inline unsigned char* storeUtf8Bmp(unsigned char* to, std::uint32_t unit) {
  return unit < 0x800 ? storeUtf8Below800(to, unit) : storeUtf8Of3(to, unit);
}

/// Writes one byte, or two of a pair, without a branch: the byte behind a single one is
/// overwritten by the next character.
inline unsigned char* storeBytes(unsigned char* to, std::uint16_t value) {
  const bool pair = value > 0xFF;
  to[0] = static_cast<unsigned char>(pair ? value >> 8 : value);
  to[1] = static_cast<unsigned char>(value);
  return to + 1 + pair;
}

/// The bytes behind a mark at `p`, as far as they are there.
std::string_view markedBytes(const unsigned char* p, std::size_t left) {
  const std::size_t length = std::min<std::size_t>(p[sizeof kErrorMark], left - kErrorMarkHead);
  return {reinterpret_cast<const char*>(p) + kErrorMarkHead, length};
}

/// Decodes characters of one and two bytes, nearly all of most texts, up to `stop`, and gives each
/// to `take(unit)` until that is false. Stops at a longer one, one that is cut, and a NUL in the
/// second byte. Words and what is between them are runs of one length, each with a loop of its own.
template <typename Take>
inline void takeShort(const unsigned char*& p, const unsigned char* stop, Take take) {
  for (const unsigned char* begin = nullptr; p != begin;) {
    begin = p;
    while (stop - p > 1 && (p[0] & 0xE0) == 0xC0 && p[1] != 0) {
      if (!take(((p[0] & 0x1FU) << 6) | (p[1] & 0x3FU))) return;
      p += 2;
    }
    while (p < stop && p[0] < 0x80) {
      if (!take(p[0])) return;
      ++p;
    }
  }
}

}  // namespace

// Errors ---------------------------------------------------------------------------------------

void EncodingConvert::writeErrorBytes(const void* p, std::size_t n, DataBuffer& out) const {
  if (n == 0) return;
  if (m_markErrors) {
    out.append(kErrorMark, sizeof kErrorMark);
    out.push_back(static_cast<unsigned char>(n));
  }
  out.append(p, n);
}

void EncodingConvert::writeHexReference(Source character, DataBuffer& out) const {
  StringBuffer text("&#x");
  text.setSecureBuf(out.getSecure());
  ContentCoding::encodeHex(character.p, character.n, HexStyle::Upper, text);
  text.appendChar(';');
  writeErrorBytes(text.getString(), text.getSize(), out);
}

void EncodingConvert::handleError(int from, Source character, DataBuffer& out, LogBase& log) {
  switch (m_errorAction) {
    case Replace: writeErrorBytes(m_defBytes.data(), m_defBytesLen, out); break;
    case HexReference: writeHexReference(character, out); break;
    case AlternativePage:
      if (!m_unmarkErrors) {
        EncodingConvert again;
        again.EncConvert(from, m_altDestCodePage != 0 ? m_altDestCodePage : m_toCodePage,
                         character.p, character.n, out, log);
      }
      break;
    case KeepBytes: writeErrorBytes(character.p, character.n, out); break;
    case WidenByte: {
      UnicodeLookup table;
      if (singleByteToUnicode(from, table)) {
        out.appendChar2(static_cast<char>(character.p[0]), '\0');
      }
      break;
    }
    default: break;
  }
}

void EncodingConvert::noteIllegalUtf8(LogBase& log) {
  m_hadError = true;
  if (log.m_verboseEncoding) {
    log.LogError("Found invalid utf-8 when trying to convert to utf-16.");
  }
}

// Each loop converts piece by piece. A character for an error action ends its piece, since what is
// written for it has no bound that the piece could have reckoned with.

// UTF-8 and UTF-16 -----------------------------------------------------------------------------

bool EncodingConvert::cv_utf8_to_utf16(Source source, DataBuffer& out, LogBase& log) {
  const unsigned char* p = source.p;
  const unsigned char* const end = source.end();
  ConversionOutput output(out, end, kUtf8ToUtf16);
  while (p != end) {
    const ConversionOutput::Piece piece = output.begin(p);
    const unsigned char* const stop = piece.stop;
    unsigned char* to = piece.to;
    if (to == nullptr) return false;
    Source bad{p, 0};
    for (;;) {
      takeShort(p, stop, [&to](std::uint32_t unit) {
        to = storeUnit(to, unit);
        return true;
      });
      if (p >= stop) break;
      const std::size_t rest = static_cast<std::size_t>(end - p);
      const _ckUtf::Utf16Character c = _ckUtf::utf16FromUtf8(p, rest);
      for (int i = 0; i < c.numUnits; ++i) to = storeUnit(to, c.units[i]);
      if (c.numUnits == 0) {
        noteIllegalUtf8(log);
        if (m_errorAction != Drop) {
          bad = {p, _ckUtf::NumUtf8Bytes(p, rest)};
          break;
        }
      }
      p += c.numBytes;
    }
    output.keep(to);
    if (bad.n != 0) handleError(kUtf8, bad, out, log);
    p += bad.n;
  }
  return true;
}

bool EncodingConvert::cv_utf16_to_utf8(Source source, DataBuffer& out) {
  const bool pairsTo4Bytes = g_allow_4byte_utf8 && m_surrogatesTo4Byte;
  const unsigned char* p = source.p;
  const unsigned char* const end = source.end();
  ConversionOutput output(out, end, kUtf16ToUtf8);
  while (end - p > 1) {
    const ConversionOutput::Piece piece = output.begin(p);
    const unsigned char* const stop = piece.stop;
    unsigned char* to = piece.to;
    if (to == nullptr) return false;
    while (stop - p > 1) {
      const std::uint32_t unit = loadUnit(p);
      if (unit < 0x800) {
        if (unit != 0) to = storeUtf8Below800(to, unit);
        p += 2;
        continue;
      }
      const std::size_t rest = static_cast<std::size_t>(end - p);
      if (isHighSurrogate(unit) && rest >= 4) {
        const std::uint32_t next = loadUnit(p + 2);
        if (pairsTo4Bytes && isLowSurrogate(next)) {
          to += _ckUtf::oneUtf32ToUtf8(codePointOf(unit, next), to);
        } else {
          to = storeUtf8Of3(storeUtf8Of3(to, unit), next);
        }
        p += 4;
      } else if (m_unmarkErrors && unit == kErrorMarkOfUtf8 && rest >= 4 &&
                 p[sizeof kErrorMark] <= kMostMarkedBytes) {
        const std::string_view bytes = markedBytes(p, rest);
        to = std::copy(bytes.begin(), bytes.end(), to);
        p += kErrorMarkHead + bytes.size();
      } else {
        to = storeUtf8Of3(to, unit);
        p += 2;
      }
    }
    output.keep(to);
  }
  return source.n % 2 == 0;
}

// Code pages to Unicode ------------------------------------------------------------------------

bool EncodingConvert::convertToUnicodeHC(int codePage, Source source, DataBuffer& out,
                                         LogBase& log) {
  UnicodeLookup bytes;
  if (singleByteToUnicode(codePage, bytes)) {
    return convertToUnicodeByLookup(bytes, source, out, log);
  }
  const HashConvert* const pairs = ensureHashToUnicode(codePage);
  return pairs != nullptr && convertToUnicodeHCVar(*pairs, source, out, log);
}

bool EncodingConvert::convertToUnicodeByLookup(UnicodeLookup table, Source source, DataBuffer& out,
                                               LogBase& log) {
  const unsigned char* p = source.p;
  const unsigned char* const end = source.end();
  ConversionOutput output(out, end, kTableToUtf16);
  while (p != end) {
    const ConversionOutput::Piece piece = output.begin(p);
    const unsigned char* const stop = piece.stop;
    unsigned char* to = piece.to;
    if (to == nullptr) return false;
    Source bad{p, 0};
    for (; p < stop; ++p) {
      const std::uint16_t unit = table[*p];
      if (UnicodeLookup::isDefined(*p, unit)) {
        to = storeUnit(to, unit);
        continue;
      }
      m_hadError = true;
      if (m_errorAction != Drop) {
        bad = {p, 1};
        break;
      }
    }
    output.keep(to);
    if (bad.n != 0) handleError(m_fromCodePage, bad, out, log);
    p += bad.n;
  }
  return true;
}

bool EncodingConvert::convertToUnicodeHCVar(const HashConvert& table, Source source,
                                            DataBuffer& out, LogBase& log) {
  const unsigned char* p = source.p;
  const unsigned char* const end = source.end();
  ConversionOutput output(out, end, kTableToUtf16);
  while (p != end) {
    const ConversionOutput::Piece piece = output.begin(p);
    const unsigned char* const stop = piece.stop;
    unsigned char* to = piece.to;
    if (to == nullptr) return false;
    Source bad{p, 0};
    while (p < stop) {
      if (table.isLowerAscii() && *p < 0x80) {
        to = storeUnit(to, *p++);
        continue;
      }
      if (end - p > 1) {
        const std::uint16_t unit = table.hcLookup(static_cast<std::uint16_t>(p[0] << 8 | p[1]));
        if (unit != 0) {
          to = storeUnit(to, unit);
          p += 2;
          continue;
        }
      }
      const std::uint16_t unit = table.singleBytes()[*p];
      if (UnicodeLookup::isDefined(*p, unit)) {
        to = storeUnit(to, unit);
        ++p;
        continue;
      }
      m_hadError = true;
      if (m_errorAction != Drop) {
        const std::size_t width = code_page::skipsPairs(table.codePage()) ? 2 : 1;
        bad = {p, std::min(width, static_cast<std::size_t>(end - p))};
        break;
      }
      ++p;
    }
    output.keep(to);
    if (bad.n != 0) handleError(table.codePage(), bad, out, log);
    p += bad.n;
  }
  return true;
}

// Unicode to code pages ------------------------------------------------------------------------

bool EncodingConvert::convertFromUnicodeHC(int codePage, Source source, DataBuffer& out,
                                           LogBase& log) {
  const HashConvert* const table = ensureHashFromUnicode(codePage);
  return table != nullptr && convertFromUnicodeHC2(*table, source, out, log);
}

bool EncodingConvert::convertFromUnicodeHC2(const HashConvert& table, Source source,
                                            DataBuffer& out, LogBase& log) {
  // A last byte alone is no character; only if there is nothing else is that a failure.
  if (source.n == 1) return false;
  bool whole = true;
  const unsigned char* p = source.p;
  const unsigned char* const end = source.end();
  ConversionOutput output(out, end, kUtf16ToTable);
  while (end - p > 1) {
    const ConversionOutput::Piece piece = output.begin(p);
    const unsigned char* const stop = piece.stop;
    unsigned char* to = piece.to;
    if (to == nullptr) return false;
    Source bad{p, 0};
    while (stop - p > 1) {
      const std::uint16_t unit = loadUnit(p);
      const std::uint16_t bytes = table.hcLookup(unit);
      if (bytes != 0) {
        to = storeBytes(to, bytes);
        p += 2;
        continue;
      }
      if (unit == 0) {
        *to++ = 0;
        p += 2;
        continue;
      }
      const std::size_t left = static_cast<std::size_t>(end - p);
      if (m_unmarkErrors && unit == kErrorMarkOfTables && left >= kErrorMarkHead &&
          p[sizeof kErrorMark] <= kMostMarkedBytes) {
        const std::string_view marked = markedBytes(p, left);
        to = std::copy(marked.begin(), marked.end(), to);
        p += kErrorMarkHead + marked.size();
        continue;
      }
      m_hadError = true;
      whole = false;
      if (m_errorAction != Drop) {
        bad = {p, 2};
        break;
      }
      p += 2;
    }
    output.keep(to);
    if (bad.n != 0) handleError(kUtf16Le, bad, out, log);
    p += bad.n;
  }
  return whole;
}

// One pass ---------------------------------------------------------------------------------------

/// Gives what the pivot gives: single-byte tables hold neither surrogates nor the error mark, so
/// that each unit is a character of its own, which no second stage looks at closer. Undefined
/// bytes are dropped and noted by the first stage, NUL is dropped by the way through UTF-8.
/// `store` writes a code point in at most `mostBytes`.
template <std::size_t mostBytes, auto store>
bool EncodingConvert::singleByteTo(UnicodeLookup table, Source source, DataBuffer& out) {
  const unsigned char* p = source.p;
  const unsigned char* const end = source.end();
  ConversionOutput output(out, end, {mostBytes, 1});
  while (p != end) {
    const ConversionOutput::Piece piece = output.begin(p);
    unsigned char* to = piece.to;
    if (to == nullptr) return false;
    for (const unsigned char* const stop = piece.stop; p != stop; ++p) {
      const std::uint32_t unit = table[*p];
      if (unit != 0) {
        to = store(to, unit);
      } else if (*p != 0) {
        m_hadError = true;
      }
    }
    output.keep(to);
  }
  return true;
}

bool EncodingConvert::singleByteToUtf8(UnicodeLookup table, Source source, DataBuffer& out) {
  return singleByteTo<3, storeUtf8Bmp>(table, source, out);
}

bool EncodingConvert::singleByteToUtf32(UnicodeLookup table, Source source, DataBuffer& out) {
  return singleByteTo<4, storeUtf32>(table, source, out);
}

/// Gives what the pivot gives: each character is read as its first stage does, with the same note
/// and message for an illegal one, and its units are looked up as in the second. Only behind a
/// unit that looks like the error mark would that take bytes instead of units: there this way
/// ends, `source` becomes the rest, and the pivot goes on.
bool EncodingConvert::utf8ToTable(const HashConvert& table, Source& source, DataBuffer& out,
                                  LogBase& log) {
  bool whole = true;
  const unsigned char* p = source.p;
  const unsigned char* const end = source.end();
  source = {end, 0};
  ConversionOutput output(out, end, kUtf8ToTable);
  while (p != end && source.n == 0) {
    const ConversionOutput::Piece piece = output.begin(p);
    const unsigned char* const stop = piece.stop;
    unsigned char* to = piece.to;
    if (to == nullptr) return false;
    for (;;) {
      takeShort(p, stop, [&](std::uint32_t unit) {
        const std::uint8_t byte = table.byteOfShort(unit);
        if (byte == 0) return false;
        *to++ = byte;
        return true;
      });
      if (p >= stop) break;
      const std::size_t left = static_cast<std::size_t>(end - p);
      const auto c = _ckUtf::utf16FromUtf8(p, left);
      if (c.numUnits == 0) noteIllegalUtf8(log);
      if (c.numUnits == 1 && c.units[0] == kErrorMarkOfTables) {
        source = {p, left};
        break;
      }
      for (int i = 0; i < c.numUnits; ++i) {
        const std::uint16_t bytes = table.hcLookup(c.units[i]);
        if (bytes != 0) {
          to = storeBytes(to, bytes);
        } else if (c.units[i] == 0) {
          *to++ = 0;
        } else {
          whole = note(false);
        }
      }
      p += c.numBytes;
    }
    output.keep(to);
  }
  return whole;
}
