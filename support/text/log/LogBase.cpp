#include "LogBase.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "Psdk.h"
#include "StringBuffer.h"
#include "TickCount.h"
#include "XString.h"

namespace {

// A longer time means that the tick counter was started anew meanwhile.
constexpr std::uint32_t kLongestElapsed_ms = 900'000'000;

/// Formats without asking for memory: what runs short of it is what logs are read for.
bool logFormatted(LogBase& log, const char* tag, const char* format, std::uint32_t value) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), format, value);
  return log.LogData(tag, text.data());
}

}  // namespace

std::atomic<bool> LogBase::m_singleThreaded{false};

void LogSwitch::push(bool on) {
  if (m_isFixed || m_depth == kDeepest) return;
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
  StringBuffer digits;
  return digits.appendInt64(value) && LogData(tag, digits.getString());
}

bool LogBase::LogHex(const char* tag, std::uint32_t value) {
  if (m_nullLogging) return true;
  return logFormatted(*this, tag, "0x%x", value);
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
  StringBuffer cut;
  return cut.append(text.substr(0, max)) && cut.append("...") && LogData(tag, cut.getString());
}

bool LogBase::LogElapsedMs(const char* tag, std::uint32_t startTick) {
  if (m_nullLogging) return true;
  const std::uint32_t now = ckTickCount();
  if (now < startTick || now - startTick >= kLongestElapsed_ms) return true;
  return logFormatted(*this, tag, "Elapsed time: %u millisec", now - startTick);
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
