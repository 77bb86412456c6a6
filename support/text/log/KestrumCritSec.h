#pragma once

#include <cstdint>
#include <mutex>
#include <optional>

#include "ValidityWord.h"

/// A re-entrant lock, by itself or as the base of an object that guards itself.
///
/// A process that sets LogBase::m_singleThreaded before it makes its first object gets locks that
/// do nothing.
class KestrumCritSec {
 public:
  KestrumCritSec();
  ~KestrumCritSec();
  KestrumCritSec(const KestrumCritSec&) = delete;
  KestrumCritSec& operator=(const KestrumCritSec&) = delete;

  void enterCriticalSection();
  void leaveCriticalSection();

 private:
  ValidityWord<std::uint32_t, 0xCBCB2903> m_validity;
  std::optional<std::recursive_mutex> m_mutex;
};

/// Holds a lock for the length of a scope. A null pointer holds nothing.
class CritSecExitor {
 public:
  explicit CritSecExitor(KestrumCritSec* lock);
  CritSecExitor(const CritSecExitor&) = delete;
  CritSecExitor& operator=(const CritSecExitor&) = delete;
  ~CritSecExitor();

 private:
  ValidityWord<std::uint32_t, 0x7521A004> m_validity;
  KestrumCritSec* m_lock;
};
