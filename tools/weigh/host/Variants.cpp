#include "Variants.h"

#include "Utf16.h"

namespace host {

namespace {

Value valueOf(const tVariant& variant) {
  switch (variant.vt) {
    case kVariantEmpty: return std::monostate{};
    case kVariantBool: return variant.value.bVal;
    case kVariantInt32: return variant.value.lVal;
    case kVariantUint32: return variant.value.ulVal;
    case kVariantDouble: return variant.value.dblVal;
    case kVariantWideString: {
      const auto& text = variant.value.wide;
      return text.pwstrVal == nullptr ? std::string() : toUtf8(text.pwstrVal, text.wstrLen);
    }
    case kVariantNarrowString: {
      const auto& text = variant.value.narrow;
      return NarrowText{text.pstrVal == nullptr ? "" : std::string(text.pstrVal, text.strLen)};
    }
    default: return OtherValue{variant.vt};
  }
}

}  // namespace

Variants::Variants(std::span<const Value> values, Memory& memory)
    : memory_(memory), variants_(values.size()), wide_(values.size()), narrow_(values.size()) {
  for (std::size_t i = 0; i < values.size(); ++i) put(values[i], i);
}

void Variants::put(const Value& value, std::size_t index) {
  tVariant& variant = variants_[index];
  variant = {};
  if (const auto* flag = std::get_if<bool>(&value)) {
    variant.vt = kVariantBool;
    variant.value.bVal = *flag;
  } else if (const auto* number = std::get_if<std::int32_t>(&value)) {
    variant.vt = kVariantInt32;
    variant.value.lVal = *number;
  } else if (const auto* natural = std::get_if<std::uint32_t>(&value)) {
    variant.vt = kVariantUint32;
    variant.value.ulVal = *natural;
  } else if (const auto* real = std::get_if<double>(&value)) {
    variant.vt = kVariantDouble;
    variant.value.dblVal = *real;
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    std::basic_string<WCHAR_T>& own = wide_[index] = toUtf16(*text);
    variant.vt = kVariantWideString;
    variant.value.wide = {own.data(), static_cast<std::uint32_t>(own.size())};
  } else if (const auto* bytes = std::get_if<NarrowText>(&value)) {
    std::string& own = narrow_[index] = bytes->bytes;
    variant.vt = kVariantNarrowString;
    variant.value.narrow = {own.data(), static_cast<std::uint32_t>(own.size())};
  } else if (const auto* other = std::get_if<OtherValue>(&value)) {
    variant.vt = other->type;
  }
}

Variants::~Variants() {
  for (std::size_t i = 0; i < variants_.size(); ++i) {
    tVariant& variant = variants_[i];
    void* block = nullptr;
    if (variant.vt == kVariantWideString) block = variant.value.wide.pwstrVal;
    if (variant.vt == kVariantNarrowString) block = variant.value.narrow.pstrVal;
    if (block == wide_[i].data() || block == narrow_[i].data()) continue;
    memory_.FreeMemory(&block);
  }
}

std::vector<Value> Variants::values() const {
  std::vector<Value> values;
  values.reserve(variants_.size());
  for (const tVariant& variant : variants_) values.push_back(valueOf(variant));
  return values;
}

}  // namespace host
