#include <iomanip>
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

/// A mapping's size and the CRC-32 of its pairs, as the data file has them.
class Checksum {
 public:
  void add(unsigned from, unsigned to) {
    ++size_;
    for (const unsigned byte : {from >> 8, from & 0xFF, to >> 8, to & 0xFF}) {
      crc_ ^= byte;
      for (int bit = 0; bit < 8; ++bit) crc_ = (crc_ >> 1) ^ ((crc_ & 1) != 0 ? 0xEDB88320 : 0);
    }
  }
  std::string text() const {
    std::ostringstream text;
    text << ' ' << size_ << ' ' << std::hex << std::uppercase << std::setfill('0') << std::setw(8)
         << ~crc_;
    return text.str();
  }

 private:
  unsigned size_ = 0;
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

TEST(CodePageTest, TablesEqualThePublishedMappings) {
  const std::vector<std::string> rows = fixture::dataLines("code_pages.txt");
  EXPECT_EQ(codePageTables().size(), rows.size());
  for (const std::string& row : rows) {
    const int codePage = std::stoi(row);
    const HashConvert* const map = ensureHashFromUnicode(codePage);
    ASSERT_NE(map, nullptr);
    Checksum decoding;
    Checksum encoding;
    for (unsigned i = 0; i < 0x10000; ++i) {
      const int codePoint = decoded(codePage, i);
      if (codePoint >= 0) decoding.add(i, static_cast<unsigned>(codePoint));
      const unsigned bytes = map->hcLookup(static_cast<std::uint16_t>(i));
      if (bytes != 0 || i == 0) encoding.add(bytes, i);
    }
    EXPECT_EQ(std::to_string(codePage) + decoding.text() + encoding.text(), row);
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
