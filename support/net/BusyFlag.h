#pragma once

#include <atomic>

/// Marks an operation as running for the length of a scope. False if it was running already.
class BusyFlag {
 public:
  explicit BusyFlag(std::atomic<bool>& flag) : m_flag(flag), m_mine(!flag.exchange(true)) {}
  BusyFlag(const BusyFlag&) = delete;
  BusyFlag& operator=(const BusyFlag&) = delete;
  ~BusyFlag() {
    if (m_mine) m_flag = false;
  }
  explicit operator bool() const { return m_mine; }

 private:
  std::atomic<bool>& m_flag;
  bool m_mine;
};
