#include "LogDraft.h"

#include <algorithm>
#include <new>
#include <string_view>

namespace {

std::string_view viewOf(const char* text) { return text == nullptr ? "" : text; }

}  // namespace

// A line is its kind and two texts with their zeros.
bool LogDraft::add(const Line& line) {
  const std::string_view tag = viewOf(line.tag);
  const std::string_view text = viewOf(line.text);
  constexpr std::size_t kFrame = 3;
  const std::size_t room = kCapacity - m_size;
  if (tag.size() >= room || text.size() >= room || tag.size() + text.size() + kFrame > room) {
    return false;
  }
  if (!m_bytes) m_bytes.reset(new (std::nothrow) std::array<char, kCapacity>);
  if (!m_bytes) return false;
  char* to = m_bytes->data() + m_size;
  *to++ = static_cast<char>(line.kind);
  for (const std::string_view part : {tag, text}) {
    to = std::copy(part.begin(), part.end(), to);
    *to++ = 0;
  }
  m_size = static_cast<std::size_t>(to - m_bytes->data());
  return true;
}

LogDraft::Line LogDraft::lineAt(std::size_t& at) const {
  const char* from = m_bytes->data() + at;
  const char* tag = from + 1;
  const char* text = tag + std::string_view(tag).size() + 1;
  at = static_cast<std::size_t>(text - m_bytes->data()) + std::string_view(text).size() + 1;
  return {static_cast<Kind>(*from), tag, text};
}
