#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KestrumObject.h"

class StringBuffer;

using ExtIntArray = std::vector<std::uint32_t>;

/// Names and values in document order, packed end to end into one text. A name may stand twice;
/// a lookup then gives the first. Throws std::bad_alloc with the set unchanged. Not locked.
class AttributeSet : public KestrumObject {
 public:
  AttributeSet() = default;
  AttributeSet(bool preventDuplicates, bool lowercaseNames)
      : m_preventDuplicates(preventDuplicates), m_lowercaseNames(lowercaseNames) {}
  /// The copy takes no more memory than its attributes need.
  AttributeSet(const AttributeSet& other);

  /// Adds at the end. Without a name, which nothing could look up, there is nothing to add.
  void addAttribute(std::string_view name, std::string_view value);
  /// Empties `out`, then appends the value of the first attribute of exactly this name. True if
  /// there is one, also with an empty value; false for an empty name.
  bool getAttributeValue(std::string_view name, StringBuffer& out) const;
  /// The same value without a copy, valid until the set changes.
  std::optional<std::string_view> valueOf(std::string_view name) const;

  bool empty() const { return m_lengths.empty(); }
  std::size_t getNumAttributes() const { return m_lengths.size() / 2; }
  /// Name and value number `i`, empty out of range. Valid until the set changes.
  std::pair<std::string_view, std::string_view> getAttribute(std::size_t i) const;
  /// Removes all, keeps the memory.
  void clear();

 private:
  /// One pair in the packed text.
  struct Place {
    bool found = false;
    std::size_t index = 0;  ///< of the name's length in m_lengths
    std::size_t offset = 0;
    std::string_view value;
  };

  Place find(std::string_view name) const;
  void remove(const Place& place);

  bool m_preventDuplicates = false;
  bool m_lowercaseNames = false;
  ExtIntArray m_lengths;  ///< name, value, name, value ...
  std::string m_text;
};
