#include "ParseEngine.h"

#include <algorithm>
#include <new>

#include "AsciiText.h"
#include "StringBuffer.h"
#include "XmlBytes.h"

ParseEngine::ParseEngine(std::string_view text) : m_text(text.substr(0, text.find('\0'))) {}

bool ParseEngine::atNoCase(std::string_view text) const {
  return equalsNoCase(rest().substr(0, text.size()), text);
}

bool ParseEngine::pass(char c) {
  const bool comes = at(c);
  if (comes) ++m_pos;
  return comes;
}

bool ParseEngine::pass(std::string_view text) {
  const bool comes = at(text);
  if (comes) m_pos += text.size();
  return comes;
}

bool ParseEngine::passNoCase(std::string_view text) {
  const bool comes = atNoCase(text);
  if (comes) m_pos += text.size();
  return comes;
}

void ParseEngine::skipWhiteSpace() {
  while (m_pos < m_text.size() && isXmlByte(m_text[m_pos], kXmlBlank)) ++m_pos;
}

std::string_view ParseEngine::captureToNext(std::uint8_t classes) {
  const std::size_t start = m_pos;
  while (m_pos < m_text.size() && !isXmlByte(m_text[m_pos], classes)) ++m_pos;
  return m_text.substr(start, m_pos - start);
}

std::string_view ParseEngine::captureToNextChar(char stop) {
  const std::size_t start = m_pos;
  m_pos = std::min(m_text.find(stop, start), m_text.size());
  return m_text.substr(start, m_pos - start);
}

bool ParseEngine::seekAndSkipExact(std::string_view text) {
  const std::size_t found = m_text.find(text, m_pos);
  if (found == std::string_view::npos) return false;
  m_pos = found + text.size();
  return true;
}

bool ParseEngine::seekAndCopy(std::string_view text, StringBuffer& out) {
  const std::string_view ahead = rest();
  const auto* const found =
      std::search(ahead.begin(), ahead.end(), text.begin(), text.end(), asciiEqualNoCase);
  if (found == ahead.end()) return false;
  const auto n = static_cast<std::size_t>(found - ahead.begin()) + text.size();
  if (!out.append(ahead.substr(0, n))) throw std::bad_alloc();
  m_pos += n;
  return true;
}

bool ParseEngine::skipUntilChar2(char a, char b) {
  while (!atEnd() && m_text[m_pos] != a && m_text[m_pos] != b) ++m_pos;
  return !at(b);
}

bool ParseEngine::seekAndCopyToClosing(char open, char close, int depth, StringBuffer& out) {
  const std::size_t start = m_pos;
  while (!atEnd() && depth > 0) {
    const char c = m_text[m_pos++];
    if (c == open) ++depth;
    if (c == close) --depth;
  }
  if (!out.append(m_text.substr(start, m_pos - start))) throw std::bad_alloc();
  return depth <= 0;
}
