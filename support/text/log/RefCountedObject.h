#pragma once

#include <atomic>

#include "KestrumCritSec.h"

/// An object with a count of owners, 1 at birth, that deletes itself when the last one lets go.
class RefCountedObject : public KestrumCritSec {
 public:
  RefCountedObject() = default;
  RefCountedObject(const RefCountedObject&) = delete;
  RefCountedObject& operator=(const RefCountedObject&) = delete;

  void incRefCount() noexcept { ++m_refCount; }
  /// The object may be gone afterwards.
  void decRefCount() noexcept {
    if (--m_refCount == 0) delete this;
  }

 protected:
  /// The count deletes the object; only objects on the stack end without it.
  virtual ~RefCountedObject() = default;

 private:
  std::atomic<int> m_refCount{1};
};
