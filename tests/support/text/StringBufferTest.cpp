#include <string>

#include <gtest/gtest.h>

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

// Random texts are replaced in by a fuzz target.
TEST(StringBufferTest, ReplacesNothingByNullAndBehindANul) {
  StringBuffer text;
  text.appendN("abcab\0ab", 8);
  EXPECT_EQ(text.replaceAllOccurances("b", nullptr), 2);
  EXPECT_EQ(text.replaceAllOccurances(nullptr, "x"), 0);
  EXPECT_EQ(text.replaceAllOccurances("a", "aa"), 2);
  EXPECT_EQ(text.view(), "aacaa\0ab"s);
  text.setString("One oNe two");
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

TEST(StringBufferTest, HandsItsBlockOver) {
  for (const std::size_t size : {std::size_t{5}, std::size_t{500}}) {
    StringBuffer text(std::string(size, 'x').c_str());
    const CkBlock block = text.extractString();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(block.get())), std::string(size, 'x'));
    EXPECT_EQ(text.getSize(), 0U);
  }
}

}  // namespace
