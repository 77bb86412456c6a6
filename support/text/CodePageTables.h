#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

class HashConvert;
class UnicodeLookup;

/// Pairs of a double-byte page that begin with one byte.
struct CodePageRow {
  std::uint8_t lead;
  std::uint8_t firstTrail;
  std::uint8_t count;
  std::uint16_t offset;  ///< of the first one among all pairs
};

/// A code point that encodes to bytes which decode to another one.
struct CodePageEncodeOnly {
  std::uint16_t codePoint;
  std::uint16_t bytes;
};

/// A code page as it is compiled in. Code point 0 stands for undefined cells, but for byte 0.
struct CodePageTable {
  int codePage;
  bool isLowerAscii;            ///< bytes below 80 are ASCII
  const std::uint16_t* single;  ///< 256 code points; 0 also for the first byte of a pair
  std::span<const CodePageRow> rows;
  std::span<const std::uint16_t> pairs;
  std::span<const std::uint16_t> decodeOnly;  ///< bytes or pairs, ascending
  std::span<const CodePageEncodeOnly> encodeOnly;

  bool isDoubleByte() const { return !rows.empty(); }
};

/// More than there are. The list of tables made at run time is a plain array of this size.
constexpr std::size_t kMostCodePages = 256;

/// All tables, ascending by code page.
std::span<const CodePageTable> codePageTables();

/// The tables in the form that conversions use, each made at its first use and kept until
/// cleanupCodePages() or the end of the library. Threads may ask at once: each gets a finished
/// table or makes its own and finds that another one was faster.

/// The bytes of a single-byte page; false if there is no such page.
bool singleByteToUnicode(int codePage, UnicodeLookup& table);
/// The pairs of a double-byte page, null if there is no such page or no memory.
const HashConvert* ensureHashToUnicode(int codePage);
/// The way back for pages of both kinds, null if there is no such page or no memory.
const HashConvert* ensureHashFromUnicode(int codePage);
/// Frees all of them. No conversion may run meanwhile.
void cleanupCodePages();
