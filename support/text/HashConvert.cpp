#include "HashConvert.h"

#include <algorithm>
#include <new>

#include "CodePageTables.h"

HashConvert::HashConvert(const CodePageTable& table)
    : m_singleBytes(table.single), m_codePage(table.codePage), m_isLowerAscii(table.isLowerAscii) {
  m_leaves.fill(&kEmpty);
}

bool HashConvert::hcInsert(std::uint32_t key, std::uint16_t value) {
  std::unique_ptr<Leaf>& leaf = m_owned[key >> 8];
  if (leaf == nullptr) {
    leaf.reset(new (std::nothrow) Leaf{});
    if (leaf == nullptr) return false;
    m_leaves[key >> 8] = leaf.get();
  }
  (*leaf)[key & 0xFF] = value;
  return true;
}

namespace {

/// Calls `visit(bytes, codePoint)` for each pair of the page; false as soon as a call is.
template <typename Visit>
bool forEachPair(const CodePageTable& table, Visit visit) {
  for (const CodePageRow& row : table.rows) {
    for (unsigned i = 0; i < row.count; ++i) {
      const unsigned bytes = (unsigned{row.lead} << 8) | (row.firstTrail + i);
      const std::uint16_t codePoint = table.pairs[row.offset + i];
      if (codePoint != 0 && !visit(bytes, codePoint)) return false;
    }
  }
  return true;
}

}  // namespace

std::unique_ptr<HashConvert> HashConvert::buildToUnicode(const CodePageTable& table) {
  std::unique_ptr<HashConvert> map(new (std::nothrow) HashConvert(table));
  const bool whole = map != nullptr && forEachPair(table, [&](unsigned bytes, std::uint16_t c) {
                       return map->hcInsert(bytes, c);
                     });
  return whole ? std::move(map) : nullptr;
}

std::unique_ptr<HashConvert> HashConvert::buildFromUnicode(const CodePageTable& table) {
  std::unique_ptr<HashConvert> map(new (std::nothrow) HashConvert(table));
  if (map == nullptr) return nullptr;
  const auto insert = [&](unsigned bytes, std::uint16_t codePoint) {
    return std::binary_search(table.decodeOnly.begin(), table.decodeOnly.end(), bytes) ||
           map->hcInsert(codePoint, static_cast<std::uint16_t>(bytes));
  };
  bool whole = forEachPair(table, insert);
  for (unsigned byte = 1; byte < 256; ++byte) {
    if (table.single[byte] != 0) whole = whole && insert(byte, table.single[byte]);
  }
  for (const CodePageEncodeOnly& extra : table.encodeOnly) {
    whole = whole && map->hcInsert(extra.codePoint, extra.bytes);
  }
  for (std::uint16_t codePoint = 0; codePoint < kShort; ++codePoint) {
    const std::uint16_t bytes = map->hcLookup(codePoint);
    if (bytes <= 0xFF) map->m_bytesOfShort[codePoint] = static_cast<std::uint8_t>(bytes);
  }
  return whole ? std::move(map) : nullptr;
}
