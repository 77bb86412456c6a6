#include "AttributeSet.h"

#include <algorithm>

#include "AsciiText.h"
#include "StringBuffer.h"

AttributeSet::AttributeSet(const AttributeSet& other)
    : m_preventDuplicates(other.m_preventDuplicates),
      m_lowercaseNames(other.m_lowercaseNames),
      m_lengths(other.m_lengths),
      m_text(other.m_text) {}

void AttributeSet::addAttribute(std::string_view name, std::string_view value) {
  if (name.empty()) return;
  std::string lower;
  if (m_lowercaseNames) {
    lower = asciiLower(name);
    name = lower;
  }
  const Place old = m_preventDuplicates ? find(name) : Place();
  const std::size_t lengthBefore = m_text.size();
  m_lengths.insert(m_lengths.end(), {static_cast<std::uint32_t>(name.size()),
                                     static_cast<std::uint32_t>(value.size())});
  try {
    m_text.append(name).append(value);
  } catch (...) {
    m_text.resize(lengthBefore);
    m_lengths.resize(m_lengths.size() - 2);
    throw;
  }
  if (old.found) remove(old);
}

bool AttributeSet::getAttributeValue(std::string_view name, StringBuffer& out) const {
  out.weakClear();
  const Place place = find(name);
  return place.found && out.append(place.value);
}

std::optional<std::string_view> AttributeSet::valueOf(std::string_view name) const {
  const Place place = find(name);
  return place.found ? std::optional(place.value) : std::nullopt;
}

std::pair<std::string_view, std::string_view> AttributeSet::getAttribute(std::size_t i) const {
  if (i >= getNumAttributes()) return {};
  std::size_t offset = 0;
  for (std::size_t k = 0; k < 2 * i; ++k) offset += m_lengths[k];
  const std::string_view text = m_text;
  return {text.substr(offset, m_lengths[2 * i]),
          text.substr(offset + m_lengths[2 * i], m_lengths[2 * i + 1])};
}

void AttributeSet::clear() {
  m_lengths.clear();
  m_text.clear();
}

AttributeSet::Place AttributeSet::find(std::string_view name) const {
  if (name.empty()) return {};
  const std::string_view text = m_text;
  std::size_t offset = 0;
  for (std::size_t i = 0; i + 1 < m_lengths.size(); i += 2) {
    const std::size_t nameLength = m_lengths[i];
    const std::size_t valueLength = m_lengths[i + 1];
    if (nameLength == name.size() && text.substr(offset, nameLength) == name) {
      return {true, i, offset, text.substr(offset + nameLength, valueLength)};
    }
    offset += nameLength + valueLength;
  }
  return {};
}

void AttributeSet::remove(const Place& place) {
  m_text.erase(place.offset, m_lengths[place.index] + place.value.size());
  const auto first = m_lengths.begin() + static_cast<std::ptrdiff_t>(place.index);
  m_lengths.erase(first, first + 2);
}
