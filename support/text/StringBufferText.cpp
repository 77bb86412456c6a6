// Trimming, searching, replacing and the other families of StringBuffer, on bytes and ASCII.

#include <algorithm>
#include <cstring>

#include "AsciiText.h"
#include "ContentCoding.h"
#include "StringBuffer.h"

namespace {

std::string_view viewOf(const char* text) { return text == nullptr ? "" : text; }

/// First occurrence in the NUL-terminated text, null if there is none.
const char* searchNoCase(const char* text, std::string_view wanted) {
  const char* const end = text + std::strlen(text);
  const char* const found = std::search(text, end, wanted.begin(), wanted.end(), asciiEqualNoCase);
  return found == end ? nullptr : found;
}

const char* search(const char* text, const char* wanted, bool noCase) {
  return noCase ? searchNoCase(text, wanted) : std::strstr(text, wanted);
}

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
  const std::string_view wanted = viewOf(from);
  const std::string_view replacement = viewOf(to);
  if (wanted.empty()) return 0;
  const std::string_view text(m_data);  // a NUL inside ends the search
  std::size_t match = text.find(wanted);
  if (match == std::string_view::npos) return 0;

  std::size_t length = m_length;
  if (wanted.size() != replacement.size()) {
    std::size_t count = 0;
    for (std::size_t m = match; m != std::string_view::npos;
         m = text.find(wanted, m + wanted.size())) {
      ++count;
    }
    length = length - count * wanted.size() + count * replacement.size();
  }
  StringBuffer result;
  result.setSecureBuf(m_secure);
  if (ck64_TooBigForUnsigned32(length) ||
      !result.expectNumBytes(static_cast<std::uint32_t>(length))) {
    return 0;
  }
  int replaced = 0;
  std::size_t pos = 0;
  for (; match != std::string_view::npos; match = text.find(wanted, pos)) {
    if (!result.append(text.substr(pos, match - pos)) || !result.append(replacement)) return 0;
    pos = match + wanted.size();
    ++replaced;
  }
  if (!result.append(view().substr(pos))) return 0;
  takeSb(result);
  return replaced;
}

int StringBuffer::replaceAllOccurancesNoCase(const char* from, const char* to) {
  const std::string_view wanted = viewOf(from);
  if (wanted.empty()) return 0;
  StringBuffer result;
  result.setSecureBuf(m_secure);
  int replaced = 0;
  const char* pos = m_data;
  while (const char* const match = searchNoCase(pos, wanted)) {
    if (!result.appendN(pos, static_cast<std::size_t>(match - pos)) || !result.append(to)) return 0;
    pos = match + wanted.size();
    ++replaced;
  }
  if (replaced == 0) return 0;
  if (!result.appendN(pos, static_cast<std::size_t>(m_data + m_length - pos))) return 0;
  takeSb(result);
  return replaced;
}

int StringBuffer::replaceFirstOccurance(const char* from, const char* to, bool noCase) {
  const std::string_view wanted = viewOf(from);
  if (wanted.empty()) return 0;
  const char* const match = search(m_data, from, noCase);
  if (match == nullptr) return 0;
  StringBuffer tail;
  tail.setSecureBuf(m_secure);
  const char* const rest = match + wanted.size();
  if (!tail.appendN(rest, static_cast<std::size_t>(m_data + m_length - rest))) return 0;
  StringBuffer replacement;
  replacement.setSecureBuf(m_secure);
  if (!replacement.append(to)) return 0;
  if (!makeRoomFor(replacement.getSize())) return 0;
  setLength(static_cast<std::uint32_t>(match - m_data));
  return append(replacement) && append(tail) ? 1 : 0;
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

int StringBuffer::intValue() const {
  const char* p = m_data;
  while (isTabOrSpace(*p)) ++p;
  const bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  std::uint32_t value = 0;
  for (; isAsciiDigit(*p); ++p) value = value * 10 + static_cast<std::uint32_t>(*p - '0');
  return static_cast<int>(negative ? 0U - value : value);
}

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
  char previous = '\0';
  for (const char c : view()) {
    // A lone CR, a lone LF and a pair are one line end each.
    const bool ok = c == '\r'   ? result.appendChar2('\r', '\n')
                    : c == '\n' ? previous == '\r' || result.appendChar2('\r', '\n')
                                : result.appendChar(c);
    if (!ok) return false;
    previous = c;
  }
  takeSb(result);
  return true;
}
