#include "XString.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <new>
#include <string_view>
#include <utility>

#include "AsciiText.h"
#include "CkUtf.h"
#include "Psdk.h"

static_assert(sizeof(wchar_t) == sizeof(char32_t), "wchar_t holds UTF-32 on this platform");

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

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

}  // namespace

XString::~XString() {
  if (!m_magic.isAlive()) Psdk::badObjectFound();
  if (m_secure) secureClear();
}

std::unique_ptr<XString> XString::createNewObject() {
  return std::unique_ptr<XString>(new (std::nothrow) XString);
}

std::unique_ptr<XString> XString::cloneX() {
  std::unique_ptr<XString> copy = createNewObject();
  if (copy != nullptr) copy->copyFromX(*this);
  return copy;
}

bool XString::copyFromX(const XString& other) {
  if (&other == this) return true;
  clear();
  m_ansiReady = other.m_ansiReady;
  m_utf8Ready = other.m_utf8Ready;
  m_wideReady = other.m_wideReady;
  m_wideIsUtf16 = other.m_wideIsUtf16;
  const bool copied = (!m_ansiReady || m_sbAnsi.setString(other.m_sbAnsi)) &&
                      (!m_utf8Ready || m_sbUtf8.setString(other.m_sbUtf8)) &&
                      (!m_wideReady || m_wide.copy(other.m_wide));
  if (!copied) clear();
  return copied;
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
  if (!m_magic.isAlive()) {
    Psdk::badObjectFound();
    return false;
  }
  if (text == nullptr || n == 0) {
    weakClear();
    return true;
  }
  // The argument may lie in any of the forms, so they go last.
  StringBuffer fresh;
  fresh.setSecureBuf(m_secure);
  const bool ok = fresh.append(withoutMark({text, n}));
  m_sbUtf8.takeSb(fresh);
  m_sbUtf8.minimizeMemoryUsage();
  m_sbAnsi.strongClear();
  releaseWide();
  onlyUtf8();
  return ok;
}

bool XString::setFromSbUtf8(const StringBuffer& text) {
  return setFromUtf8N(text.getString(), text.getSize());
}

bool XString::setFromAnsi(const char* text) {
  const std::string_view piece = viewOf(text);
  return setFromAnsiN(piece.data(), piece.size());
}

bool XString::setFromAnsiN(const char* text, std::size_t n) {
  if (text == nullptr || n == 0) {
    weakClear();
    return true;
  }
  StringBuffer fresh;
  fresh.setSecureBuf(m_secure);
  const bool ok = fresh.appendN(text, n);
  m_sbAnsi.takeSb(fresh);
  emptyForm(m_sbUtf8);
  releaseWide();
  onlyAnsi();
  return ok;
}

bool XString::appendUtf8(const char* text) {
  const std::string_view piece = viewOf(text);
  return appendUtf8N(piece.data(), piece.size());
}

bool XString::appendUtf8N(const char* text, std::size_t n) {
  if (!m_magic.isAlive()) {
    Psdk::badObjectFound();
    return false;
  }
  if (text == nullptr || n == 0) return true;
  getUtf8Sb();
  onlyUtf8();
  return m_sbUtf8.append(withoutMark({text, n}));
}

bool XString::appendSbUtf8(const StringBuffer& text) {
  return appendUtf8N(text.getString(), text.getSize());
}

bool XString::appendAnsi(const char* text) {
  const std::string_view piece = viewOf(text);
  return appendAnsiN(piece.data(), piece.size());
}

bool XString::appendAnsiN(const char* text, std::size_t n) {
  if (text == nullptr || n == 0) return true;
  if (m_ansiReady) {
    onlyAnsi();
    return m_sbAnsi.appendN(text, n);
  }
  XString piece;
  piece.setSecureX(m_secure);
  return piece.setFromAnsiN(text, n) && appendSbUtf8(piece.getUtf8Sb());
}

bool XString::appendUsAscii(const char* text) {
  const std::string_view piece = viewOf(text);
  if (m_utf8Ready || !m_ansiReady) return appendUtf8N(piece.data(), piece.size());
  onlyAnsi();
  return m_sbAnsi.append(piece);
}

bool XString::appendInt(int value) {
  getUtf8Sb();
  onlyUtf8();
  return m_sbUtf8.append(value);
}

bool XString::appendX(const XString& other) {
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
  bytes.takeString(text);
  return takeFromUtf8Db(bytes);
}

