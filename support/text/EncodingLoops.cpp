// The loops of EncodingConvert over characters, and what happens to those that don't convert.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "CkUtf.h"
#include "CodePageTables.h"
#include "ContentCoding.h"
#include "ConversionOutput.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "HashConvert.h"
#include "LogBase.h"
#include "StringBuffer.h"
#include "UnitIo.h"

namespace {

/// Stand in front of bytes that pass the second stage of a pivot unconverted, with a length byte
/// behind them. The reader of code pages looks for the bytes, that of UTF-8 for the unit, which
/// has them the other way round.
constexpr unsigned char kMark[] = {0xFD, 0xEF};
constexpr std::uint16_t kMarkOfTables = 0xEFFD;
constexpr std::uint16_t kMarkOfUtf8 = 0xFDEF;
constexpr std::size_t kMostMarkedBytes = 5;
/// Mark and length byte.
constexpr std::size_t kMarkHead = sizeof kMark + 1;

constexpr int kUtf16Le = 1200;

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

/// Code pages whose unknown characters take two bytes with them.
bool skipsPairs(int codePage) {
  constexpr int kPages[] = {932, 936, 949, 950, 51932, 51936, 51949};
  return std::find(std::begin(kPages), std::end(kPages), codePage) != std::end(kPages);
}

/// The bytes behind a mark at `p`, as far as they are there.
std::string_view markedBytes(const unsigned char* p, std::size_t left) {
  const std::size_t length = std::min<std::size_t>(p[sizeof kMark], left - kMarkHead);
  return {reinterpret_cast<const char*>(p) + kMarkHead, length};
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
    out.append(kMark, sizeof kMark);
    out.push_back(static_cast<unsigned char>(n));
  }
  out.append(p, n);
}

void EncodingConvert::writeHexReference(Source character, DataBuffer& out) const {
  StringBuffer text("&#x");
  ContentCoding::encodeHex(character.p, character.n, HexStyle::Upper, text);
  text.appendChar(';');
  writeErrorBytes(text.getString(), text.getSize(), out);
}

void EncodingConvert::handleError(int from, Source character, DataBuffer& out, LogBase& log) {
  switch (m_errorAction) {
    case Replace: writeErrorBytes(m_defBytes.data(), m_defBytesLen, out); break;
    case HexReference:
      if (from == kUtf16Le && character.n == 2) {
        // As the number of the character, high byte first.
        const unsigned char bytes[] = {character.p[1], character.p[0]};
        writeHexReference({bytes, sizeof bytes}, out);
      } else {
        writeHexReference(character, out);
      }
      break;
    case AlternativePage:
      if (!m_unmarkErrors) {
        EncodingConvert again;
        again.EncConvert(from, m_altDestCodePage != 0 ? m_altDestCodePage : m_toCodePage,
                         character.p, character.n, out, log);
      }
      break;
    case KeepBytes: writeErrorBytes(character.p, character.n, out); break;
    case WidenByte:
      if (character.n == 1) out.appendChar2(static_cast<char>(character.p[0]), '\0');
      break;
    default: break;
  }
}

// UTF-8 and UTF-16 -----------------------------------------------------------------------------

