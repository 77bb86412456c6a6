#include <cstring>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "ClsEncode.h"
#include "ContentCoding.h"
#include "DataFile.h"
#include "HexBytes.h"
#include "TextTesting.h"
#include "XString.h"

namespace {

using namespace std::string_literals;

std::string encoded(int encoding, const std::string& bytes) {
  DataBuffer buffer;
  buffer.append(bytes.data(), bytes.size());
  _clsEncode coder;
  coder.put_EncodingModeInt(encoding);
  XString text;
  LogNull log;
  EXPECT_TRUE(coder.encodeBinary(buffer, text, false, log));
  return std::string(text.getUtf8Sb().view());
}

std::string decoded(int encoding, const std::string& text) {
  XString given;
  given.setFromUtf8N(text.data(), text.size());
  _clsEncode coder;
  coder.put_EncodingModeInt(encoding);
  DataBuffer out;
  LogNull log;
  EXPECT_TRUE(coder.decodeBinary(given, out, false, log));
  return toString(out);
}

TEST(ContentCodingTest, Base64IsForgiving) {
  const std::pair<std::string, std::string> cases[] = {{"QUJD", "ABC"},
                                                       {"QU JD\r\n", "ABC"},
                                                       {"QUI=", "AB"},
                                                       {"Q", ""},
                                                       {"=QUJD", ""},
                                                       {"QU.JD", "ABC"},
                                                       {"QU-J_D", "ABC"},
                                                       {"QUJD=QUJD", "ABC"},
                                                       {"", ""},
                                                       {"QUJDRA", "ABCD"},
                                                       {"\xFFQ\x80UJ\rD", "ABC"},
                                                       {"QUJ\0D"s, "AB"},
                                                       {"////", "\xFF\xFF\xFF"}};
  for (const auto& [text, bytes] : cases) {
    const std::vector<char> exact(text.begin(), text.end());
    DataBuffer out;
    EXPECT_TRUE(ContentCoding::decodeBase64ToDb(exact.data(), exact.size(), out));
    EXPECT_EQ(toString(out), bytes) << text;
    std::uint32_t length = 77;
    const CkBlock block = ContentCoding::decodeBase64(exact.data(), exact.size(), length);
    EXPECT_EQ(length, bytes.size());
    StringBuffer appended(">");
    EXPECT_TRUE(ContentCoding::appendBase64(appended, text.c_str()));
    EXPECT_EQ(appended.view(), ">" + bytes) << text;
  }
}

TEST(ContentCodingTest, TestsOfBase64) {
  struct Case {
    const char* text;
    bool valid;
    bool strictly;
  };
  for (const Case& test :
       {Case{"QU+/\t\r\n Q==", true, true}, Case{"", true, true}, Case{"QU.J", true, false},
        Case{"QU!J", false, false}, Case{"QU{J", false, false}, Case{"QU=!", true, false}}) {
    const std::size_t n = std::strlen(test.text);
    EXPECT_EQ(ContentCoding::validateBase64(test.text, n), test.valid) << test.text;
    EXPECT_EQ(ContentCoding::isBase64(test.text, n), test.strictly) << test.text;
  }
  EXPECT_FALSE(ContentCoding::validateBase64(nullptr, 0));
}

TEST(ContentCodingTest, WrappedBase64AlwaysEndsItsLine) {
  const auto wrapped = [](std::size_t n, std::uint32_t line) {
    ContentCoding coder;
    coder.setLineLength(line);
    StringBuffer out;
    EXPECT_TRUE(coder.encodeBase64(std::string(n, '\0').data(), n, out));
    return std::string(out.view());
  };
  EXPECT_EQ(wrapped(57, 76), std::string(76, 'A') + "\r\n\r\n");
  EXPECT_EQ(wrapped(58, 76), std::string(76, 'A') + "\r\nAA==\r\n");
  EXPECT_EQ(wrapped(3, 76), "AAAA\r\n");
  EXPECT_EQ(wrapped(9, 1), "AAAAAAAAAAAA\r\n\r\n");  // lines below 10 become 10
  EXPECT_EQ(wrapped(0, 76), "");
  EXPECT_EQ(ContentCoding::computeBase64Size(0xFFFFFFFF, 0), 0xFFFFFFFF);
}

TEST(ContentCodingTest, KnownTexts) {
  for (const fixture::DataRow& row : fixture::dataRows("encodings.txt")) {
    SCOPED_TRACE(row.heading + ": " + row.left);
    const bool bothWays = row.heading.starts_with("encoding ");
    const int number = std::stoi(row.heading.substr(row.heading.find(' ')));
    const std::string bytes = fixture::characters(bothWays ? row.left : row.right);
    const std::string text = fixture::characters(bothWays ? row.right : row.left);
    EXPECT_EQ(decoded(number, text), bytes);
    if (bothWays) {
      EXPECT_EQ(encoded(number, bytes), text);
    }
  }
}

TEST(ContentCodingTest, WhatIsEncodedDecodes) {
  std::mt19937 random(5);
  for (int encoding = 1; encoding <= 26; ++encoding) {
    SCOPED_TRACE(_clsEncode::encodingIdToName(encoding));
    for (std::size_t n = 0; n < 200; n += n < 12 ? 1 : 13) {
      std::string bytes(n, '\0');
      for (char& c : bytes) c = static_cast<char>(random());
      // The sign in front of a number keeps its zeros, and texts are no arbitrary bytes.
      if (encoding == _clsEncode::Decimal && n != 0) bytes[0] = '\1';
      if (encoding == _clsEncode::Ansi || encoding == _clsEncode::Json) {
        for (char& c : bytes) c = static_cast<char>(1 + (c & 0x3F));
      }
      const std::string text = encoded(encoding, bytes);
      EXPECT_EQ(decoded(encoding, text), bytes) << text;
      std::size_t longest = 0;
      for (std::size_t at = 0; encoding == _clsEncode::QuotedPrintable && at < text.size();) {
        const std::size_t end = std::min(text.find("\r\n", at), text.size());
        longest = std::max(longest, end - at);
        at = end + 2;
      }
      EXPECT_LE(longest, 76U);
    }
  }
}

TEST(ContentCodingTest, NamesOfEncodings) {
  for (const fixture::DataRow& row : fixture::dataRows("encoding_names.txt")) {
    EXPECT_EQ(_clsEncode::parseEncodingName(row.left.c_str()), std::stoi(row.right)) << row.left;
  }
  EXPECT_EQ(_clsEncode::parseEncodingName(nullptr), 1);
  for (int number = 1; number <= 26; ++number) {
    const char* const name = _clsEncode::encodingIdToName(number);
    const bool known = number == 1 || std::string_view(name) != "base64";
    EXPECT_EQ(_clsEncode::parseEncodingName(name), known ? number : 1) << name;
  }
  EXPECT_STREQ(_clsEncode::encodingIdToName(999), "base64");
}

}  // namespace
