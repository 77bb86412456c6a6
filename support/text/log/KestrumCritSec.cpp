#include "KestrumCritSec.h"

#include "LogBase.h"
#include "Psdk.h"

KestrumCritSec::KestrumCritSec() {
  if (!LogBase::m_singleThreaded) m_mutex.emplace();
}

KestrumCritSec::~KestrumCritSec() = default;

void KestrumCritSec::enterCriticalSection() {
  if (!m_validity.isAlive()) {
    Psdk::badObjectFound();
    return;
  }
  if (m_mutex) m_mutex->lock();
}

void KestrumCritSec::leaveCriticalSection() {
  if (!m_validity.isAlive()) {
    Psdk::badObjectFound();
    return;
  }
  if (m_mutex) m_mutex->unlock();
}

CritSecExitor::CritSecExitor(KestrumCritSec* lock) : m_lock(lock) {
  if (m_lock != nullptr) m_lock->enterCriticalSection();
}

CritSecExitor::~CritSecExitor() {
  if (!m_validity.isAlive()) {
    Psdk::corruptObjectFound();
    return;
  }
  if (m_lock != nullptr) m_lock->leaveCriticalSection();
}
