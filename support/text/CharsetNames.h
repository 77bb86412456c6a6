#pragma once

#include <span>
#include <string_view>

/// A name that leads to a code page.
struct CharsetName {
  std::string_view name;
  int codePage;
};

/// The name that a code page goes by.
struct CanonicalName {
  int codePage;
  const char* name;
};

/// All names in their order.
std::span<const CharsetName> charsetNames();

/// One name for each code page, ascending by number.
std::span<const CanonicalName> canonicalNames();
