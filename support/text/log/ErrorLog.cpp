#include "ErrorLog.h"

#include <new>

_ckErrorLog::_ckErrorLog(const char* rootName) : m_root(std::make_unique<LogEntry2>()) {
  if (!m_root->SetContext(rootName, 0)) throw std::bad_alloc();
  m_root->setOwned();
  if (!m_stack.appendPtr(m_root.get())) throw std::bad_alloc();
}

bool _ckErrorLog::append(std::unique_ptr<LogEntry2> entry) {
  LogEntry2* context = current();
  if (context == nullptr || context->isFull()) return false;
  return context->appendLogEntry(std::move(entry));
}

bool _ckErrorLog::enter(const char* name, std::uint32_t startTick) {
  LogEntry2* context = current();
  if (context == nullptr || context->isFull()) return false;
  std::unique_ptr<LogEntry2> entry(new (std::nothrow) LogEntry2);
  if (!entry || !entry->SetContext(name, startTick)) return false;
  LogEntry2* opened = entry.get();
  if (!context->appendLogEntry(std::move(entry))) return false;
  if (m_stack.appendPtr(opened)) return true;
  context->CheckDeleteEmptyContext();
  return false;
}

_ckErrorLog::Left _ckErrorLog::leave(bool measure, std::uint32_t nowTick) {
  Left left = {false, 0};
  if (m_stack.getSize() <= 1) return left;
  auto* closed = static_cast<LogEntry2*>(m_stack.pop());
  // One that was opened before times were asked for has no start to count from.
  if (closed != nullptr && measure && closed->isTimed()) {
    closed->computeElapsed(nowTick);
    left = {true, closed->getElapsed()};
  }
  if (m_stack.getSize() > 1 && current() != nullptr) current()->CheckDeleteEmptyContext();
  return left;
}
