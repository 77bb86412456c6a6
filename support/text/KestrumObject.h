#pragma once

#include <cstdint>

/// Root of the inner classes. Carries a validity word, so that a stale pointer is found out
/// while the memory is still there.
class KestrumObject {
 public:
  static constexpr std::uint32_t kMagic = 0x62CB09E3;

  KestrumObject() = default;
  KestrumObject(const KestrumObject&) = delete;
  KestrumObject& operator=(const KestrumObject&) = delete;
  virtual ~KestrumObject();

  virtual int heapUsage();

  bool isKestrumObject() const { return m_objMagic == kMagic; }

  /// Deletes an object: null is ignored, an object without its validity word is left alone, and
  /// an exception from the destructor ends here.
  static void deleteObject(KestrumObject* object) noexcept;

 private:
  std::uint32_t m_objMagic = kMagic;
};

/// Root of the inner classes that have exactly one owner.
class NonRefCountedObj : public KestrumObject {};
