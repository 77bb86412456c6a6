#include "DnsCache.h"

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "CkHashMap.h"
#include "KestrumCritSec.h"
#include "StringBuffer.h"
#include "TickCount.h"

namespace {

constexpr int kBuckets = 1000;
constexpr int kMostRecords = 800;

struct Record : NonRefCountedObj {
  StringBuffer address;
  std::uint32_t insertedTick = 0;
};

struct Generations {
  KestrumCritSec lock;
  std::unique_ptr<_ckHashMap> fresh;
  std::unique_ptr<_ckHashMap> old;

  /// False, with the generations as they were, if memory is short.
  bool rotate() {
    try {
      auto next = std::make_unique<_ckHashMap>(kBuckets);
      old = std::exchange(fresh, std::move(next));
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }
};

// Never destroyed: another static object's destructor may still resolve a name.
Generations& generations() {
  alignas(Generations) static std::byte memory[sizeof(Generations)];
  static auto* const made = new (memory) Generations;
  return *made;
}

/// The record's address, if it is there and young enough.
bool lookupIn(_ckHashMap* map, const StringBuffer& host, StringBuffer& address) {
  if (map == nullptr) return false;
  const auto* record = static_cast<const Record*>(map->hashLookup(host));
  if (record == nullptr) return false;
  const std::uint32_t now = ckTickCount();
  const std::uint32_t timeToLive = DnsCache::m_timeToLiveMs;
  if (timeToLive > 0 && (now < record->insertedTick || now - record->insertedTick > timeToLive)) {
    map->hashDelete(host);
    return false;
  }
  return address.setString(record->address);
}

}  // namespace

std::atomic<bool> DnsCache::m_dnsCachingEnabled{false};
std::atomic<std::uint32_t> DnsCache::m_timeToLiveMs{0};

void DnsCache::dnsCacheInsert(const StringBuffer& host, const StringBuffer& address) {
  if (!m_dnsCachingEnabled) return;
  Generations& cache = generations();
  const CritSecExitor lock(&cache.lock);
  const bool isFull = cache.fresh == nullptr || cache.fresh->getSize() >= kMostRecords;
  if ((host.empty() || isFull) && !cache.rotate()) return;
  if (host.empty()) return;
  std::unique_ptr<Record> record(new (std::nothrow) Record);
  if (record == nullptr || !record->address.setString(address)) return;
  record->insertedTick = ckTickCount();
  cache.fresh->hashInsert(host, std::move(record));
}

bool DnsCache::dnsCacheLookup(const StringBuffer& host, StringBuffer& address) {
  if (!m_dnsCachingEnabled) return false;
  Generations& cache = generations();
  const CritSecExitor lock(&cache.lock);
  return lookupIn(cache.fresh.get(), host, address) || lookupIn(cache.old.get(), host, address);
}