bool EncodingConvert::cv_utf8_to_utf16(Source source, DataBuffer& out, LogBase& log) {
  ConversionOutput output(out);
  const unsigned char* p = source.p;
  const unsigned char* const end = p + source.n;
  while (p != end) {
    const std::size_t left = static_cast<std::size_t>(end - p);
    const unsigned char* const stop = p + std::min(left, ConversionOutput::kPiece);
    unsigned char* to = output.reserve(static_cast<std::size_t>(stop - p) * 2, left * 2);
    if (to == nullptr) return false;
    for (;;) {
      takeShort(p, stop, [&to](std::uint32_t unit) {
        to = storeUnit(to, unit);
        return true;
      });
      if (p >= stop) break;
      const std::size_t rest = static_cast<std::size_t>(end - p);
      const _ckUtf::Utf16Character c = _ckUtf::utf16FromUtf8(p, rest);
      for (int i = 0; i < c.numUnits; ++i) to = storeUnit(to, c.units[i]);
      std::size_t used = c.numBytes;
      if (c.numUnits == 0) {
        m_hadError = true;
        if (log.m_verboseEncoding) {
          log.LogError("Found invalid utf-8 when trying to convert to utf-16.");
        }
        if (m_errorAction != Drop) {
          used = _ckUtf::NumUtf8Bytes(p, rest);
          output.keep(to);
          handleError(65001, {p, used}, out, log);
          to = output.reserve(static_cast<std::size_t>(end - p) * 2, 0);
          if (to == nullptr) return false;
        }
      }
      p += used;
    }
    output.keep(to);
  }
  return true;
}

bool EncodingConvert::cv_utf16_to_utf8(Source source, DataBuffer& out) {
  if (source.n == 1) return false;
  const bool pairsTo4Bytes = g_allow_4byte_utf8 && m_surrogatesTo4Byte;
  ConversionOutput output(out);
  const unsigned char* p = source.p;
  const unsigned char* const end = p + source.n;
  while (end - p > 1) {
    const std::size_t left = static_cast<std::size_t>(end - p);
    const unsigned char* const stop = p + std::min(left, ConversionOutput::kPiece);
    // Three bytes for each unit, and the last character may be a pair that begins before stop.
    constexpr std::size_t kPair = 6;
    unsigned char* to =
        output.reserve(static_cast<std::size_t>(stop - p) / 2 * 3 + kPair, left / 2 * 3 + kPair);
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
      } else if (m_unmarkErrors && unit == kMarkOfUtf8 && rest >= 4 &&
                 p[sizeof kMark] <= kMostMarkedBytes) {
        const std::string_view bytes = markedBytes(p, rest);
        to = std::copy(bytes.begin(), bytes.end(), to);
        p += kMarkHead + bytes.size();
      } else {
        to = storeUtf8Of3(to, unit);
        p += 2;
      }
    }
    output.keep(to);
  }
  return (source.n & 1) == 0;
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
  ConversionOutput output(out);
  unsigned char* to = output.reserve(source.n * 2, source.n * 2);
  if (to == nullptr) return false;
  for (const unsigned char* p = source.p; p != source.p + source.n; ++p) {
    const std::uint16_t unit = table[*p];
    if (UnicodeLookup::isDefined(*p, unit)) {
      to = storeUnit(to, unit);
      continue;
    }
    m_hadError = true;
    if (m_errorAction == Drop) continue;
    output.keep(to);
    handleError(m_fromCodePage, {p, 1}, out, log);
    to = output.reserve(static_cast<std::size_t>(source.p + source.n - p) * 2, 0);
    if (to == nullptr) return false;
  }
  output.keep(to);
  return true;
}

bool EncodingConvert::convertToUnicodeHCVar(const HashConvert& table, Source source,
                                            DataBuffer& out, LogBase& log) {
  ConversionOutput output(out);
  unsigned char* to = output.reserve(source.n * 2, source.n * 2);
  if (to == nullptr) return false;
  const unsigned char* const end = source.p + source.n;
  for (const unsigned char* p = source.p; p != end;) {
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
    std::size_t used = 1;
    if (m_errorAction != Drop) {
      const std::size_t left = static_cast<std::size_t>(end - p);
      used = skipsPairs(table.codePage()) ? std::min<std::size_t>(2, left) : 1;
      output.keep(to);
      handleError(table.codePage(), {p, used}, out, log);
      to = output.reserve(left * 2, 0);
      if (to == nullptr) return false;
    }
    p += used;
  }
  output.keep(to);
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
  if (source.n == 1) return false;
  ConversionOutput output(out);
  unsigned char* to = output.reserve(source.n + 1, source.n + 1);
  if (to == nullptr) return false;
  bool whole = (source.n & 1) == 0;
  const unsigned char* const end = source.p + source.n;
  for (const unsigned char* p = source.p; end - p > 1;) {
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
    if (m_unmarkErrors && unit == kMarkOfTables && left >= kMarkHead &&
        p[sizeof kMark] <= kMostMarkedBytes) {
      const std::string_view marked = markedBytes(p, left);
      to = std::copy(marked.begin(), marked.end(), to);
      p += kMarkHead + marked.size();
      continue;
    }
    m_hadError = true;
    whole = false;
    if (m_errorAction != Drop) {
      output.keep(to);
      handleError(kUtf16Le, {p, 2}, out, log);
      to = output.reserve(left + 1, 0);
      if (to == nullptr) return false;
    }
    p += 2;
  }
  output.keep(to);
  return whole;
}

