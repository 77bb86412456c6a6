#include "CkString.h"

#include <cstring>
#include <new>

#include "CkCharset.h"
#include "CkSettings.h"
#include "CkUtf.h"
#include "ClsEncode.h"
#include "DataBuffer.h"
#include "RandomBytes.h"
#include "StringBuffer.h"
#include "XString.h"

CkString::CkString() : m_x(XString::createNewObject()), m_utf8(newHandlesReadUtf8()) {}

CkString::CkString(const char* ansi) : CkString() {
  if (m_x != nullptr) m_x->setFromAnsi(ansi);
}

CkString::CkString(const char* utf8, bool /*ignored*/) : CkString() {
  if (m_x != nullptr) m_x->setFromUtf8(utf8);
}

CkString::CkString(const CkString& other) : m_x(XString::createNewObject()), m_utf8(other.m_utf8) {
  append(other);
}

CkString::~CkString() = default;

CkString* CkString::createNew() { return new (std::nothrow) CkString; }

CkString* CkString::clone() const {
  if (m_x == nullptr) return nullptr;
  std::unique_ptr<CkString> copy(createNew());
  if (copy == nullptr) return nullptr;
  copy->setStringUtf8(m_x->getUtf8());
  return m_x->isWhole() && copy->isWhole() ? copy.release() : nullptr;
}

bool CkString::isWhole() const { return m_x != nullptr && m_x->isWhole(); }

bool CkString::get_Utf8() const { return m_utf8; }

void CkString::put_Utf8(bool utf8) { m_utf8 = utf8; }

XString* CkString::getImpl() const { return m_x.get(); }

void CkString::clear() {
  if (m_x != nullptr) m_x->clear();
}

bool CkString::get_SecureClear() const { return m_x != nullptr && m_x->getSecureX(); }

void CkString::put_SecureClear(bool secure) {
  if (m_x != nullptr) m_x->setSecureX(secure);
  if (m_sbEnc != nullptr) m_sbEnc->setSecureBuf(secure);
}

// Reading --------------------------------------------------------------------------------------

const char* CkString::getString() const { return m_utf8 ? getUtf8() : getAnsi(); }

CkString::operator const char*() const { return getString(); }

CkString::operator const wchar_t*() const { return getUnicode(); }

const char* CkString::getAnsi() const { return m_x == nullptr ? nullptr : m_x->getAnsi(); }

const char* CkString::getUtf8() const {
  if (m_x == nullptr) return nullptr;
  return g_allow_4byte_utf8 ? m_x->getUtf8() : m_x->getModifiedUtf8();
}

const wchar_t* CkString::getUnicode() const { return m_x == nullptr ? nullptr : m_x->getWideStr(); }

const unsigned short* CkString::getUtf16() const {
  return m_x == nullptr ? nullptr : m_x->getUtf16_xe();
}

const char* CkString::getEnc(const char* charset) const {
  if (m_x == nullptr) return nullptr;
  _ckCharset target;
  target.setByName(charset);
  DataBuffer bytes;
  bytes.setSecure(m_x->getSecureX());
  m_x->getConverted_cp(target.getCodePage(), bytes);
  if (m_sbEnc == nullptr) m_sbEnc.reset(new (std::nothrow) StringBuffer);
  if (m_sbEnc == nullptr) {
    m_x->noteShortage();
    return "";
  }
  m_sbEnc->setSecureBuf(m_x->getSecureX());
  m_sbEnc->strongClear();
  if (!m_sbEnc->append(bytes)) m_x->noteShortage();
  return m_sbEnc->getString();
}

int CkString::getNumChars() const { return m_x == nullptr ? 0 : m_x->getNumChars(); }

int CkString::getSizeAnsi() const {
  return m_x == nullptr ? 0 : static_cast<int>(m_x->getSizeAnsi());
}

int CkString::getSizeUtf8() const {
  return m_x == nullptr ? 0 : static_cast<int>(m_x->getSizeUtf8());
}

int CkString::getSizeUnicode() const {
  return m_x == nullptr ? 0 : static_cast<int>(m_x->getSizeUnicode());
}

// Writing --------------------------------------------------------------------------------------

void CkString::setString(const char* text) {
  if (m_x != nullptr) m_x->setFromDual(text, m_utf8);
}

void CkString::setStringAnsi(const char* ansi) {
  if (m_x != nullptr) m_x->setFromAnsi(ansi);
}

void CkString::setStringUtf8(const char* utf8) {
  if (m_x != nullptr) m_x->setFromUtf8(utf8);
}

void CkString::setStringU(const wchar_t* utf32) {
  if (m_x != nullptr) m_x->setFromWideStr(utf32);
}

void CkString::setStringUtf16(const unsigned short* utf16) {
  if (m_x != nullptr) m_x->setFromUtf16_xe(utf16);
}

void CkString::setStr(CkString& other) {
  const char* const utf8 = other.getUtf8();
  if (other.isWhole()) {
    setStringUtf8(utf8);
  } else if (m_x != nullptr) {
    m_x->noteShortage();
  }
}

