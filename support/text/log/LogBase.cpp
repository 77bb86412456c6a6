#include "LogBase.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "Psdk.h"
#include "StringBuffer.h"
#include "TickCount.h"
#include "XString.h"

namespace {

// A longer time means that the tick counter was started anew meanwhile.
constexpr std::uint32_t kLongestElapsed_ms = 900'000'000;

template <typename... Values>
std::string formatted(const char* format, Values... values) {
  char text[96];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

}  // namespace

std::atomic<bool> LogBase::m_singleThreaded{false};

void LogSwitch::push(bool on) {
  if (m_depth == kDeepest) return;
  m_saved[m_depth++] = *this;
  *this = on;
}

void LogSwitch::pop() {
  if (m_depth == 0) return;
  *this = m_saved[--m_depth];
}

bool LogBase::LogDataBool(const char* tag, bool value) {
  return LogData(tag, value ? "True" : "False");
}

bool LogBase::LogDataLong(const char* tag, long value) { return LogDataInt64(tag, value); }

bool LogBase::LogDataUint32(const char* tag, std::uint32_t value) {
  return LogDataInt64(tag, value);
}

bool LogBase::LogDataInt64(const char* tag, std::int64_t value) {
  if (m_nullLogging) return true;
  return LogData(tag, std::to_string(value).c_str());
}

bool LogBase::LogHex(const char* tag, std::uint32_t value) {
  if (m_nullLogging) return true;
  return LogData(tag, formatted("0x%x", value).c_str());
}

bool LogBase::LogDataX(const char* tag, XString& value) {
  if (m_nullLogging) return true;
  if (!value.isValidObject()) return false;
  return LogData(tag, value.getUtf8());
}

bool LogBase::LogDataSb(const char* tag, const StringBuffer& value) {
  if (m_nullLogging) return true;
  if (!value.isValidObject()) Psdk::corruptObjectFound();
  return LogData(tag, value.getString());
}

bool LogBase::LogStringMax(const char* tag, XString& value, std::uint32_t max) {
  if (m_nullLogging) return true;
  if (!value.isValidObject()) return false;
  const std::string_view text = value.getUtf8Sb().view();
  if (text.size() <= max) return LogDataX(tag, value);
  return LogData(tag, std::string(text.substr(0, max)).append("...").c_str());
}

bool LogBase::LogElapsedMs(const char* tag, std::uint32_t startTick) {
  if (m_nullLogging) return true;
  const std::uint32_t now = ckTickCount();
  if (now < startTick || now - startTick >= kLongestElapsed_ms) return true;
  return LogData(tag, formatted("Elapsed time: %u millisec", now - startTick).c_str());
}

void LogBase::LogLastErrorOS() {
  const int error = errno;
  if (m_nullLogging) return;
  LogDataLong("errno", error);
  char text[256] = {};
  // The GNU form returns the text, which needn't lie in the buffer.
  LogData("osErrorMessage", strerror_r(error, text, sizeof text));
  errno = error;
}

void LogBase::MemoryAllocFailed(int failurePoint, std::uint32_t numBytes) {
  if (m_nullLogging) return;
  LogError("Memory allocation failed.");
  LogDataLong("failurePoint", failurePoint);
  LogDataUint32("numBytes", numBytes);
}

LogContextExitor::LogContextExitor(LogBase& log, const char* name, bool active)
    : m_log(active ? &log : nullptr) {
  if (m_log != nullptr) m_log->EnterContext(name, true);
}

LogContextExitor::~LogContextExitor() {
  if (!m_validity.isAlive()) {
    Psdk::corruptObjectFound();
    return;
  }
  if (m_log != nullptr) m_log->LeaveContext();
}
