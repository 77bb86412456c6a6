#include <string>

#include <gtest/gtest.h>

#include "ContentCoding.h"
#include "DataBuffer.h"
#include "StringBuffer.h"

namespace {

using namespace std::string_literals;

TEST(StringBufferTest, KeepsShortTextsInsideAndGrowsOnTheHeap) {
  StringBuffer text;
  for (int i = 0; i < 81; ++i) text.appendChar('x');
  EXPECT_FALSE(text.onHeap());
  text.appendChar('y');
  EXPECT_TRUE(text.onHeap());
  EXPECT_EQ(text.heapUsage(), 285);
  EXPECT_EQ(text.memoryUsage(), 285 + sizeof text);
  EXPECT_EQ(text.getExtendSize(), 202U);

  text.appendCharN('z', 285 - 82 - 1);  // just fills the block
  EXPECT_EQ(text.heapUsage(), 285);
  text.appendChar('z');
  EXPECT_EQ(text.heapUsage(), 284 + 1 + 202 + 1);
  EXPECT_EQ(text.getExtendSize(), 488U / 2);

  const char* const block = text.getString();
  text.weakClear();
  EXPECT_EQ(text.getString(), block);
  EXPECT_EQ(text.getExtendSize(), 202U);
  text.strongClear();
  EXPECT_FALSE(text.onHeap());
}

TEST(StringBufferTest, NulBytesAtTheEndDontCount) {
  StringBuffer text;
  text.appendN("ab\0\0", 4);
  EXPECT_EQ(text.getSize(), 2U);
  text.setString("");
  text.appendN("a\0b", 3);
  EXPECT_EQ(text.getSize(), 3U);
  EXPECT_STREQ(text.getString(), "a");
  text.appendCharN('x', 0xC00001);
  EXPECT_EQ(text.getSize(), 3U);
  EXPECT_FALSE(text.appendN("x", ~std::size_t{0} - 2));  // no sum of it may wrap around
  EXPECT_FALSE(text.expectNumBytes(0xFFFFFFFF));
}

TEST(StringBufferTest, ReplacesEveryOccurrenceOnce) {
  struct Case {
    std::string text;
    const char* from;
    const char* to;
    int count;
    std::string result;
  };
  const std::string big(1000, 'a');
  const Case cases[] = {{"aaa", "aa", "b", 1, "ba"},
                        {"abcabc", "b", nullptr, 2, "acac"},
                        {"abc", "", "x", 0, "abc"},
                        {"abc", nullptr, "x", 0, "abc"},
                        {"abc", "x", "y", 0, "abc"},
                        {"aXa", "X", "XX", 1, "aXXa"},
                        {"aa", "a", "bc", 2, "bcbc"},
                        {"ab\0ab"s, "ab", "x", 1, "x\0ab"s},  // a NUL ends the search
                        {big, "a", "bcd", 1000, [] {
                           std::string all;
                           for (int i = 0; i < 1000; ++i) all += "bcd";
                           return all;
                         }()}};
  for (const Case& test : cases) {
    StringBuffer text;
    text.append(std::string_view(test.text));
    EXPECT_EQ(text.replaceAllOccurances(test.from, test.to), test.count) << test.text;
    EXPECT_EQ(text.view(), test.result);
  }
  StringBuffer text("One oNe two");
  EXPECT_EQ(text.replaceAllOccurancesNoCase("ONE", "1"), 2);
  EXPECT_EQ(text.replaceFirstOccurance("TWO", text.getString(), true), 1);
  EXPECT_STREQ(text.getString(), "1 1 1 1 two");
  EXPECT_EQ(text.replaceFirstOccurance("none", "x", false), 0);
}

TEST(StringBufferTest, SearchesInLinearTime) {
  // Each place is nearly a match: a million times a quarter of a million steps, if all were tried.
  const std::string wanted = std::string(250'000, 'a') + 'b';
  StringBuffer text;
  text.appendCharN('A', 1'000'000);
  EXPECT_EQ(text.replaceAllOccurancesNoCase(wanted.c_str(), "x"), 0);
  text.toLowerCase();
  EXPECT_EQ(text.replaceAllOccurances(wanted.c_str(), "x"), 0);
  DataBuffer bytes;
  bytes.borrowData(text.getString(), text.getSize());
  EXPECT_EQ(bytes.findBytes2(wanted.data(), 250'001), DataBuffer::kNotFound);
}

TEST(StringBufferTest, Trims) {
  struct Case {
    const char* text;
    const char* trimmed;
    const char* trimmed2;
  };
  for (const Case& test : {Case{"\t a b \r\n", "a b \r\n", "a b"},
                           {"  ", "", ""},
                           {"", "", ""},
                           {"x", "x", "x"},
                           {"\r\n x\t", "\r\n x", "x"}}) {
    StringBuffer text(test.text);
    const std::uint32_t before = text.getSize();
    const std::uint32_t removed = text.trim();
    EXPECT_EQ(removed, before - text.getSize());
    EXPECT_STREQ(text.getString(), test.trimmed);
    text.setString(test.text);
    text.trim2();
    EXPECT_STREQ(text.getString(), test.trimmed2);
  }
}

TEST(StringBufferTest, HandsItsBlockOver) {
  for (const std::size_t size : {std::size_t{5}, std::size_t{500}}) {
    StringBuffer text(std::string(size, 'x').c_str());
    const CkBlock block = text.extractString();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(block.get())), std::string(size, 'x'));
    EXPECT_EQ(text.getSize(), 0U);
  }
  StringBuffer text("ab");
  EXPECT_TRUE(ContentCoding::encodeHex(text.getString(), 2, HexStyle::Upper, text));
  text.appendCharN('z', 75);
  EXPECT_TRUE(ContentCoding::encodeBase64_noCrLf(text.getString(), 81, text));  // which moves
  EXPECT_TRUE(text.view().starts_with("ab6162zzz"));
  EXPECT_EQ(text.getSize(), 81U + 108U);
}

}  // namespace
