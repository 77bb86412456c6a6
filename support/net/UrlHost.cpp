#include "UrlHost.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::string_view, 2> kSchemes = {"https://", "http://"};

bool isDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// What stands behind the scheme, nothing if there is none.
std::optional<std::string_view> behindScheme(std::string_view text) {
  for (const std::string_view scheme : kSchemes) {
    if (text.starts_with(scheme)) return text.substr(scheme.size());
  }
  return std::nullopt;
}

}  // namespace

bool looksLikeUrl(std::string_view text) { return behindScheme(text).has_value(); }

std::optional<std::string> hostOfUrl(std::string_view url) {
  std::string_view authority = behindScheme(url).value_or("");
  authority = authority.substr(0, authority.find_first_of("/?#"));
  if (const auto at = authority.rfind('@'); at != authority.npos) authority.remove_prefix(at + 1);

  std::string_view host;
  std::string_view port;
  if (authority.starts_with('[')) {
    const auto end = authority.find(']');
    if (end == authority.npos) return std::nullopt;
    host = authority.substr(0, end + 1);
    port = authority.substr(end + 1);
  } else {
    host = authority.substr(0, authority.find(':'));
    port = authority.substr(host.size());
  }
  if (!port.empty() && (port.front() != ':' || !isDigits(port.substr(1)))) return std::nullopt;
  const bool legible =
      std::none_of(host.begin(), host.end(), [](char c) { return c >= '\0' && c <= ' '; });
  if (host.empty() || host == "[]" || !legible) return std::nullopt;
  return std::string(host);
}
