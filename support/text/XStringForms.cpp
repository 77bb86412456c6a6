// How the forms of an XString are made from each other, and the way to other encodings.

#include <cstring>
#include <utility>

#include "CkCharset.h"
#include "CkUtf.h"
#include "ClsEncode.h"
#include "ContentCoding.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "Psdk.h"
#include "XString.h"

namespace {

constexpr int kUtf8 = 65001;
constexpr int kUtf16 = 1200;
constexpr int kUtf32 = 12000;
/// Numbers up to here are binary encodings, but for one EBCDIC page.
constexpr int kLastBinaryEncoding = 99;
constexpr int kEbcdicUs = 37;

bool isBinaryEncoding(int codePage) {
  return codePage >= 1 && codePage <= kLastBinaryEncoding && codePage != kEbcdicUs;
}

bool convert(int from, int to, const void* p, std::size_t n, DataBuffer& out) {
  EncodingConvert converter;
  LogNull log;
  return converter.EncConvert(from, to, p, n, out, log);
}

}  // namespace

// Readers --------------------------------------------------------------------------------------

StringBuffer& XString::getUtf8Sb() {
  if (m_utf8Ready) return m_sbUtf8;
  if (m_ansiReady) {
    DataBuffer utf8;
    utf8.setSecure(m_secure);
    convert(Psdk::getAnsiCodePage(), kUtf8, m_sbAnsi.getString(), m_sbAnsi.getSize(), utf8);
    m_sbUtf8.takeFromDb(utf8);
    m_utf8Ready = true;
  } else if (m_wideReady) {
    if (wideSize() != 0) {
      DataBuffer utf8;
      utf8.setSecure(m_secure);
      convert(m_wideIsUtf16 ? kUtf16 : kUtf32, kUtf8, m_wide.getData2(), wideSize(), utf8);
      m_sbUtf8.takeFromDb(utf8);
    } else {
      emptyForm(m_sbUtf8);
    }
    m_utf8Ready = true;
    m_sbUtf8.minimizeMemoryUsage();
  } else {
    weakClear();
  }
  return m_sbUtf8;
}

StringBuffer& XString::getUtf8Sb_rw() {
  getUtf8Sb();
  onlyUtf8();
  return m_sbUtf8;
}

const char* XString::getUtf8() { return getUtf8Sb().getString(); }

const char* XString::getModifiedUtf8() {
  bool changed = false;
  _ckUtf::ensureModifiedUtf8(getUtf8Sb(), changed);
  if (changed) onlyUtf8();
  return m_sbUtf8.getString();
}

StringBuffer& XString::getAnsiSb() {
  if (m_ansiReady) return m_sbAnsi;
  const int ansi = Psdk::getAnsiCodePage();
  if (m_utf8Ready) {
    DataBuffer bytes;
    bytes.setSecure(m_secure);
    m_ansiReady = convert(kUtf8, ansi, m_sbUtf8.getString(), m_sbUtf8.getSize(), bytes);
    m_sbAnsi.takeFromDb(bytes);
  } else if (m_wideReady) {
    DataBuffer bytes;
    bytes.setSecure(m_secure);
    if (wideSize() != 0) {
      m_ansiReady =
          convert(m_wideIsUtf16 ? kUtf16 : kUtf32, ansi, m_wide.getData2(), wideSize(), bytes);
    }
    emptyForm(m_sbAnsi);
    m_sbAnsi.append(bytes);
    m_sbAnsi.minimizeMemoryUsage();
  }
  // With no form at hand the bytes stay as they stand.
  return m_sbAnsi;
}

const char* XString::getAnsi() { return getAnsiSb().getString(); }

/// Brings the wide form into being in the width. False if no form was valid.
bool XString::makeWide(bool utf16) {
  if (m_wideReady && m_wideIsUtf16 == utf16) return true;
  const int target = utf16 ? kUtf16 : kUtf32;
  DataBuffer wide;
  wide.setSecure(m_secure);
  if (m_wideReady) {
    convert(m_wideIsUtf16 ? kUtf16 : kUtf32, target, m_wide.getData2(), wideSize(), wide);
  } else if (m_utf8Ready || m_ansiReady) {
    const StringBuffer& bytes = m_utf8Ready ? m_sbUtf8 : m_sbAnsi;
    convert(m_utf8Ready ? kUtf8 : Psdk::getAnsiCodePage(), target, bytes.getString(),
            bytes.getSize(), wide);
  } else if (utf16) {
    weakClear();
    return false;
  }
  releaseWide();
  m_wide.takeData(wide);
  m_wideIsUtf16 = utf16;
  terminateWide();
  m_wideReady = true;
  return true;
}