bool XString::takeFromUtf8Db(DataBuffer& bytes) {
  if (_ckUtf::hasUtf8Preamble(bytes.getData2(), bytes.getSize())) {
    bytes.removeHead(static_cast<std::uint32_t>(kUtf8Mark.size()));
  }
  emptyForm(m_sbAnsi);
  releaseWide();
  onlyUtf8();
  return m_sbUtf8.takeFromDb(bytes);
}

bool XString::takeFromAnsiDb(DataBuffer& bytes) {
  emptyForm(m_sbUtf8);
  releaseWide();
  onlyAnsi();
  return m_sbAnsi.takeFromDb(bytes);
}

// Wide -----------------------------------------------------------------------------------------

std::uint32_t XString::wideSize() const {
  const std::uint32_t size = m_wide.getSize();
  return size >= wideWidth() ? size - wideWidth() : 0;
}

void XString::terminateWide() {
  // A block that was passed through unconverted may end inside a character.
  const std::uint32_t width = wideWidth();
  const std::uint32_t rest = m_wide.getSize() % width;
  std::uint32_t n = rest == 0 ? width : 2 * width - rest;
  if (!m_wide.ensureBufferWiping(m_wide.getSize() + n)) {
    // No memory: the last character gives way, since readers go on to a zero.
    m_wide.shorten(std::min(m_wide.getSize(), rest + width));
    n = width;
  }
  m_wide.appendCharN('\0', n);
}

/// Appends `n` units, which may lie in this very object.
template <typename Unit>
bool XString::appendWide(const Unit* text, std::size_t n) {
  if (!m_magic.isAlive()) {
    Psdk::badObjectFound();
    return false;
  }
  constexpr bool kUtf16 = sizeof(Unit) == 2;
  if (text != nullptr && n != 0 && isMark(*text)) {
    ++text;
    --n;
  }
  if (text == nullptr || n == 0 || *text == 0) return true;
  DataBuffer copy;
  copy.setSecure(m_secure);
  const std::size_t size = n * sizeof(Unit);
  if (m_wide.contains(text)) {
    if (!copy.append(text, size)) return false;
    text = reinterpret_cast<const Unit*>(copy.getData2());
  }
  if (isEmpty()) {
    m_wide.clear();
  } else {
    makeWide(kUtf16);
  }
  onlyWide(kUtf16);
  if (m_wide.getSize() >= sizeof(Unit)) m_wide.shorten(sizeof(Unit));
  // Twice what is needed for a text that grows; what doesn't fit fails below.
  const std::uint64_t need = m_wide.getSize() + size + sizeof(Unit);
  if (need > m_wide.getBufSize()) {
    const std::uint64_t roomy = m_wide.empty() ? need : need * 2;
    if (!ck64_TooBigForUnsigned32(roomy)) {
      m_wide.ensureBufferWiping(static_cast<std::uint32_t>(roomy));
    }
  }
  const bool ok = m_wide.append(text, size);
  terminateWide();
  return ok;
}

template <typename Unit>
bool XString::setWide(const Unit* text) {
  DataBuffer copy;
  copy.setSecure(m_secure);
  if (text != nullptr && m_wide.contains(text)) {
    if (!copy.append(text, (lengthOf(text) + 1) * sizeof(Unit))) return false;
    text = reinterpret_cast<const Unit*>(copy.getData2());
  }
  weakClear();
  return text == nullptr || appendWide(text, lengthOf(text));
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
  const wchar_t* const left = getWideStr();
  return std::wcscmp(left, other.getWideStr());
}

int XString::replaceAllOccurancesUtf8(const char* from, const char* to, bool ignoreCase) {
  StringBuffer& utf8 = getUtf8Sb();
  const int replaced =
      ignoreCase ? utf8.replaceAllOccurancesNoCase(from, to) : utf8.replaceAllOccurances(from, to);
  if (replaced > 0) onlyUtf8();
  return replaced;
}

void XString::trim() {
  if (!m_utf8Ready && m_ansiReady) {
    if (m_sbAnsi.trim() != 0) onlyAnsi();
  } else if (getUtf8Sb().trim() != 0) {
    onlyUtf8();
  }
}

void XString::trim2() {
  if (!m_utf8Ready && m_ansiReady) {
    if (m_sbAnsi.trim2() != 0) onlyAnsi();
  } else if (getUtf8Sb().trim2() != 0) {
    onlyUtf8();
  }
}
