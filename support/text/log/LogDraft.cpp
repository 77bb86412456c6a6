#include "LogDraft.h"

#include <algorithm>
#include <new>
#include <string_view>

namespace {

std::string_view viewOf(const char* text) { return text == nullptr ? "" : text; }

}  // namespace

bool LogDraft::add(const Line& line) {
  const std::size_t tag = viewOf(line.tag).size();
  const std::size_t text = viewOf(line.text).size();
  const bool enters = line.kind == Kind::Enter;
  const std::size_t leaves = (m_open + (enters ? 1 : 0)) * kFrame;
  const std::size_t taken = m_size + leaves + kFrame;
  if (taken > kCapacity || tag > kCapacity - taken || text > kCapacity - taken - tag) return false;
  if (!m_bytes) m_bytes.reset(new (std::nothrow) std::array<char, kCapacity>);
  if (!m_bytes) return false;
  write(line);
  if (enters) ++m_open;
  return true;
}

void LogDraft::leave() {
  if (m_open == 0) return;
  write({Kind::Leave, nullptr, nullptr});
  --m_open;
}

void LogDraft::clear() {
  m_size = 0;
  m_open = 0;
}

void LogDraft::write(const Line& line) {
  char* to = m_bytes->data() + m_size;
  *to++ = static_cast<char>(line.kind);
  for (const std::string_view part : {viewOf(line.tag), viewOf(line.text)}) {
    to = std::copy(part.begin(), part.end(), to);
    *to++ = 0;
  }
  m_size = static_cast<std::size_t>(to - m_bytes->data());
}

LogDraft::Line LogDraft::lineAt(std::size_t& at) const {
  const char* from = m_bytes->data() + at;
  const char* tag = from + 1;
  const char* text = tag + std::string_view(tag).size() + 1;
  at = static_cast<std::size_t>(text - m_bytes->data()) + std::string_view(text).size() + 1;
  return {static_cast<Kind>(*from), tag, text};
}
