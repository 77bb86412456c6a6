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

TEST(ContentCodingTest, DecodedBase64IsAppendedOrHandedOver) {
  StringBuffer text(">");
  EXPECT_TRUE(ContentCoding::appendBase64(text, "QUJD"));
  EXPECT_TRUE(ContentCoding::appendBase64(text, nullptr));
  EXPECT_STREQ(text.getString(), ">ABC");
  std::uint32_t length = 77;
  const CkBlock block = ContentCoding::decodeBase64("QUI=", 4, length);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(block.get()), length), "AB");
  EXPECT_EQ(ContentCoding::decodeBase64("", 0, length), nullptr);
  EXPECT_EQ(length, 0U);
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

TEST(ContentCodingTest, LinesOfQuotedPrintableHave76CharactersAtMost) {
  EXPECT_EQ(encoded(_clsEncode::QuotedPrintable, std::string(77, 'x')),
            std::string(75, 'x') + "=\r\nxx");
  EXPECT_EQ(encoded(_clsEncode::QuotedPrintable, std::string(76, 'x')), std::string(76, 'x'));
}

TEST(ContentCodingTest, LongNumbers) {
  constexpr const char* kDecimal =
      "66680144328798542740798517907212577971447583223159081603962578117640372378176320"
      "71521432200871554290742929910593433240445888801654119365080363356052330830046095"
      "15757951401455846307828591181402472896501613588660198169074803747646129116387737"
      "6";
  constexpr const char* kBase58 =
      "Ax4Cst39tDs1YtZYrvAiERa7TNeGUce5k5pBqM9AkvS29vSeM6zPSYyFZ3gftD8m4AVRyRe32piB8Pw5"
      "hvBZU9WGTkNXfKpPzSkuUVV3HDTieA3CEhPKWCBHNjVjyYYtyBqcf6mWw";
  // 2 to the 800th, in both bases, whose digits fill several limbs.
  const std::string bytes = '\1' + std::string(100, '\0');
  EXPECT_EQ(encoded(_clsEncode::Decimal, bytes), kDecimal);
  EXPECT_EQ(encoded(_clsEncode::Base58, bytes), kBase58);
}

TEST(ContentCodingTest, TheAnsiPageMayLackCharactersButNotBeMissing) {
  const auto decode = [](int page) {
    const AnsiIs ansi(page);
    DataBuffer out;
    LogNull log;
    const bool ok = _clsEncode::decodeBinary(_clsEncode::Ansi, StringBuffer("a€"), out, false, log);
    return std::pair(ok, toString(out));
  };
  EXPECT_EQ(decode(28595), std::pair(true, "a"s));
  EXPECT_EQ(decode(709), std::pair(false, ""s));
}

TEST(ContentCodingTest, NamesOfEncodings) {
  for (const fixture::DataRow& row : fixture::dataRows("encoding_names.txt")) {
    EXPECT_EQ(_clsEncode::parseEncodingName(row.left.c_str()), std::stoi(row.right)) << row.left;
  }
  EXPECT_EQ(_clsEncode::parseEncodingName(nullptr), 1);
  EXPECT_STREQ(_clsEncode::encodingIdToName(999), "base64");
}

}  // namespace
