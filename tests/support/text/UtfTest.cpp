#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CkUtf.h"
#include "StringBuffer.h"
#include "TextTesting.h"

namespace {

const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

/// Every sequence of up to 4 bytes is legal exactly if the shortest form of a scalar value.
TEST(UtfTest, LegalSequencesAreTheShortestFormsOfScalarValues) {
  std::vector<bool> legal3(1U << 24);
  for (std::uint32_t c = 0; c <= 0x10FFFF; ++c) {
    unsigned char bytes[6];
    const int length = _ckUtf::oneUtf32ToUtf8(c, bytes);
    const bool scalar = c < 0xD800 || c > 0xDFFF;
    EXPECT_EQ(_ckUtf::isLegalUtf8(bytes, static_cast<std::size_t>(length)), scalar) << c;
    EXPECT_FALSE(_ckUtf::isLegalUtf8(bytes, static_cast<std::size_t>(length) + 4)) << c;
    if (length == 3 && scalar) {
      legal3[static_cast<std::size_t>(bytes[0] << 16 | bytes[1] << 8 | bytes[2])] = true;
    }
  }
  unsigned different = 0;
  for (unsigned i = 0; i < legal3.size(); ++i) {
    const unsigned char bytes[] = {static_cast<unsigned char>(i >> 16),
                                   static_cast<unsigned char>(i >> 8),
                                   static_cast<unsigned char>(i)};
    if (_ckUtf::isLegalUtf8(bytes, 3) != legal3[i]) ++different;
  }
  EXPECT_EQ(different, 0U);
  for (const char* overlong : {"\xC0\x80", "\xC1\xBF", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80"}) {
    const std::string text = overlong;
    EXPECT_FALSE(_ckUtf::isLegalUtf8(bytesOf(text), text.size()));
  }
}

TEST(UtfTest, ChecksLeadsAndContinuations) {
  const std::pair<std::string, bool> cases[] = {
      {"", true},          {"abc", true},   {"\xEF\xBB\xBFж", true},
      {"\x80", false},     {"\xD0", false}, {"\xD0z", false},
      {"\xF8\x80", false}, {"жё", true},    {"ж\xE2\x82", false}};
  for (const auto& [text, valid] : cases) {
    const std::vector<unsigned char> exact(text.begin(), text.end());
    EXPECT_EQ(_ckUtf::isValidUtf8(exact.data(), exact.size()), valid) << text;
  }
  const std::string late = std::string(0x20000, 'a') + "\xFF";
  EXPECT_TRUE(_ckUtf::isValidUtf8(bytesOf(late), late.size()));
  EXPECT_FALSE(_ckUtf::isValidUtf8(bytesOf(late), late.size(), late.size()));
}

TEST(UtfTest, WritesSurrogatesForModifiedUtf8) {
  StringBuffer text("a😀ж");
  bool changed = false;
  EXPECT_TRUE(_ckUtf::ensureModifiedUtf8(text, changed));
  EXPECT_TRUE(changed);
  EXPECT_STREQ(text.getString(), "a\xED\xA0\xBD\xED\xB8\x80ж");
  EXPECT_TRUE(_ckUtf::ensureModifiedUtf8(text, changed));
  EXPECT_FALSE(changed);
  text.setString("\xF0\x9F\x98");  // cut off
  EXPECT_TRUE(_ckUtf::ensureModifiedUtf8(text, changed));
  EXPECT_FALSE(changed);
}

}  // namespace