CkString& CkString::operator=(const CkString& other) {
  if (&other != this && m_x != nullptr && other.m_x != nullptr) {
    m_x->assignX(*other.m_x);
  } else if (m_x != nullptr && other.m_x == nullptr) {
    m_x->noteShortage();
  }
  return *this;
}

CkString& CkString::operator=(const char* text) {
  setString(text);
  return *this;
}

CkString& CkString::operator=(char c) {
  clear();
  appendChar(c);
  return *this;
}

CkString& CkString::operator=(int value) {
  clear();
  appendInt(value);
  return *this;
}

CkString& CkString::operator=(bool value) {
  clear();
  appendUtf8(value ? "true" : "false");
  return *this;
}

void CkString::append(const char* text) {
  if (m_utf8) {
    appendUtf8(text);
  } else {
    appendAnsi(text);
  }
}

void CkString::append(const CkString& other) {
  if (m_x == nullptr) return;
  if (other.m_x == nullptr) {
    m_x->noteShortage();
  } else {
    m_x->appendX(*other.m_x);
  }
}

void CkString::appendStr(const CkString& other) { append(other); }

void CkString::appendAnsi(const char* ansi) {
  if (m_x != nullptr) m_x->appendAnsiToUtf8(ansi, ansi == nullptr ? 0 : std::strlen(ansi));
}

void CkString::appendUtf8(const char* utf8) {
  if (m_x != nullptr) m_x->appendUtf8(utf8);
}

void CkString::appendU(const wchar_t* utf32) {
  if (m_x != nullptr) m_x->appendWideStr(utf32);
}

void CkString::appendChar(char ansi) {
  const char text[] = {ansi, '\0'};
  if (m_x != nullptr) m_x->appendAnsi(text);
}

void CkString::appendInt(int value) {
  if (m_x != nullptr) m_x->appendInt(value);
}

void CkString::appendRandom(int numBytes, const char* encoding) {
  DataBuffer bytes;
  StringBuffer text;
  if (m_x == nullptr) return;
  if (appendRandomBytes(numBytes, bytes) && bytes.encodeDB(encoding, text)) {
    m_x->appendSbUtf8(text);
  } else {
    m_x->noteShortage();
  }
}

// Comparing and editing ------------------------------------------------------------------------

int CkString::compareStr(const CkString& other) const {
  return m_x == nullptr || other.m_x == nullptr ? 0 : m_x->compareX(*other.m_x);
}

bool CkString::equalsAscii(const char* ascii) const {
  return m_x != nullptr && m_x->equalsAscii(ascii);
}

bool CkString::endsWith(const char* text) const {
  if (text == nullptr) return true;
  if (m_x == nullptr) return false;
  if (m_utf8) return m_x->endsWithUtf8(text);
  XString wanted;
  wanted.setFromAnsi(text);
  const char* const end = wanted.getUtf8();
  return wanted.isWhole() ? m_x->endsWithUtf8(end) : m_x->noteShortage();
}

int CkString::replaceAll(CkString& from, CkString& to) {
  if (m_x == nullptr || from.m_x == nullptr || to.m_x == nullptr) return 0;
  const char* const wanted = from.m_x->getUtf8();
  const char* const replacement = to.m_x->getUtf8();
  if (!from.isWhole() || !to.isWhole()) return m_x->noteShortage();
  return m_x->replaceAllOccurancesUtf8(wanted, replacement, false);
}

void CkString::trim() {
  if (m_x != nullptr) m_x->trim();
}

void CkString::trim2() {
  if (m_x != nullptr) m_x->trim2();
}

void CkString::minimizeMemory() {
  if (m_x != nullptr) m_x->minimizeMemory();
}

// Binary encodings -----------------------------------------------------------------------------

void CkString::base64Encode(const char* charset) {
  if (m_x != nullptr) m_x->encodeBinaryText(charset, _clsEncode::Base64);
}

void CkString::base64Decode(const char* charset) {
  if (m_x != nullptr) m_x->decodeBinaryText(charset, _clsEncode::Base64);
}

void CkString::hexEncode(const char* charset) {
  if (m_x != nullptr) m_x->encodeBinaryText(charset, _clsEncode::Hex);
}

void CkString::hexDecode(const char* charset) {
  if (m_x != nullptr) m_x->decodeBinaryText(charset, _clsEncode::Hex);
}

void CkString::qpEncode(const char* charset) {
  if (m_x != nullptr) m_x->encodeBinaryText(charset, _clsEncode::QuotedPrintable);
}

void CkString::qpDecode(const char* charset) {
  if (m_x != nullptr) m_x->decodeBinaryText(charset, _clsEncode::QuotedPrintable);
}

void CkString::urlEncode(const char* charset) {
  if (m_x != nullptr) m_x->encodeBinaryText(charset, _clsEncode::Url);
}

void CkString::urlDecode(const char* charset) {
  if (m_x != nullptr) m_x->decodeBinaryText(charset, _clsEncode::Url);
}
