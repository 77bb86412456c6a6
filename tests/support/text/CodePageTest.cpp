#include <iconv.h>

#include <array>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "CodePageTables.h"
#include "EncodingConvert.h"
#include "HashConvert.h"
#include "MappingChecksums.h"
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

TEST(CodePageTest, TablesEqualThePublishedMappings) {
  ASSERT_EQ(codePageTables().size(), std::size(kMappingChecksums));
  for (const MappingChecksum& expected : kMappingChecksums) {
    SCOPED_TRACE(expected.codePage);
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

/// Pages that glibc defines by the same published tables.
TEST(CodePageTest, AgreesWithTheSystem) {
  struct Pair {
    int codePage;
    const char* name;
  };
  const Pair pairs[] = {
      {932, "CP932"},         {936, "GBK"},           {949, "UHC"},          {950, "CP950"},
      {1250, "CP1250"},       {1251, "CP1251"},       {1252, "CP1252"},      {1253, "CP1253"},
      {1254, "CP1254"},       {1255, "CP1255"},       {1256, "CP1256"},      {1257, "CP1257"},
      {1258, "CP1258"},       {28591, "ISO-8859-1"},  {28592, "ISO-8859-2"}, {28593, "ISO-8859-3"},
      {28594, "ISO-8859-4"},  {28595, "ISO-8859-5"},  {28596, "ISO-8859-6"}, {28599, "ISO-8859-9"},
      {28603, "ISO-8859-13"}, {28605, "ISO-8859-15"}, {20866, "KOI8-R"},     {866, "CP866"},
      {437, "CP437"},         {850, "CP850"},         {852, "CP852"},        {855, "CP855"},
      {37, "CP037"},          {500, "CP500"}};
  for (const auto& [codePage, name] : pairs) {
    SCOPED_TRACE(name);
    const iconv_t system = iconv_open("UTF-16LE", name);
    if (system == reinterpret_cast<iconv_t>(-1)) {
      ADD_FAILURE() << "the system lacks this character set";
      continue;
    }
    int differences = 0;
    for (unsigned bytes = 1; bytes < 0x10000; ++bytes) {
      if (bytes == 0x100 && ensureHashToUnicode(codePage) == nullptr) break;
      std::array<char, 2> input = {static_cast<char>(bytes >> 8), static_cast<char>(bytes)};
      std::array<char, 16> output = {};
      char* in = bytes > 0xFF ? input.data() : input.data() + 1;
      char* out = output.data();
      std::size_t inLeft = bytes > 0xFF ? 2 : 1;
      std::size_t outLeft = output.size();
      iconv(system, nullptr, nullptr, nullptr, nullptr);
      const bool ok = iconv(system, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1);
      iconv(system, nullptr, nullptr, &out, &outLeft);
      if (bytes > 0xFF && out - output.data() > 2) continue;  // two characters of one byte each
      int expected = -1;
      if (ok && inLeft == 0 && out - output.data() == 2) {
        expected = static_cast<unsigned char>(output[0]) | static_cast<unsigned char>(output[1])
                                                               << 8;
      }
      // The system lets control bytes and private use pass where the tables have nothing.
      const bool passedThrough =
          (bytes >= 0x80 && bytes <= 0xFF && expected >= 0x80 && expected < 0xA0) ||
          (expected >= 0xE000 && expected <= 0xF8FF);
      const int actual = decoded(codePage, bytes);
      if (actual != expected && !(actual == -1 && passedThrough)) ++differences;
    }
    EXPECT_EQ(differences, 0);
    iconv_close(system);
  }
}

TEST(CodePageTest, OnlyDoubleByteTablesHavePairs) {
  for (const int codePage : {932, 936, 52936, 949, 950, 1361, 10001, 51932, 51936, 51949}) {
    UnicodeLookup single;
    EXPECT_NE(ensureHashToUnicode(codePage), nullptr) << codePage;
    EXPECT_FALSE(singleByteToUnicode(codePage, single)) << codePage;
  }
  for (const int codePage : {0, 709, 1200, 1259, 20932, 54936, 55001, 65001}) {
    EXPECT_EQ(ensureHashFromUnicode(codePage), nullptr) << codePage;
  }
}

TEST(CodePageTest, ThreadsBuildTablesAtOnce) {
  EncodingConvert::cleanupMemory();
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
