#include "LogEntry2.h"

#include <new>

#include "Psdk.h"

namespace {

std::unique_ptr<StringBuffer> newText(const char* text) {
  std::unique_ptr<StringBuffer> made(new (std::nothrow) StringBuffer);
  if (made && !made->append(text)) made.reset();
  return made;
}

}  // namespace

LogEntry2::~LogEntry2() {
  const bool sound = m_validityMark.isAlive() && (m_ownerMark == kOwned || m_ownerMark == kFree);
  if (!sound) Psdk::badObjectFound();
  // Leaves first: contexts may lie in one another as deep as memory goes.
  for (LogEntry2* at = this; at->numChildren() > 0;) {
    auto* const last = static_cast<LogEntry2*>(at->m_children->lastElement());
    if (last != nullptr && last->numChildren() > 0) {
      at = last;
      continue;
    }
    deleteObject(at->m_children->pop());
    while (at != this && at->numChildren() == 0) at = at->m_parent;
  }
}

bool LogEntry2::SetContext(const char* name, std::uint32_t startTick) {
  m_kind = 'C';
  m_elapsed = startTick;
  m_tag = newText(name);
  m_children.reset(new (std::nothrow) ExtPtrArray);
  if (m_children) m_children->m_ownsObjects = true;
  return m_tag != nullptr && m_children != nullptr;
}

bool LogEntry2::SetLine(char kind, const char* text) {
  m_kind = kind;
  m_value = newText(text);
  return m_value != nullptr;
}

bool LogEntry2::SetMessage(const char* tag, const char* value) {
  m_kind = 'T';
  m_tag = newText(tag);
  m_value = newText(value);
  return m_tag != nullptr && m_value != nullptr;
}

bool LogEntry2::appendLogEntry(std::unique_ptr<LogEntry2> entry) {
  if (!m_children || entry->m_ownerMark == kOwned) return false;
  if (!m_children->appendObject(entry.get())) return false;
  entry->m_parent = this;
  entry.release()->m_ownerMark = kOwned;
  return true;
}

void LogEntry2::CheckDeleteEmptyContext() {
  const LogEntry2* last = child(numChildren() - 1);
  if (last != nullptr && last->isContext() && last->numChildren() == 0) {
    KestrumObject::deleteObject(m_children->pop());
  }
}

void LogEntry2::computeElapsed(std::uint32_t nowTick) {
  m_elapsed = nowTick > m_elapsed ? nowTick - m_elapsed : 0;
  m_elapsedValid = true;
}

const LogEntry2* LogEntry2::child(int i) const {
  return m_children ? static_cast<const LogEntry2*>(m_children->elementAt(i)) : nullptr;
}
