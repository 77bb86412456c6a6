#pragma once

#include <array>
#include <cstddef>
#include <cstring>

/// Copies a C string into a fixed field: what doesn't fit is cut, the rest of the field is
/// zeroed, and the field always ends in NUL. A null `text` empties the field.
template <std::size_t Size>
void copyBounded(std::array<char, Size>& field, const char* text) {
  field.fill(0);
  if (text != nullptr) std::memcpy(field.data(), text, strnlen(text, Size - 1));
}
