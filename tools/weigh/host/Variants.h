#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "Memory.h"
#include "Platform.h"

namespace host {

/// A text that goes over as narrow bytes, in whatever code page they are.
struct NarrowText {
  std::string bytes;
  bool operator==(const NarrowText&) const = default;
};

/// A value of a type that scales have no use for.
struct OtherValue {
  std::uint16_t type;
  bool operator==(const OtherValue&) const = default;
};

/// A value of the platform: nothing, or one of the types that the component's methods deal in.
/// Texts are UTF-8 here and UTF-16 on their way.
using Value = std::variant<std::monostate, bool, std::int32_t, std::uint32_t, double, std::string,
                           NarrowText, OtherValue>;

/// Variants for one call. Its own texts stay its own; those that the component puts in come from
/// `memory` and go back there.
class Variants {
 public:
  Variants(std::span<const Value> values, Memory& memory);
  ~Variants();
  Variants(const Variants&) = delete;
  Variants& operator=(const Variants&) = delete;

  /// Null for none.
  tVariant* data() { return variants_.empty() ? nullptr : variants_.data(); }
  long count() const { return static_cast<long>(variants_.size()); }
  /// What the variants hold now.
  std::vector<Value> values() const;

 private:
  void put(const Value& value, std::size_t index);

  Memory& memory_;
  std::vector<tVariant> variants_;
  /// Texts that the call brings, by the variant's index.
  std::vector<std::basic_string<WCHAR_T>> wide_;
  std::vector<std::string> narrow_;
};

}  // namespace host
