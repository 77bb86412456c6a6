#pragma once

#include <atomic>
#include <cstdint>

class StringBuffer;

/// Addresses of names met before, for the whole process and any thread; off unless switched on.
/// Two generations of up to 800 names each: when the new one is full it becomes the old one, so
/// that names in use stay and others fade.
class DnsCache {
 public:
  static std::atomic<bool> m_dnsCachingEnabled;
  /// Age at which a record counts no more, in milliseconds; 0 for never.
  static std::atomic<std::uint32_t> m_timeToLiveMs;

  /// An empty host only makes the new generation the old one. Without memory nothing is kept.
  static void dnsCacheInsert(const StringBuffer& host, const StringBuffer& address);
  static bool dnsCacheLookup(const StringBuffer& host, StringBuffer& address);
};