// One pass ---------------------------------------------------------------------------------------

/// `store` writes a code point in at most `mostBytes`.
template <std::size_t mostBytes, typename Store>
bool EncodingConvert::singleByteTo(UnicodeLookup table, Source source, DataBuffer& out,
                                   Store store) {
  ConversionOutput output(out);
  const unsigned char* p = source.p;
  const unsigned char* const end = p + source.n;
  while (p != end) {
    const std::size_t left = static_cast<std::size_t>(end - p);
    const unsigned char* const stop = p + std::min(left, ConversionOutput::kPiece);
    const std::size_t piece = static_cast<std::size_t>(stop - p);
    unsigned char* to = output.reserve(piece * mostBytes, left * mostBytes);
    if (to == nullptr) return false;
    for (; p != stop; ++p) {
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
  const auto store = [](unsigned char* to, std::uint32_t unit) { return storeUtf8Bmp(to, unit); };
  return singleByteTo<3>(table, source, out, store);
}

bool EncodingConvert::singleByteToUtf32(UnicodeLookup table, Source source, DataBuffer& out) {
  const auto store = [](unsigned char* to, std::uint32_t unit) { return storeUtf32(to, unit); };
  return singleByteTo<4>(table, source, out, store);
}

/// False if the text holds what only a pivot can convert; then nothing was written.
bool EncodingConvert::utf8ToTable(const HashConvert& table, Source source, DataBuffer& out,
                                  bool& converted) {
  const std::uint32_t before = out.getSize();
  ConversionOutput output(out);
  const unsigned char* p = source.p;
  const unsigned char* const end = p + source.n;
  while (p != end) {
    // A byte of UTF-8 becomes one byte at most, but for two-byte characters of double-byte pages.
    const std::size_t left = static_cast<std::size_t>(end - p);
    const unsigned char* const stop = p + std::min(left, ConversionOutput::kPiece);
    unsigned char* to = output.reserve(static_cast<std::size_t>(stop - p) * 2, left * 2);
    if (to == nullptr) {
      converted = false;
      return true;
    }
    for (;;) {
      takeShort(p, stop, [&](std::uint32_t unit) {
        const std::uint8_t byte = table.byteOfShort(unit);
        if (byte == 0) return false;
        *to++ = byte;
        return true;
      });
      if (p >= stop) break;
      const auto c = _ckUtf::utf16FromUtf8(p, static_cast<std::size_t>(end - p));
      if (c.numUnits == 0) m_hadError = true;
      for (int i = 0; i < c.numUnits; ++i) {
        const std::uint16_t bytes = table.hcLookup(c.units[i]);
        if (bytes != 0) {
          to = storeBytes(to, bytes);
        } else if (c.units[i] == 0) {
          *to++ = 0;
        } else if (c.units[i] == kMarkOfTables) {
          output.keep(to);
          out.setDataSize_CAUTION(before);
          m_hadError = false;
          return false;
        } else {
          m_hadError = true;
          converted = false;
        }
      }
      p += c.numBytes;
    }
    output.keep(to);
  }
  return true;
}
