#pragma once

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <memory>
#include <vector>

#include "KestrumObject.h"
#include "StringBuffer.h"
#include "ValidityWord.h"

/// A map from texts to objects that it owns; the DNS cache is its one user. Not locked: one thread
/// at a time.
class _ckHashMap : public NonRefCountedObj {
 public:
  static constexpr int kDefaultBuckets = 521;

  /// Fewer than 101 buckets are made 101.
  explicit _ckHashMap(int numBuckets = kDefaultBuckets);

  int getSize() const { return m_size; }
  /// Replaces the value of a key that is there. False, and nothing changed, if memory is short.
  bool hashInsert(const StringBuffer& key, std::unique_ptr<NonRefCountedObj> value);
  /// The value, null if there is none; valid until the key is inserted again or deleted.
  NonRefCountedObj* hashLookup(const StringBuffer& key) const;
  /// Deletes the value; false if there is none.
  bool hashDelete(const StringBuffer& key);

 private:
  static constexpr int kFewestBuckets = 101;

  struct Entry {
    StringBuffer key;
    std::unique_ptr<NonRefCountedObj> value;
  };
  using Bucket = std::forward_list<Entry>;

  std::size_t bucketOf(const StringBuffer& key) const;

  /// Stays at the end: the base's word tells of that.
  ValidityWord<std::uint32_t, 0x6119A407, 0x6119A407> m_validity;
  std::vector<Bucket> m_buckets;
  int m_size = 0;
};
