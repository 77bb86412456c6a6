#include "ClsBase.h"

#include <algorithm>
#include <array>

#include "Psdk.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

constexpr const char* kDllDate = "Nov 22 2026";
constexpr const char* kVersion = KESTRUM_VERSION;

/// The callers whose line ends are CR LF.
constexpr std::array kCrlfLanguages = {1, 2, 3, 4, 5, 6, 33, 264, 464, 564, 664};

bool useCrlf() {
  return std::find(kCrlfLanguages.begin(), kCrlfLanguages.end(), ClsBase::m_progLang) !=
         kCrlfLanguages.end();
}

}  // namespace

int ClsBase::m_progLang = 0;

LogContextExitor::LogContextExitor(ClsBase& object, const char* name) : m_log(&object.mlog()) {
  object.enterContextBase(name);
}

ClsBase::~ClsBase() = default;

bool ClsBase::checkObjectValidity() const {
  if (m_validity.isAlive()) return true;
  Psdk::corruptObjectFound();
  return false;
}

void ClsBase::enterContextBase(const char* name) {
  m_log.ClearLog();
  m_log.EnterContext(name, true);
  logKestrumVersion(m_log);
}

void ClsBase::logKestrumVersion(LogBase& log) {
  log.LogData("DllDate", kDllDate);
  log.LogData("KestrumVersion", kVersion);
  log.LogDataLong("ProgrammingLanguage", m_progLang);
  log.LogDataLong("VerboseLogging", m_log.m_verbose ? 1 : 0);
}

void ClsBase::logSuccessFailure(bool success) {
  if (success) {
    m_log.LogInfo("Success.");
  } else {
    m_log.LogError("Failed.");
  }
}

void ClsBase::renderLog(bool (LogBase::*render)(StringBuffer&), bool crlf, XString& out) {
  out.clear();
  if (!checkObjectValidity()) return;
  const CritSecExitor lock(this);
  StringBuffer text;
  (m_log.*render)(text);
  if (crlf) text.toCRLF();
  out.takeFromUtf8Sb(text);
}

void ClsBase::get_LastErrorText(XString& out) { renderLog(&LogBase::getText, useCrlf(), out); }

void ClsBase::get_LastErrorHtml(XString& out) { renderLog(&LogBase::getHtml, false, out); }

void ClsBase::get_LastErrorXml(XString& out) { renderLog(&LogBase::getXml, false, out); }

bool ClsBase::SaveLastError(XString& path) {
  if (!checkObjectValidity()) return false;
  const CritSecExitor lock(this);
  XString trimmed;
  if (!trimmed.copyFromX(path)) return false;
  trimmed.trim2();
  return !trimmed.isEmpty() && m_log.SaveXML(false, trimmed.getUtf8());
}

void ClsBase::get_Version(XString& out) { out.setFromUtf8(kVersion); }

bool ClsBase::get_LastMethodSuccess() const { return checkObjectValidity() && m_lastMethodSuccess; }

void ClsBase::put_LastMethodSuccess(bool success) {
  if (checkObjectValidity()) m_lastMethodSuccess = success;
}

void ClsBase::injectStatus(const char* name, bool success) {
  const CritSecExitor lock(this);
  m_log.ClearLog();
  const LogContextExitor context(m_log, name);
  logSuccessFailure(success);
}

void ClsBase::injectError(const char* name, const char* text) {
  const CritSecExitor lock(this);
  m_log.ClearLog();
  const LogContextExitor context(m_log, name);
  m_log.LogError(text);
}

void ClsBase::put_UncommonOptions(XString& options) {
  if (options.equalsIgnoreCaseUtf8("SingleThreaded")) {
    LogBase::m_singleThreaded = true;
  } else if (options.equalsIgnoreCaseUtf8("MultiThreaded")) {
    LogBase::m_singleThreaded = false;
  }
}

bool ClsBase::get_VerboseLogging() {
  const CritSecExitor lock(this);
  return m_log.m_verbose;
}

void ClsBase::put_VerboseLogging(bool on) {
  const CritSecExitor lock(this);
  m_log.m_verbose = on;
}

void ClsBase::get_DebugLogFilePath(XString& path) {
  const CritSecExitor lock(this);
  m_log.get_DebugLogFilePath(path);
}

void ClsBase::put_DebugLogFilePath(XString& path) {
  const CritSecExitor lock(this);
  m_log.put_DebugLogFilePath(path);
}
