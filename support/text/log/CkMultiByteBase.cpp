#include "CkMultiByteBase.h"

#include "CkSettings.h"
#include "CkString.h"
#include "CkUtf.h"
#include "ClsBase.h"
#include "XString.h"

namespace {

constexpr const char* kNotAlive = "Not a valid Kestrum object.";
constexpr const char* kNoBase = "m_base is NULL.";
/// A caller's language whose texts know no 4-byte UTF-8.
constexpr int kLanguageOfModifiedUtf8 = 13;

}  // namespace

CkMultiByteBase::CkMultiByteBase(ClsBase* base) : m_base(base), m_utf8(newHandlesReadUtf8()) {}

CkMultiByteBase::~CkMultiByteBase() {
  if (ClsBase* base = aliveBase()) base->deleteSelf();
  m_base = nullptr;
}

ClsBase* CkMultiByteBase::aliveBase() const {
  return isAlive() && m_base != nullptr && m_base->checkObjectValidity() ? m_base : nullptr;
}

bool CkMultiByteBase::get_Utf8() const { return m_utf8; }

void CkMultiByteBase::put_Utf8(bool utf8) { m_utf8 = utf8; }

bool CkMultiByteBase::setArgument(XString& out, const char* text) const {
  out.setFromDual(text, m_utf8);
  out.getUtf8Sb();
  return out.isWhole();
}

int CkMultiByteBase::nextIdx() {
  m_ringIndex = (m_ringIndex + 1) % static_cast<int>(kRingSize);
  std::unique_ptr<CkString>& slot = m_ring[static_cast<std::size_t>(m_ringIndex)];
  if (!slot || slot->getImpl() == nullptr) slot.reset(CkString::createNew());
  if (slot && slot->getImpl() == nullptr) slot.reset();
  return m_ringIndex;
}

const char* CkMultiByteBase::rtnMbString(CkString* text) const {
  if (text == nullptr) return nullptr;
  return m_utf8 ? text->getUtf8() : text->getAnsi();
}

void CkMultiByteBase::clearResultStrings() {
  if (!isAlive()) return;
  for (std::unique_ptr<CkString>& slot : m_ring) slot.reset();
  m_ringIndex = 0;
}

template <typename Read>
const char* CkMultiByteBase::ringResult(Read read) {
  if (!isAlive()) return kNotAlive;
  CkString* slot = m_ring[static_cast<std::size_t>(nextIdx())].get();
  if (slot == nullptr) return nullptr;
  slot->clear();
  read(*slot);
  return rtnMbString(slot);
}

void CkMultiByteBase::lastError(void (ClsBase::*render)(XString&), CkString& out) {
  if (!isAlive()) {
    out.setStringUtf8(kNotAlive);
  } else if (m_base == nullptr) {
    out.appendUtf8(kNoBase);
  } else if (XString* text = out.getImpl()) {
    (m_base->*render)(*text);
  }
}

const char* CkMultiByteBase::lastError(void (ClsBase::*render)(XString&)) {
  return ringResult([&](CkString& out) { lastError(render, out); });
}

void CkMultiByteBase::LastErrorText(CkString& out) { lastError(&ClsBase::get_LastErrorText, out); }

void CkMultiByteBase::LastErrorHtml(CkString& out) { lastError(&ClsBase::get_LastErrorHtml, out); }

void CkMultiByteBase::LastErrorXml(CkString& out) { lastError(&ClsBase::get_LastErrorXml, out); }

const char* CkMultiByteBase::lastErrorText() { return lastError(&ClsBase::get_LastErrorText); }

const char* CkMultiByteBase::lastErrorHtml() { return lastError(&ClsBase::get_LastErrorHtml); }

const char* CkMultiByteBase::lastErrorXml() { return lastError(&ClsBase::get_LastErrorXml); }

bool CkMultiByteBase::SaveLastError(const char* path) {
  ClsBase* base = aliveBase();
  if (base == nullptr) return false;
  XString name;
  return setArgument(name, path) && base->SaveLastError(name);
}

void CkMultiByteBase::get_Version(CkString& out) {
  if (!isAlive()) {
    out.setStringUtf8(kNotAlive);
    return;
  }
  out.clear();
  if (XString* text = out.getImpl(); text != nullptr && m_base != nullptr)
    m_base->get_Version(*text);
}

const char* CkMultiByteBase::version() {
  return ringResult([&](CkString& out) { get_Version(out); });
}

void CkMultiByteBase::get_DebugLogFilePath(CkString& out) {
  if (!isAlive()) {
    out.setStringUtf8(kNotAlive);
    return;
  }
  out.clear();
  ClsBase* base = aliveBase();
  if (XString* text = out.getImpl(); text != nullptr && base != nullptr) {
    base->get_DebugLogFilePath(*text);
  }
}

const char* CkMultiByteBase::debugLogFilePath() {
  return ringResult([&](CkString& out) { get_DebugLogFilePath(out); });
}

void CkMultiByteBase::put_DebugLogFilePath(const char* path) {
  ClsBase* base = aliveBase();
  if (base == nullptr) return;
  XString name;
  if (setArgument(name, path)) base->put_DebugLogFilePath(name);
}

bool CkMultiByteBase::get_VerboseLogging() {
  ClsBase* base = aliveBase();
  return base != nullptr && base->get_VerboseLogging();
}

void CkMultiByteBase::put_VerboseLogging(bool on) {
  if (ClsBase* base = aliveBase()) base->put_VerboseLogging(on);
}

bool CkMultiByteBase::get_LastMethodSuccess() {
  ClsBase* base = aliveBase();
  return base != nullptr && base->get_LastMethodSuccess();
}

void CkMultiByteBase::put_LastMethodSuccess(bool success) {
  if (ClsBase* base = aliveBase()) base->put_LastMethodSuccess(success);
}

void CkMultiByteBase::setLastErrorProgrammingLanguage(int language) {
  ClsBase::m_progLang = language;
  if (language == kLanguageOfModifiedUtf8) g_allow_4byte_utf8 = false;
}
