// Trimming, searching, replacing and the other families of StringBuffer, on bytes and ASCII.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "AsciiText.h"
#include "ContentCoding.h"
#include "StringBuffer.h"

namespace {

std::string_view viewOf(const char* text) { return text == nullptr ? "" : text; }

/// Offset of the first occurrence from `start` on, npos if there is none. In linear time,
/// whatever the texts.
std::size_t find(std::string_view text, std::string_view wanted, std::size_t start) {
  const std::string_view rest = text.substr(start);
  const void* const found = ::memmem(rest.data(), rest.size(), wanted.data(), wanted.size());
  return found == nullptr ? std::string_view::npos
                          : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

/// A text and what is looked for in it, in lower case if case doesn't matter. A NUL inside ends
/// the text.
class Search {
 public:
  Search(const StringBuffer& text, std::string_view wanted, bool noCase)
      : m_text(text.getString()), m_wanted(wanted) {
    if (!noCase) return;
    m_lowerText.setSecureBuf(text.getSecureBuf());
    m_lowerWanted.setSecureBuf(text.getSecureBuf());
    m_possible = m_lowerText.append(m_text) && m_lowerWanted.append(wanted);
    m_lowerText.toLowerCase();
    m_lowerWanted.toLowerCase();
    m_text = m_lowerText.view();
    m_wanted = m_lowerWanted.view();
  }

  /// Offset of the first occurrence from `start` on, npos if there is none or no memory.
  std::size_t from(std::size_t start) const {
    return m_possible && !m_wanted.empty() ? find(m_text, m_wanted, start) : std::string_view::npos;
  }

 private:
  std::string_view m_text;
  std::string_view m_wanted;
  StringBuffer m_lowerText;
  StringBuffer m_lowerWanted;
  bool m_possible = true;
};

}  // namespace

// Trimming -------------------------------------------------------------------------------------

std::uint32_t StringBuffer::keepRange(std::size_t from, std::size_t to) {
  const std::uint32_t kept = static_cast<std::uint32_t>(to - from);
  const std::uint32_t removed = m_length - kept;
  if (from != 0) std::memmove(m_data, m_data + from, kept);
  shorten(removed);
  return removed;
}

std::uint32_t StringBuffer::trim() {
  std::size_t from = 0;
  std::size_t to = m_length;
  while (from < to && isTabOrSpace(m_data[from])) ++from;
  while (to > from && isTabOrSpace(m_data[to - 1])) --to;
  return keepRange(from, to);
}

std::uint32_t StringBuffer::trim2() {
  std::size_t from = 0;
  std::size_t to = m_length;
  while (from < to && isAsciiSpace(m_data[from])) ++from;
  while (to > from && isAsciiSpace(m_data[to - 1])) --to;
  return keepRange(from, to);
}

// Searching ------------------------------------------------------------------------------------

int StringBuffer::indexOf(const char* text) const {
  const char* const found = viewOf(text).empty() ? nullptr : std::strstr(m_data, text);
  return found == nullptr ? -1 : static_cast<int>(found - m_data);
}

bool StringBuffer::containsChar(char c) const { return view().find(c) != std::string_view::npos; }

bool StringBuffer::beginsWith(const char* text) const { return view().starts_with(viewOf(text)); }

bool StringBuffer::endsWith(const char* text) const { return view().ends_with(viewOf(text)); }

bool StringBuffer::equals(const char* text) const { return view() == viewOf(text); }

bool StringBuffer::equalsIgnoreCase(const char* text) const {
  return equalsNoCase(view(), viewOf(text));
}

// Replacing ------------------------------------------------------------------------------------

int StringBuffer::replaceAllOccurances(const char* from, const char* to) {
  return replaceAll(viewOf(from), viewOf(to), false);
}

int StringBuffer::replaceAllOccurancesNoCase(const char* from, const char* to) {
  return replaceAll(viewOf(from), viewOf(to), true);
}

int StringBuffer::replaceAll(std::string_view wanted, std::string_view replacement, bool noCase) {
  const Search search(*this, wanted, noCase);
  std::size_t count = 0;
  for (std::size_t match = search.from(0); match != std::string_view::npos;
       match = search.from(match + wanted.size())) {
    ++count;
  }
  if (count == 0) return 0;
  const std::uint64_t length = m_length - count * wanted.size() + count * replacement.size();
  StringBuffer result;
  result.setSecureBuf(m_secure);
  if (!result.makeRoomFor(length)) return 0;
  std::size_t pos = 0;
  for (std::size_t left = count; left != 0; --left) {
    const std::size_t match = search.from(pos);
    result.append(view().substr(pos, match - pos));
    result.append(replacement);
    pos = match + wanted.size();
  }
  result.append(view().substr(pos));
  takeSb(result);
  return static_cast<int>(count);
}

int StringBuffer::replaceFirstOccurance(const char* from, const char* to, bool noCase) {
  const std::string_view wanted = viewOf(from);
  const std::size_t match = Search(*this, wanted, noCase).from(0);
  if (match == std::string_view::npos) return 0;
  StringBuffer replacement;
  replacement.setSecureBuf(m_secure);
  if (!replacement.append(to)) return 0;
  const std::uint32_t size = replacement.getSize();
  if (size > wanted.size() && !makeRoomFor(size - wanted.size())) return 0;
  const std::size_t rest = match + wanted.size();
  std::memmove(m_data + match + size, m_data + rest, m_length - rest);
  std::memcpy(m_data + match, replacement.getString(), size);
  setLengthBeforeNuls(static_cast<std::uint32_t>(m_length - wanted.size() + size));
  return 1;
}

int StringBuffer::replaceCharAnsi(char from, char to) {
  const int count = static_cast<int>(std::count(m_data, m_data + m_length, from));
  std::replace(m_data, m_data + m_length, from, to);
  return count;
}

int StringBuffer::removeCharOccurances(char c) {
  const char* const end = std::remove(m_data, m_data + m_length, c);
  const std::uint32_t removed = static_cast<std::uint32_t>(m_data + m_length - end);
  shorten(removed);
  return static_cast<int>(removed);
}

// Case, tests, numbers -------------------------------------------------------------------------

void StringBuffer::toLowerCase() {
  std::transform(m_data, m_data + m_length, m_data, [](char c) { return asciiLower(c); });
}

bool StringBuffer::is7bit() const {
  return std::none_of(m_data, m_data + m_length,
                      [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

int StringBuffer::intValue() const { return asciiIntValue(view()); }

bool StringBuffer::hexStringToBinary(DataBuffer& out) const {
  return ContentCoding::decodeHex(m_data, m_length, out);
}

// Line ends ------------------------------------------------------------------------------------

bool StringBuffer::toLF() {
  char* to = m_data;
  for (const char* from = m_data; from != m_data + m_length; ++from) {
    const bool pair = *from == '\r' && from[1] == '\n';
    if (!pair) *to++ = *from == '\r' ? '\n' : *from;
  }
  shorten(static_cast<std::uint32_t>(m_data + m_length - to));
  return true;
}

bool StringBuffer::toCRLF() {
  StringBuffer result;
  result.setSecureBuf(m_secure);
  std::string_view rest = view();
  while (!rest.empty()) {
    const std::size_t line = std::min(rest.find_first_of("\r\n"), rest.size());
    if (!result.append(rest.substr(0, line))) return false;
    rest.remove_prefix(line);
    if (rest.empty()) break;
    // A lone CR, a lone LF and a pair are one line end each.
    if (!result.appendChar2('\r', '\n')) return false;
    rest.remove_prefix(rest.starts_with("\r\n") ? 2 : 1);
  }
  takeSb(result);
  return true;
}
