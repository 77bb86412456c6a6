#include "Variant.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <type_traits>
#include <utility>

namespace fixture {

namespace {

constexpr int kJunk = 0xA5;

tVariant junk() {
  tVariant result;
  std::memset(&result, kJunk, sizeof result);
  return result;
}

bool sameBytes(const tVariant& a, const tVariant& b) {
  return std::ranges::equal(std::as_bytes(std::span(&a, 1)), std::as_bytes(std::span(&b, 1)));
}

void release(MemoryManager& memory, tVariant& variant) {
  if (variant.vt != kVariantWideString) return;
  void* block = variant.value.wide.pwstrVal;
  memory.FreeMemory(&block);
}

}  // namespace

std::u16string utf16(const WCHAR_T* text) {
  std::u16string result;
  for (; text != nullptr && *text != 0; ++text) result += static_cast<char16_t>(*text);
  return result;
}

std::vector<WCHAR_T> units(std::u16string_view text) {
  std::vector<WCHAR_T> result(text.begin(), text.end());
  result.push_back(0);
  return result;
}

Arguments::Arguments(MemoryManager& memory, std::vector<Value> values)
    : memory_(memory), values_(std::move(values)), variants_(values_.size() + 1, junk()) {
  texts_.reserve(values_.size());
  for (std::size_t i = 0; i < values_.size(); ++i) {
    tVariant& variant = variants_[i];
    const auto put = [&](auto& value) {
      using Type = std::decay_t<decltype(value)>;
      if constexpr (std::is_same_v<Type, std::monostate>) {
        variant.vt = kVariantEmpty;
      } else if constexpr (std::is_same_v<Type, std::int32_t>) {
        variant.vt = kVariantInt32;
        variant.value.lVal = value;
      } else if constexpr (std::is_same_v<Type, double>) {
        variant.vt = kVariantDouble;
        variant.value.dblVal = value;
      } else if constexpr (std::is_same_v<Type, bool>) {
        variant.vt = kVariantBool;
        variant.value.bVal = value;
      } else if constexpr (std::is_same_v<Type, std::u16string>) {
        variant.vt = kVariantWideString;
        variant.value.wide = {texts_.emplace_back(units(value)).data(),
                              static_cast<std::uint32_t>(value.size())};
      } else if constexpr (std::is_same_v<Type, std::string>) {
        variant.vt = kVariantNarrowString;
        variant.value.narrow = {value.data(), static_cast<std::uint32_t>(value.size())};
      } else if constexpr (std::is_same_v<Type, NullText>) {
        variant.vt = kVariantWideString;
        variant.value.wide = {nullptr, 0};
      } else {
        variant.vt = kVariantNarrowString;
        variant.value.narrow = {nullptr, 0};
      }
    };
    std::visit(put, values_[i]);
  }
  before_ = variants_;
}

Arguments::~Arguments() {
  for (std::size_t i = 0; i < variants_.size(); ++i) {
    const bool own = before_[i].vt == kVariantWideString &&
                     before_[i].value.wide.pwstrVal == variants_[i].value.wide.pwstrVal;
    if (!own) release(memory_, variants_[i]);
  }
}

bool Arguments::untouchedFrom(std::size_t index) const {
  for (std::size_t i = index; i < variants_.size(); ++i) {
    if (!sameBytes(variants_[i], before_[i])) return false;
  }
  return true;
}

ReturnValue::ReturnValue(MemoryManager& memory) : memory_(memory), variant_(junk()) {}

ReturnValue::~ReturnValue() { release(memory_, variant_); }

bool ReturnValue::untouched() const { return sameBytes(variant_, junk()); }

}  // namespace fixture
