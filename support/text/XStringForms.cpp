// How the forms of an XString are made from each other, and the way to other encodings.

#include <cstring>
#include <utility>

#include "CkCharset.h"
#include "CkUtf.h"
#include "ClsEncode.h"
#include "CodePages.h"
#include "ContentCoding.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "Psdk.h"
#include "XString.h"

namespace {

using code_page::isBinaryEncoding;
using code_page::kUtf8;
constexpr int kUtf16 = code_page::kUtf16Le;
constexpr int kUtf32 = code_page::kUtf32Le;

int codePageOr(int otherwise, const char* charset) {
  _ckCharset named;
  named.setByName(charset);
  return named.getCodePage() == 0 ? otherwise : named.getCodePage();
}

enum class Converted { Whole, Lossy, NoMemory };

Converted convert(int from, int to, const void* p, std::size_t n, DataBuffer& out) {
  EncodingConvert converter;
  LogNull log;
  const std::uint32_t shortages = ckMemoryShortages();
  if (converter.EncConvert(from, to, p, n, out, log)) return Converted::Whole;
  return ckMemoryShortages() == shortages ? Converted::Lossy : Converted::NoMemory;
}

/// Adds a zero of `width` bytes. A block that was passed through unconverted may end inside a
/// character, which is filled up.
bool terminate(DataBuffer& wide, std::uint32_t width) {
  const std::uint64_t rest = wide.getSize() % width;
  const std::uint64_t size = wide.getSize() + (rest == 0 ? 0 : width - rest) + width;
  return !ck64_TooBigForUnsigned32(size) && wide.resize(static_cast<std::uint32_t>(size));
}

}  // namespace

// Readers --------------------------------------------------------------------------------------

/// Brings the UTF-8 form into being. False, with the other forms as they are, if memory is short.
bool XString::makeUtf8() {
  if (m_utf8Ready) return true;
  if (!m_ansiReady && !m_wideReady) {
    weakClear();
    return true;
  }
  emptyForm(m_sbUtf8);
  if (m_ansiReady || wideSize() != 0) {
    DataBuffer utf8;
    utf8.setSecure(m_secure);
    const Converted converted =
        m_ansiReady
            ? convert(Psdk::getAnsiCodePage(), kUtf8, m_sbAnsi.getString(), m_sbAnsi.getSize(),
                      utf8)
            : convert(m_wideIsUtf16 ? kUtf16 : kUtf32, kUtf8, m_wide.getData2(), wideSize(), utf8);
    if (converted == Converted::NoMemory || !m_sbUtf8.takeFromDb(utf8)) return noteShortage();
  }
  m_utf8Ready = true;
  if (!m_ansiReady) m_sbUtf8.minimizeMemoryUsage();
  return true;
}

StringBuffer& XString::getUtf8Sb() {
  makeUtf8();
  return m_sbUtf8;
}

StringBuffer& XString::getUtf8Sb_rw() {
  // Without memory the other forms go all the same: the caller is about to replace the text.
  makeUtf8();
  onlyUtf8();
  return m_sbUtf8;
}

const char* XString::getUtf8() { return getUtf8Sb().getString(); }

const char* XString::getModifiedUtf8() {
  bool changed = false;
  const std::uint32_t shortages = ckMemoryShortages();
  _ckUtf::ensureModifiedUtf8(getUtf8Sb(), changed);
  if (changed) onlyUtf8();
  if (ckMemoryShortages() != shortages) noteShortage();
  return m_sbUtf8.getString();
}

/// Brings the ANSI form into being; one that lost characters isn't kept for valid. False, with the
/// other forms as they are, if memory is short.
bool XString::makeAnsi() {
  // With no form at hand the bytes stay as they stand.
  if (m_ansiReady || (!m_utf8Ready && !m_wideReady)) return true;
  const int ansi = Psdk::getAnsiCodePage();
  emptyForm(m_sbAnsi);
  DataBuffer bytes;
  bytes.setSecure(m_secure);
  Converted converted = Converted::Lossy;
  if (m_utf8Ready) {
    converted = convert(kUtf8, ansi, m_sbUtf8.getString(), m_sbUtf8.getSize(), bytes);
  } else if (wideSize() != 0) {
    converted =
        convert(m_wideIsUtf16 ? kUtf16 : kUtf32, ansi, m_wide.getData2(), wideSize(), bytes);
  }
  if (converted == Converted::NoMemory) return noteShortage();
  if (!(m_utf8Ready ? m_sbAnsi.takeFromDb(bytes) : m_sbAnsi.append(bytes))) return noteShortage();
  if (!m_utf8Ready) m_sbAnsi.minimizeMemoryUsage();
  m_ansiReady = converted == Converted::Whole;
  return true;
}

StringBuffer& XString::getAnsiSb() {
  makeAnsi();
  return m_sbAnsi;
}

const char* XString::getAnsi() { return getAnsiSb().getString(); }

