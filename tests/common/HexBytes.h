#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace fixture {

using Bytes = std::vector<std::uint8_t>;

/// Bytes by their hexadecimal digits, as a protocol sheet shows them: "06 01 02". Throws
/// `std::invalid_argument` for anything else.
Bytes bytes(std::string_view hex);

/// The bytes of a text: "ST,GS,+  1.234kg\r\n".
Bytes text(std::string_view characters);

/// The other way, for messages: "06 01 02".
std::string hex(std::span<const std::uint8_t> data);

}  // namespace fixture
