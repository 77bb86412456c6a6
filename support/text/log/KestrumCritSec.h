#pragma once

#include <cstdint>
#include <mutex>
#include <optional>

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
  static constexpr std::uint32_t kMagic = 0xCBCB2903;

  std::uint32_t m_validity = kMagic;
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
  static constexpr std::uint32_t kMagic = 0x7521A004;

  std::uint32_t m_validity = kMagic;
  KestrumCritSec* m_lock;
};
