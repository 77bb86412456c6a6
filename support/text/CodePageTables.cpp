#include "CodePageTables.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>

#include "CkMemory.h"
#include "CodePages.h"
#include "HashConvert.h"
#include "UnicodeLookup.h"

namespace {

/// A pointer that threads set once, without a lock: whoever comes second throws its own away.
struct MadeOnce {
  MadeOnce() = default;
  /// The library may be unloaded while its host lives on. Left null: a conversion in a static
  /// object that ends later makes its own anew.
  ~MadeOnce() { clear(); }
  MadeOnce(const MadeOnce&) = delete;
  MadeOnce& operator=(const MadeOnce&) = delete;
  void clear() { delete map.exchange(nullptr); }

  std::atomic<const HashConvert*> map{nullptr};
};

using Made = std::array<MadeOnce, kMostCodePages>;

Made g_toUnicode;
Made g_fromUnicode;

const CodePageTable* findTable(int codePage) {
  const std::span<const CodePageTable> tables = codePageTables();
  const int number = code_page::tableNumberOf(codePage);
  const auto place = std::lower_bound(
      tables.begin(), tables.end(), number,
      [](const CodePageTable& table, int wanted) { return table.codePage < wanted; });
  return place != tables.end() && place->codePage == number ? &*place : nullptr;
}

template <typename Build>
const HashConvert* ensure(Made& made, const CodePageTable& table, Build build) {
  const std::size_t index = static_cast<std::size_t>(&table - codePageTables().data());
  std::atomic<const HashConvert*>& place = made[index].map;
  const HashConvert* known = place.load(std::memory_order_acquire);
  if (known != nullptr) return known;
  std::unique_ptr<const HashConvert> fresh = build(table);
  if (fresh == nullptr) {
    ckNoteMemoryShortage();
    return nullptr;
  }
  if (place.compare_exchange_strong(known, fresh.get(), std::memory_order_acq_rel)) {
    return fresh.release();
  }
  return known;
}

}  // namespace

bool singleByteToUnicode(int codePage, UnicodeLookup& table) {
  const CodePageTable* const found = findTable(codePage);
  if (found == nullptr || found->isDoubleByte()) return false;
  table = UnicodeLookup(found->single);
  return true;
}

const HashConvert* ensureHashToUnicode(int codePage) {
  const CodePageTable* const table = findTable(codePage);
  if (table == nullptr || !table->isDoubleByte()) return nullptr;
  return ensure(g_toUnicode, *table, HashConvert::buildToUnicode);
}

const HashConvert* ensureHashFromUnicode(int codePage) {
  const CodePageTable* const table = findTable(codePage);
  return table == nullptr ? nullptr : ensure(g_fromUnicode, *table, HashConvert::buildFromUnicode);
}

void cleanupCodePages() {
  for (Made* made : {&g_toUnicode, &g_fromUnicode}) {
    for (MadeOnce& once : *made) once.clear();
  }
}
