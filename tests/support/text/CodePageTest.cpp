#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "CkSettings.h"
#include "CodePageTables.h"
#include "DataFile.h"
#include "HashConvert.h"
#include "TextTesting.h"
#include "UnicodeLookup.h"

namespace {

class Crc32 {
 public:
  void add(unsigned value) {
    for (const int shift : {8, 0}) {
      crc_ ^= (value >> shift) & 0xFF;
      for (int bit = 0; bit < 8; ++bit) crc_ = (crc_ >> 1) ^ ((crc_ & 1) != 0 ? 0xEDB88320 : 0);
    }
  }
  std::uint32_t value() const { return ~crc_; }

 private:
  std::uint32_t crc_ = 0xFFFFFFFF;
};

/// The code point of a byte or pair, -1 if it is undefined.
int decoded(int codePage, unsigned bytes) {
  UnicodeLookup single;
  const HashConvert* pairs = nullptr;
  if (!singleByteToUnicode(codePage, single)) {
    pairs = ensureHashToUnicode(codePage);
    single = pairs->singleBytes();
  }
  if (bytes > 0xFF) {
    const int codePoint = pairs == nullptr ? 0 : pairs->hcLookup(static_cast<std::uint16_t>(bytes));
    return codePoint == 0 ? -1 : codePoint;
  }
  const auto byte = static_cast<unsigned char>(bytes);
  return UnicodeLookup::isDefined(byte, single[byte]) ? single[byte] : -1;
}

/// A row of the checksums of published mappings.
struct MappingChecksum {
  explicit MappingChecksum(const std::string& row) {
    std::istringstream numbers(row);
    numbers >> codePage >> numDecoded >> std::hex >> decoded >> std::dec >> numEncoded >>
        std::hex >> encoded;
  }

  int codePage = 0;
  unsigned numDecoded = 0;
  std::uint32_t decoded = 0;
  unsigned numEncoded = 0;
  std::uint32_t encoded = 0;
};

TEST(CodePageTest, TablesEqualThePublishedMappings) {
  const std::vector<std::string> rows = fixture::dataLines("code_pages.txt");
  EXPECT_EQ(codePageTables().size(), rows.size());
  for (const std::string& row : rows) {
    SCOPED_TRACE(row);
    const MappingChecksum expected(row);
    unsigned numDecoded = 0;
    Crc32 decodedSum;
    for (unsigned bytes = 0; bytes < 0x10000; ++bytes) {
      const int codePoint = decoded(expected.codePage, bytes);
      if (codePoint < 0) continue;
      ++numDecoded;
      decodedSum.add(bytes);
      decodedSum.add(static_cast<unsigned>(codePoint));
    }
    EXPECT_EQ(numDecoded, expected.numDecoded);
    EXPECT_EQ(decodedSum.value(), expected.decoded);

    const HashConvert* const map = ensureHashFromUnicode(expected.codePage);
    ASSERT_NE(map, nullptr);
    unsigned numEncoded = 0;
    Crc32 encodedSum;
    for (unsigned codePoint = 0; codePoint < 0x10000; ++codePoint) {
      const unsigned bytes = map->hcLookup(static_cast<std::uint16_t>(codePoint));
      if (bytes == 0 && codePoint != 0) continue;
      ++numEncoded;
      encodedSum.add(bytes);
      encodedSum.add(codePoint);
    }
    EXPECT_EQ(numEncoded, expected.numEncoded);
    EXPECT_EQ(encodedSum.value(), expected.encoded);
  }
}

TEST(CodePageTest, ThreadsBuildTablesAtOnce) {
  CkSettings::cleanupMemory();
  std::vector<std::thread> threads;
  std::vector<std::string> results(8);
  for (std::string& result : results) {
    threads.emplace_back([&result] {
      for (const int codePage : {949, 1251, 932, 936, 866}) {
        result += convert(65001, codePage, "Вес 12 кг 가각").text;
        result += convert(codePage, 1200, result).text;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& result : results) EXPECT_EQ(result, results[0]);
  EXPECT_FALSE(results[0].empty());
}

}  // namespace
