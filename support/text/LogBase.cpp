#include "LogBase.h"

#include <string>

bool LogBase::LogDataLong(const char* tag, long value) {
  return LogData(tag, std::to_string(value).c_str());
}

LogContextExitor::LogContextExitor(LogBase& log, const char* name, bool active)
    : m_log(active ? &log : nullptr) {
  if (m_log != nullptr) m_log->EnterContext(name, true);
}

LogContextExitor::~LogContextExitor() {
  if (m_log != nullptr) m_log->LeaveContext();
}
