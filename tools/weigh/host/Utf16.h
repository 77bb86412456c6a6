#pragma once

#include <string>
#include <string_view>

#include "Platform.h"

namespace host {

/// The platform's texts, NUL behind the last unit. Whatever is no valid text becomes U+FFFD.
std::basic_string<WCHAR_T> toUtf16(std::string_view utf8);
std::string toUtf8(const WCHAR_T* text, std::size_t units);
/// Up to the NUL; empty for a null pointer.
std::string toUtf8(const WCHAR_T* text);

}  // namespace host
