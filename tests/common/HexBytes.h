#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace fixture {

using Bytes = std::vector<std::uint8_t>;

/// Bytes from a text as it stands on a protocol sheet: bytes in hexadecimal and characters between
/// quotes of either kind, "06 01 02 'S  1.250'". Blanks and bars between them only set apart.
/// Throws `std::invalid_argument` for anything else.
Bytes bytes(std::string_view text);

/// The same as characters.
std::string characters(std::string_view text);

/// The bytes of a text: "ST,GS,+  1.234kg\r\n".
Bytes text(std::string_view characters);

/// The other way, for messages: "06 01 02".
std::string hex(std::span<const std::uint8_t> data);

}  // namespace fixture
