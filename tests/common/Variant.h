#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "MemoryManager.h"
#include "Platform.h"

namespace fixture {

/// A text of the platform up to its NUL; empty for a null pointer.
std::u16string utf16(const WCHAR_T* text);

/// A text for the platform, NUL included.
std::vector<WCHAR_T> units(std::u16string_view text);

/// A null pointer in a string variant.
struct NullText {};
struct NullNarrowText {};

/// A value to hand over: nothing, a number, a flag, or a text of either kind.
using Value = std::variant<std::monostate, std::int32_t, double, bool, std::u16string, std::string,
                           NullText, NullNarrowText>;
inline constexpr std::monostate kNothing = {};

/// Variants as a host holds them, with what the call left there; texts of the component are freed
/// through the manager. Behind the last one lies a further variant that no call may touch.
class Arguments {
 public:
  Arguments(MemoryManager& memory, std::vector<Value> values);
  ~Arguments();
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  tVariant* data() { return variants_.data(); }
  long count() const { return static_cast<long>(values_.size()); }
  const tVariant& at(std::size_t index) const { return variants_.at(index); }
  std::u16string text(std::size_t index) const { return utf16(at(index).value.wide.pwstrVal); }
  /// Whether all variants from `index` on are as they were handed over.
  bool untouchedFrom(std::size_t index) const;

 private:
  MemoryManager& memory_;
  std::vector<Value> values_;
  std::vector<std::vector<WCHAR_T>> texts_;
  std::vector<tVariant> variants_;
  std::vector<tVariant> before_;
};

/// A return variant full of junk, to see whether a call touched it.
class ReturnValue {
 public:
  explicit ReturnValue(MemoryManager& memory);
  ~ReturnValue();
  ReturnValue(const ReturnValue&) = delete;
  ReturnValue& operator=(const ReturnValue&) = delete;

  tVariant* data() { return &variant_; }
  const tVariant* operator->() const { return &variant_; }
  bool untouched() const;

 private:
  MemoryManager& memory_;
  tVariant variant_;
};

}  // namespace fixture
