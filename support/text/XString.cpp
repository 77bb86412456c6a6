#include "XString.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <new>
#include <span>
#include <string_view>
#include <utility>

#include "AsciiText.h"
#include "CkUtf.h"
#include "CodePages.h"
#include "Psdk.h"

static_assert(sizeof(wchar_t) == sizeof(char32_t), "wchar_t holds UTF-32 on this platform");

namespace {

constexpr std::string_view kUtf8Mark = code_page::bomOf(code_page::kUtf8);

std::string_view withoutMark(std::string_view text) {
  if (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
  return text;
}

std::string_view viewOf(const char* text) { return text == nullptr ? "" : text; }

/// The mark of this width in either byte order.
bool isMark(std::uint16_t unit) { return unit == 0xFEFF || unit == 0xFFFE; }
bool isMark(char32_t unit) { return unit == 0xFEFF || unit == 0xFFFE0000; }
bool isMark(wchar_t unit) { return isMark(static_cast<char32_t>(unit)); }

template <typename Unit>
std::size_t lengthOf(const Unit* text) {
  std::size_t n = 0;
  while (text[n] != 0) ++n;
  return n;
}

/// The units up to `n`, a mark in front left out.
template <typename Unit>
std::span<const Unit> withoutMark(const Unit* text, std::size_t n) {
  if (text == nullptr || n == 0) return {};
  const std::size_t mark = isMark(*text) ? 1 : 0;
  return {text + mark, n - mark};
}

/// Makes room for `n` bytes in all.
bool ensureWide(DataBuffer& wide, std::uint64_t n) {
  return !ck64_TooBigForUnsigned32(n) && wide.ensureBuffer(static_cast<std::uint32_t>(n));
}

}  // namespace

XString::~XString() {
  if (!m_magic.isAlive()) Psdk::badObjectFound();
  if (m_secure) secureClear();
}

std::unique_ptr<XString> XString::createNewObject() {
  return std::unique_ptr<XString>(new (std::nothrow) XString);
}

std::unique_ptr<XString> XString::cloneX() const {
  std::unique_ptr<XString> copy = createNewObject();
  if (copy != nullptr && !copy->copyFromX(*this)) return nullptr;
  return copy;
}

bool XString::copyFromX(const XString& other) {
  if (&other == this) return true;
  XString copy;
  copy.setSecureX(m_secure);
  const bool copied = (!other.m_ansiReady || copy.m_sbAnsi.setString(other.m_sbAnsi)) &&
                      (!other.m_utf8Ready || copy.m_sbUtf8.setString(other.m_sbUtf8)) &&
                      (!other.m_wideReady || copy.m_wide.copy(other.m_wide));
  if (!copied) return noteShortage();
  copy.m_ansiReady = other.m_ansiReady;
  copy.m_utf8Ready = other.m_utf8Ready;
  copy.m_wideReady = other.m_wideReady;
  copy.m_wideIsUtf16 = other.m_wideIsUtf16;
  copy.m_whole = other.m_whole;
  takeX(copy);
  return true;
}

bool XString::assignX(const XString& other) {
  if (&other == this) return true;
  XString copy;
  copy.setSecureX(m_secure);
  if (!copy.appendX(other)) return noteShortage();
  takeX(copy);
  return true;
}

/// Adopts the other's text and state.
void XString::takeX(XString& other) {
  clear();
  m_sbAnsi.takeSb(other.m_sbAnsi);
  m_sbUtf8.takeSb(other.m_sbUtf8);
  m_wide.takeData(other.m_wide);
  m_ansiReady = other.m_ansiReady;
  m_utf8Ready = other.m_utf8Ready;
  m_wideReady = other.m_wideReady;
  m_wideIsUtf16 = other.m_wideIsUtf16;
  m_whole = other.m_whole;
}

bool XString::noteShortage() {
  m_whole = false;
  return false;
}

bool XString::isAlive() const {
  if (m_magic.isAlive()) return true;
  Psdk::badObjectFound();
  return false;
}

bool XString::isValidObject() const {
  return m_magic.isAlive() && m_sbAnsi.isValidObject() && m_sbUtf8.isValidObject();
}

void XString::setSecureX(bool secure) {
  m_secure = secure;
  m_sbAnsi.setSecureBuf(secure);
  m_sbUtf8.setSecureBuf(secure);
  m_wide.setSecure(secure);
}

// Flags ----------------------------------------------------------------------------------------

void XString::onlyUtf8() {
  m_utf8Ready = true;
  m_ansiReady = false;
  m_wideReady = false;
}

void XString::onlyAnsi() {
  m_ansiReady = true;
  m_utf8Ready = false;
  m_wideReady = false;
}

void XString::onlyWide(bool utf16) {
  m_wideReady = true;
  m_wideIsUtf16 = utf16;
  m_utf8Ready = false;
  m_ansiReady = false;
}

void XString::releaseWide() {
  if (m_secure) {
    m_wide.secureClearWithDeallocate();
  } else {
    m_wide.clearWithDeallocate();
  }
}

/// Drops a form that isn't valid any more. A secure text leaves no bytes of it behind.
void XString::emptyForm(StringBuffer& form) {
  if (m_secure) {
    form.strongClear();
  } else {
    form.weakClear();
  }
}

void XString::clear() {
  if (m_secure) {
    m_sbAnsi.secureClear();
    m_sbUtf8.secureClear();
  } else {
    m_sbAnsi.strongClear();
    m_sbUtf8.strongClear();
  }
  releaseWide();
  weakClear();
}

void XString::secureClear() {
  m_sbAnsi.secureClear();
  m_sbUtf8.secureClear();
  m_wide.secureClearWithDeallocate();
  weakClear();
}

void XString::weakClear() {
  m_sbAnsi.weakClear();
  m_sbUtf8.weakClear();
  m_wide.clear();
  m_ansiReady = true;
  m_utf8Ready = true;
  m_wideReady = false;
  m_wideIsUtf16 = true;
  m_whole = true;
}

void XString::minimizeMemory() {
  if (m_utf8Ready) {
    onlyUtf8();
    m_sbUtf8.minimizeMemoryUsage();
  } else if (m_ansiReady) {
    onlyAnsi();
    m_sbAnsi.minimizeMemoryUsage();
  } else if (m_wideReady) {
    m_wide.minimizeMemoryUsage();
  }
  if (!m_utf8Ready) m_sbUtf8.strongClear();
  if (!m_ansiReady) m_sbAnsi.strongClear();
  if (!m_wideReady) releaseWide();
}

// UTF-8 and ANSI -------------------------------------------------------------------------------

bool XString::setFromUtf8(const char* text) {
  const std::string_view piece = viewOf(text);
  return setFromUtf8N(piece.data(), piece.size());
}

bool XString::setFromUtf8N(const char* text, std::size_t n) {
  if (!isAlive()) return false;
  if (text == nullptr || n == 0) {
    weakClear();
    return true;
  }
  // The argument may lie in any of the forms, so they go last.
  StringBuffer fresh;
  fresh.setSecureBuf(m_secure);
  if (!fresh.append(withoutMark({text, n}))) return noteShortage();
  m_sbUtf8.takeSb(fresh);
  m_sbUtf8.minimizeMemoryUsage();
  m_sbAnsi.strongClear();
  releaseWide();
  onlyUtf8();
  m_whole = true;
  return true;
}

bool XString::setFromSbUtf8(const StringBuffer& text) {
  return setFromUtf8N(text.getString(), text.getSize());
}

bool XString::setFromAnsi(const char* text) {
  const std::string_view piece = viewOf(text);
  return setFromAnsiN(piece.data(), piece.size());
}

bool XString::setFromAnsiN(const char* text, std::size_t n) {
  if (!isAlive()) return false;
  if (text == nullptr || n == 0) {
    weakClear();
    return true;
  }
  StringBuffer fresh;
  fresh.setSecureBuf(m_secure);
  if (!fresh.appendN(text, n)) return noteShortage();
  m_sbAnsi.takeSb(fresh);
  emptyForm(m_sbUtf8);
  releaseWide();
  onlyAnsi();
  m_whole = true;
  return true;
}

bool XString::appendUtf8(const char* text) {
  const std::string_view piece = viewOf(text);
  return appendUtf8N(piece.data(), piece.size());
}

bool XString::appendUtf8N(const char* text, std::size_t n) {
  if (!isAlive() || !makeUtf8()) return false;
  const std::string_view piece = text == nullptr ? std::string_view() : std::string_view(text, n);
  if (!m_sbUtf8.append(withoutMark(piece))) return noteShortage();
  onlyUtf8();
  return true;
}

bool XString::appendSbUtf8(const StringBuffer& text) {
  return appendUtf8N(text.getString(), text.getSize());
}

bool XString::appendAnsi(const char* text) {
  const std::string_view piece = viewOf(text);
  return appendAnsiN(piece.data(), piece.size());
}

bool XString::appendAnsiN(const char* text, std::size_t n) {
  if (!isAlive()) return false;
  if (text == nullptr || n == 0) return true;
  if (!m_ansiReady) return appendAnsiToUtf8(text, n);
  if (!m_sbAnsi.appendN(text, n)) return noteShortage();
  onlyAnsi();
  return true;
}

bool XString::appendAnsiToUtf8(const char* text, std::size_t n) {
  XString piece;
  piece.setSecureX(m_secure);
  if (!piece.setFromAnsiN(text, n) || !piece.makeUtf8()) return noteShortage();
  return appendSbUtf8(piece.m_sbUtf8);
}

bool XString::appendUsAscii(const char* text) {
  const std::string_view piece = viewOf(text);
  if (m_utf8Ready || !m_ansiReady) return appendUtf8N(piece.data(), piece.size());
  if (!isAlive()) return false;
  if (!m_sbAnsi.append(piece)) return noteShortage();
  onlyAnsi();
  return true;
}

bool XString::appendInt(int value) {
  if (!isAlive() || !makeUtf8()) return false;
  if (!m_sbUtf8.append(value)) return noteShortage();
  onlyUtf8();
  return true;
}

bool XString::appendX(const XString& other) {
  if (!other.m_whole) noteShortage();
  if (other.m_utf8Ready) return appendSbUtf8(other.m_sbUtf8);
  if (!other.m_wideReady) {
    return appendAnsiN(other.m_sbAnsi.getString(), other.m_sbAnsi.getSize());
  }
  const std::size_t units = other.wideSize() / other.wideWidth();
  const void* const text = other.m_wide.getData2();
  return other.m_wideIsUtf16 ? appendUtf16N_xe(static_cast<const std::uint16_t*>(text), units)
                             : appendUtf32N_xe(static_cast<const char32_t*>(text), units);
}

bool XString::takeFromUtf8Sb(StringBuffer& text) {
  DataBuffer bytes;
  bytes.setSecure(m_secure);
  return bytes.takeString(text) ? takeFromUtf8Db(bytes) : noteShortage();
}

bool XString::takeFromUtf8Db(DataBuffer& bytes) {
  if (_ckUtf::hasUtf8Preamble(bytes.getData2(), bytes.getSize())) {
    bytes.removeHead(static_cast<std::uint32_t>(kUtf8Mark.size()));
  }
  if (!m_sbUtf8.takeFromDb(bytes)) return noteShortage();
  emptyForm(m_sbAnsi);
  releaseWide();
  onlyUtf8();
  m_whole = true;
  return true;
}

bool XString::takeFromAnsiDb(DataBuffer& bytes) {
  if (!m_sbAnsi.takeFromDb(bytes)) return noteShortage();
  emptyForm(m_sbUtf8);
  releaseWide();
  onlyAnsi();
  m_whole = true;
  return true;
}

// Wide -----------------------------------------------------------------------------------------

std::uint32_t XString::wideSize() const {
  const std::uint32_t size = m_wide.getSize();
  return size >= wideWidth() ? size - wideWidth() : 0;
}

/// Appends `n` units, which may lie in this very object.
template <typename Unit>
bool XString::appendWide(const Unit* text, std::size_t n) {
  if (!isAlive()) return false;
  constexpr bool kUtf16 = sizeof(Unit) == 2;
  const std::span<const Unit> piece = withoutMark(text, n);
  if (piece.empty() || piece.front() == 0) return true;
  DataBuffer copy;
  copy.setSecure(m_secure);
  const void* units = piece.data();
  if (m_wide.contains(units)) {
    if (!copy.append(units, piece.size_bytes())) return noteShortage();
    units = copy.getData2();
  }
  if (!m_wideReady && isEmpty()) {
    m_wide.clear();
  } else if (!makeWide(kUtf16)) {
    return false;
  }
  const std::uint32_t kept = m_wide.empty() ? 0 : wideSize();
  const std::uint64_t need = std::uint64_t{kept} + piece.size_bytes() + sizeof(Unit);
  // Twice what is needed for a text that grows.
  const bool fits = need <= m_wide.getBufSize() || (kept != 0 && ensureWide(m_wide, need * 2)) ||
                    ensureWide(m_wide, need);
  if (!fits) return noteShortage();
  m_wide.setDataSize_CAUTION(kept);
  m_wide.append(units, piece.size_bytes());
  onlyWide(kUtf16);
  m_wide.appendCharN('\0', sizeof(Unit));
  return true;
}

template <typename Unit>
bool XString::setWide(const Unit* text) {
  if (!isAlive()) return false;
  const std::span<const Unit> piece = withoutMark(text, text == nullptr ? 0 : lengthOf(text));
  if (piece.empty()) {
    weakClear();
    return true;
  }
  const std::uint64_t need = piece.size_bytes() + sizeof(Unit);
  if (need > m_wide.getBufSize() || m_wide.contains(text)) {
    DataBuffer fresh;
    fresh.setSecure(m_secure);
    if (!ensureWide(fresh, need)) return noteShortage();
    fresh.append(piece.data(), piece.size_bytes());
    weakClear();
    m_wide.takeData(fresh);
  } else {
    weakClear();
    m_wide.append(piece.data(), piece.size_bytes());
  }
  m_wide.appendCharN('\0', sizeof(Unit));
  onlyWide(sizeof(Unit) == 2);
  return true;
}

bool XString::appendUtf16_xe(const std::uint16_t* text) {
  return text == nullptr || appendWide(text, lengthOf(text));
}

bool XString::appendUtf16N_xe(const std::uint16_t* text, std::size_t n) {
  return appendWide(text, n);
}

bool XString::appendUtf32_xe(const char32_t* text) {
  return text == nullptr || appendWide(text, lengthOf(text));
}

bool XString::appendUtf32N_xe(const char32_t* text, std::size_t n) { return appendWide(text, n); }

bool XString::appendWideStr(const wchar_t* text) {
  return text == nullptr || appendWide(text, lengthOf(text));
}

bool XString::setFromUtf16_xe(const std::uint16_t* text) { return setWide(text); }

bool XString::setFromUtf32_xe(const char32_t* text) { return setWide(text); }

bool XString::setFromWideStr(const wchar_t* text) { return setWide(text); }

// Comparing and editing ------------------------------------------------------------------------

std::uint32_t XString::getSizeAny() const {
  if (m_utf8Ready) return m_sbUtf8.getSize();
  if (m_ansiReady) return m_sbAnsi.getSize();
  return m_wideReady ? wideSize() : 0;
}

bool XString::equalsUtf8(const char* text) { return getUtf8Sb().equals(text); }

bool XString::equalsX(XString& other) { return getUtf8Sb().equals(other.getUtf8Sb()); }

bool XString::equalsIgnoreCaseUtf8(const char* text) { return getUtf8Sb().equalsIgnoreCase(text); }

bool XString::beginsWithUtf8(const char* text) { return getUtf8Sb().beginsWith(text); }

bool XString::endsWithUtf8(const char* text) {
  if (text == nullptr) return false;
  // Whatever begins like a mark counts as one, as far as it goes. So a character from U+F000 on
  // at the start loses its first byte.
  for (const char markByte : kUtf8Mark) {
    if (*text != markByte) break;
    ++text;
  }
  return getUtf8Sb().endsWith(text);
}

bool XString::containsSubstringUtf8(const char* text) {
  return getUtf8Sb().containsSubstring(text);
}

int XString::indexOfUtf8(const char* text) { return getUtf8Sb().indexOf(text); }

bool XString::is7bit() { return getUtf8Sb().is7bit(); }

bool XString::isValidUtf8() {
  const StringBuffer& utf8 = getUtf8Sb();
  return _ckUtf::isValidUtf8(reinterpret_cast<const unsigned char*>(utf8.getString()),
                             utf8.getSize());
}

int XString::compareX(XString& other) {
  if (&other == this) return 0;
  const bool comparable = makeWide(false) && other.makeWide(false);
  return comparable ? std::wcscmp(getWideStr(), other.getWideStr()) : 1;
}

bool XString::equalsAscii(const char* ascii) const {
  const std::string_view wanted = viewOf(ascii);
  if (m_utf8Ready) return m_sbUtf8.equals(ascii);
  if (m_ansiReady) return m_sbAnsi.equals(ascii);
  if (!m_wideReady) return wanted.empty();
  const auto same = [&](const auto* units) {
    return std::equal(wanted.begin(), wanted.end(), units, units + wideSize() / wideWidth(),
                      [](char c, auto unit) { return static_cast<unsigned char>(c) == unit; });
  };
  const void* const text = m_wide.getData2();
  return m_wideIsUtf16 ? same(static_cast<const std::uint16_t*>(text))
                       : same(static_cast<const char32_t*>(text));
}

int XString::replaceAllOccurancesUtf8(const char* from, const char* to, bool ignoreCase) {
  if (!makeUtf8()) return 0;
  const std::uint32_t shortages = ckMemoryShortages();
  const int replaced = ignoreCase ? m_sbUtf8.replaceAllOccurancesNoCase(from, to)
                                  : m_sbUtf8.replaceAllOccurances(from, to);
  if (replaced > 0) {
    onlyUtf8();
  } else if (ckMemoryShortages() != shortages) {
    noteShortage();
  }
  return replaced;
}

void XString::trim() { trimWith(&StringBuffer::trim); }

void XString::trim2() { trimWith(&StringBuffer::trim2); }

/// In the form at hand, UTF-8 first; a wide text becomes UTF-8.
void XString::trimWith(std::uint32_t (StringBuffer::*family)()) {
  if (!m_utf8Ready && m_ansiReady) {
    if ((m_sbAnsi.*family)() != 0) onlyAnsi();
  } else if (makeUtf8() && (m_sbUtf8.*family)() != 0) {
    onlyUtf8();
  }
}