const std::uint16_t* XString::getUtf16_xe() {
  static constexpr std::uint16_t kEmpty = 0;
  if (!makeWide(true) || m_wide.empty()) return &kEmpty;
  return reinterpret_cast<const std::uint16_t*>(m_wide.getData2());
}

const char32_t* XString::getUtf32_xe() {
  static constexpr char32_t kEmpty = 0;
  if (!makeWide(false) || m_wide.empty()) return &kEmpty;
  return reinterpret_cast<const char32_t*>(m_wide.getData2());
}

const wchar_t* XString::getWideStr() { return reinterpret_cast<const wchar_t*>(getUtf32_xe()); }

std::uint32_t XString::getSizeUnicode() {
  getUtf32_xe();
  return wideSize();
}

int XString::getNumChars() {
  if (m_ansiReady) return static_cast<int>(m_sbAnsi.getSize());
  if (!m_wideReady) getUtf16_xe();
  return m_wideReady ? static_cast<int>(wideSize() / wideWidth()) : 0;
}

// Other encodings ------------------------------------------------------------------------------

bool XString::convertTo(int codePage, DataBuffer& out) {
  if (m_wideReady) {
    return convert(m_wideIsUtf16 ? kUtf16 : kUtf32, codePage, m_wide.getData2(), wideSize(), out);
  }
  const StringBuffer& utf8 = getUtf8Sb();
  return convert(kUtf8, codePage, utf8.getString(), utf8.getSize(), out);
}

bool XString::getConverted_cp(int codePage, DataBuffer& out) {
  if (codePage == kUtf8 && m_utf8Ready) return out.append(m_sbUtf8);
  if (m_wideReady && codePage == (m_wideIsUtf16 ? kUtf16 : kUtf32)) {
    return out.append(m_wide.getData2(), wideSize());
  }
  if (isBinaryEncoding(codePage)) {
    LogNull log;
    return _clsEncode::decodeBinary(codePage, getUtf8Sb(), out, true, log);
  }
  return convertTo(codePage, out);
}

bool XString::getConverted(const char* charset, DataBuffer& out) {
  _ckCharset target;
  return getConverted_cp(target.setByName(charset) ? target.getCodePage() : kUtf8, out);
}

bool XString::extractToDb(const char* charset, DataBuffer& out) {
  _ckCharset target;
  if (m_utf8Ready && target.setByName(charset) && target.getCodePage() == kUtf8) {
    out.takeString(m_sbUtf8);
    return true;
  }
  return getConverted(charset, out);
}

bool XString::setFromDb(const char* charset, DataBuffer& bytes) {
  _ckCharset source;
  source.setByName(charset);
  const int codePage = source.getCodePage();
  return setFromDb_cp(codePage == 0 ? Psdk::getAnsiCodePage() : codePage, bytes);
}

bool XString::setFromDb_cp(int codePage, DataBuffer& bytes) {
  if (codePage == kUtf8) {
    const int obvious = bytes.detectObviousCodePage();
    if (obvious != -1) codePage = obvious;
  }
  if (codePage == kUtf8) return takeFromUtf8Db(bytes);
  if (isBinaryEncoding(codePage)) {
    LogNull log;
    _clsEncode coder;
    coder.put_EncodingModeInt(codePage);
    return coder.encodeBinary(bytes, *this, false, log);
  }
  DataBuffer utf8;
  utf8.setSecure(m_secure);
  const bool converted = convert(codePage, kUtf8, bytes.getData2(), bytes.getSize(), utf8);
  return takeFromUtf8Db(utf8) && converted;
}

void XString::encodeBinaryText(const char* charset, int encoding) {
  LogNull log;
  DataBuffer bytes;
  bytes.setSecure(m_secure);
  extractToDb(charset, bytes);
  strongClear();
  _clsEncode coder;
  coder.put_EncodingModeInt(encoding);
  coder.encodeBinary(bytes, *this, false, log);
  getUtf8Sb_rw();
}

void XString::decodeBinaryText(const char* charset, int encoding) {
  LogNull log;
  DataBuffer bytes;
  bytes.setSecure(m_secure);
  const StringBuffer& text = m_ansiReady ? m_sbAnsi : getUtf8Sb();
  _clsEncode::decodeBinary(encoding, text, bytes, false, log);
  setFromDb(charset, bytes);
}