/// Brings the wide form into being in the width. False, with the forms as they are, if memory is
/// short.
bool XString::makeWide(bool utf16) {
  if (m_wideReady && m_wideIsUtf16 == utf16) return true;
  const int target = utf16 ? kUtf16 : kUtf32;
  DataBuffer wide;
  wide.setSecure(m_secure);
  Converted converted = Converted::Whole;
  if (m_wideReady) {
    converted =
        convert(m_wideIsUtf16 ? kUtf16 : kUtf32, target, m_wide.getData2(), wideSize(), wide);
  } else if (m_utf8Ready || m_ansiReady) {
    const StringBuffer& bytes = m_utf8Ready ? m_sbUtf8 : m_sbAnsi;
    converted = convert(m_utf8Ready ? kUtf8 : Psdk::getAnsiCodePage(), target, bytes.getString(),
                        bytes.getSize(), wide);
  }
  if (converted == Converted::NoMemory || !terminate(wide, utf16 ? 2 : 4)) return noteShortage();
  releaseWide();
  m_wide.takeData(wide);
  m_wideIsUtf16 = utf16;
  m_wideReady = true;
  return true;
}

const std::uint16_t* XString::getUtf16_xe() {
  static constexpr std::uint16_t kEmpty = 0;
  if (!makeWide(true)) return &kEmpty;
  return reinterpret_cast<const std::uint16_t*>(m_wide.getData2());
}

const char32_t* XString::getUtf32_xe() {
  static constexpr char32_t kEmpty = 0;
  if (!makeWide(false)) return &kEmpty;
  return reinterpret_cast<const char32_t*>(m_wide.getData2());
}

const wchar_t* XString::getWideStr() { return reinterpret_cast<const wchar_t*>(getUtf32_xe()); }

std::uint32_t XString::getSizeUnicode() { return makeWide(false) ? wideSize() : 0; }

int XString::getNumChars() {
  if (m_ansiReady) return static_cast<int>(m_sbAnsi.getSize());
  if (!m_wideReady) getUtf16_xe();
  return m_wideReady ? static_cast<int>(wideSize() / wideWidth()) : 0;
}

// Other encodings ------------------------------------------------------------------------------

bool XString::convertTo(int codePage, DataBuffer& out) {
  if (m_wideReady && codePage == (m_wideIsUtf16 ? kUtf16 : kUtf32)) {
    return out.append(m_wide.getData2(), wideSize());
  }
  if (m_wideReady && !isBinaryEncoding(codePage)) {
    return convert(m_wideIsUtf16 ? kUtf16 : kUtf32, codePage, m_wide.getData2(), wideSize(), out) ==
           Converted::Whole;
  }
  if (!makeUtf8()) return false;
  if (isBinaryEncoding(codePage)) {
    LogNull log;
    return _clsEncode::decodeBinary(codePage, m_sbUtf8, out, true, log);
  }
  return convert(kUtf8, codePage, m_sbUtf8.getString(), m_sbUtf8.getSize(), out) ==
         Converted::Whole;
}

bool XString::getConverted_cp(int codePage, DataBuffer& out) {
  const std::uint32_t size = out.getSize();
  const std::uint32_t shortages = ckMemoryShortages();
  if (codePage == kUtf8 && m_utf8Ready ? out.append(m_sbUtf8) : convertTo(codePage, out)) {
    return true;
  }
  if (ckMemoryShortages() == shortages) return false;
  out.setDataSize_CAUTION(size);
  return noteShortage();
}

bool XString::getConverted(const char* charset, DataBuffer& out) {
  return getConverted_cp(codePageOr(kUtf8, charset), out);
}

bool XString::setFromDb(const char* charset, DataBuffer& bytes) {
  return setFromDb_cp(codePageOr(Psdk::getAnsiCodePage(), charset), bytes);
}

bool XString::setFromDb_cp(int codePage, DataBuffer& bytes) {
  if (codePage == kUtf8) {
    const int obvious = bytes.detectObviousCodePage();
    if (obvious != -1) codePage = obvious;
  }
  if (codePage == kUtf8) return takeFromUtf8Db(bytes);
  DataBuffer utf8;
  utf8.setSecure(m_secure);
  const Converted converted = convert(codePage, kUtf8, bytes.getData2(), bytes.getSize(), utf8);
  if (converted == Converted::NoMemory) return noteShortage();
  return takeFromUtf8Db(utf8) && converted == Converted::Whole;
}

bool XString::encodeBinaryText(const char* charset, int encoding) {
  const std::uint32_t shortages = ckMemoryShortages();
  const int codePage = codePageOr(kUtf8, charset);
  DataBuffer bytes;
  bytes.setSecure(m_secure);
  if (codePage == kUtf8 && m_utf8Ready) {
    bytes.borrowData(m_sbUtf8.getString(), m_sbUtf8.getSize());
  } else {
    getConverted_cp(codePage, bytes);
  }
  LogNull log;
  XString encoded;
  encoded.setSecureX(m_secure);
  _clsEncode coder;
  coder.put_EncodingModeInt(encoding);
  coder.encodeBinary(bytes, encoded, false, log);
  encoded.getUtf8Sb_rw();
  if (ckMemoryShortages() != shortages) return noteShortage();
  takeX(encoded);
  return true;
}

bool XString::decodeBinaryText(const char* charset, int encoding) {
  if (!m_ansiReady && !makeUtf8()) return false;
  LogNull log;
  const std::uint32_t shortages = ckMemoryShortages();
  DataBuffer bytes;
  bytes.setSecure(m_secure);
  _clsEncode::decodeBinary(encoding, m_ansiReady ? m_sbAnsi : m_sbUtf8, bytes, false, log);
  if (ckMemoryShortages() != shortages) return noteShortage();
  return setFromDb(charset, bytes);
}
