#include "XmlBytes.h"

#include <algorithm>
#include <utility>

namespace {

bool isNameByte(char c) { return isXmlByte(c, kXmlNameByte); }

}  // namespace

std::string_view cleanXmlName(std::string_view raw, std::string& scratch) {
  if (std::all_of(raw.begin(), raw.end(), isNameByte)) return raw;
  scratch.clear();
  std::copy_if(raw.begin(), raw.end(), std::back_inserter(scratch), isNameByte);
  return scratch;
}

std::string_view cleanXmlAttributeName(std::string_view raw, std::string& scratch) {
  const std::string_view name = cleanXmlName(raw, scratch);
  if (name.empty()) return name;
  const char first = name.front();
  if (first != '-' && first != '.' && (first < '0' || first > '9')) return name;
  std::string prefixed = "A";
  prefixed += name;
  scratch = std::move(prefixed);
  return scratch;
}

std::string_view decodeXmlEntities(std::string_view raw, std::string& scratch) {
  // What an entity stands for is part of no other entity, but for "&", which comes last: one
  // pass gives what replacing them one after the other would.
  static constexpr std::pair<std::string_view, char> kEntities[] = {
      {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}};
  std::size_t mark = raw.find('&');
  if (mark == std::string_view::npos) return raw;
  scratch.clear();
  while (mark != std::string_view::npos) {
    scratch += raw.substr(0, mark);
    raw.remove_prefix(mark);
    const auto* const entity =
        std::find_if(std::begin(kEntities), std::end(kEntities),
                     [raw](const auto& candidate) { return raw.starts_with(candidate.first); });
    const bool known = entity != std::end(kEntities);
    scratch += known ? entity->second : '&';
    raw.remove_prefix(known ? entity->first.size() : 1);
    mark = raw.find('&');
  }
  scratch += raw;
  return scratch;
}
