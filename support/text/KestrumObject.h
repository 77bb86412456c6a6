#pragma once

#include <cstdint>

#include "ValidityWord.h"

/// Root of the inner classes. Carries a validity word, so that a stale pointer is found out
/// while the memory is still there.
class KestrumObject {
 public:
  KestrumObject() = default;
  KestrumObject(const KestrumObject&) = delete;
  KestrumObject& operator=(const KestrumObject&) = delete;
  /// No destructor throws.
  virtual ~KestrumObject() noexcept;

  virtual int heapUsage();

  bool isKestrumObject() const { return m_objMagic.isAlive(); }

  /// Deletes an object: null is ignored, an object without its validity word is left alone.
  static void deleteObject(KestrumObject* object) noexcept;

 private:
  ValidityWord<std::uint32_t, 0x62CB09E3> m_objMagic;
};

/// Root of the inner classes that have exactly one owner.
class NonRefCountedObj : public KestrumObject {};
