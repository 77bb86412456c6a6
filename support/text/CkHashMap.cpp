#include "CkHashMap.h"

#include <algorithm>
#include <new>
#include <utility>

#include "Psdk.h"

_ckHashMap::_ckHashMap(int numBuckets)
    : m_buckets(static_cast<std::size_t>(std::max(numBuckets, kFewestBuckets))) {}

std::size_t _ckHashMap::bucketOf(const StringBuffer& key) const {
  std::uint32_t hash = 5381;
  for (const char c : key.view()) {
    hash = hash * 33 + static_cast<std::uint32_t>(static_cast<signed char>(c));
  }
  return hash % m_buckets.size();
}

NonRefCountedObj* _ckHashMap::hashLookup(const StringBuffer& key) const {
  if (!m_validity.isAlive()) {
    Psdk::badObjectFound();
    return nullptr;
  }
  for (const Entry& entry : m_buckets[bucketOf(key)]) {
    if (entry.key.equals(key)) return entry.value.get();
  }
  return nullptr;
}

bool _ckHashMap::hashInsert(const StringBuffer& key, std::unique_ptr<NonRefCountedObj> value) {
  Bucket& bucket = m_buckets[bucketOf(key)];
  for (Entry& entry : bucket) {
    if (entry.key.equals(key)) {
      entry.value = std::move(value);
      return true;
    }
  }
  try {
    Bucket added(1);
    if (!added.front().key.append(key)) return false;
    added.front().value = std::move(value);
    bucket.splice_after(bucket.before_begin(), added);
  } catch (const std::bad_alloc&) {
    return false;
  }
  ++m_size;
  return true;
}

bool _ckHashMap::hashDelete(const StringBuffer& key) {
  Bucket& bucket = m_buckets[bucketOf(key)];
  const auto removed = bucket.remove_if([&](const Entry& entry) { return entry.key.equals(key); });
  m_size -= static_cast<int>(removed);
  return removed != 0;
}
