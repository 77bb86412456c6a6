#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "UnicodeLookup.h"

struct CodePageTable;

/// A map from 16-bit keys to 16-bit values for one direction of a code page: pairs to code
/// points, or code points to bytes and pairs. Two steps: the high byte of the key chooses a leaf,
/// the low byte a value in it. Keys without a value share one empty leaf.
class HashConvert {
 public:
  /// Null if memory is short.
  static std::unique_ptr<HashConvert> buildToUnicode(const CodePageTable& table);
  static std::unique_ptr<HashConvert> buildFromUnicode(const CodePageTable& table);

  /// The value, 0 if there is none. Values of Unicode maps above FF are pairs.
  std::uint16_t hcLookup(std::uint16_t key) const { return (*m_leaves[key >> 8])[key & 0xFF]; }

  /// Code points below this are the ones that UTF-8 takes one or two bytes for.
  static constexpr std::size_t kShort = 0x800;
  /// The byte of such a code point; 0 if it has none, or two. Only in maps from Unicode.
  std::uint8_t byteOfShort(std::uint32_t codePoint) const { return m_bytesOfShort[codePoint]; }

  /// Bytes below 80 map to themselves, without a look at the map.
  bool isLowerAscii() const { return m_isLowerAscii; }
  int codePage() const { return m_codePage; }
  /// The bytes that stand alone; only in maps to Unicode.
  const UnicodeLookup& singleBytes() const { return m_singleBytes; }

 private:
  using Leaf = std::array<std::uint16_t, 256>;
  static constexpr Leaf kEmpty = {};

  explicit HashConvert(const CodePageTable& table);
  bool hcInsert(std::uint32_t key, std::uint16_t value);

  std::array<const Leaf*, 256> m_leaves;
  std::array<std::unique_ptr<Leaf>, 256> m_owned;
  std::array<std::uint8_t, kShort> m_bytesOfShort = {};
  UnicodeLookup m_singleBytes;
  int m_codePage;
  bool m_isLowerAscii;
};
