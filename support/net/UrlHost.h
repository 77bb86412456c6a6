#pragma once

#include <optional>
#include <string>
#include <string_view>

/// True for a text that begins like the address of a web page.
bool looksLikeUrl(std::string_view text);
/// The host of such a URL: "http://user@scale.shop:80/page" gives "scale.shop". Nothing if the URL
/// is malformed.
std::optional<std::string> hostOfUrl(std::string_view url);
