#include <random>
#include <string>

#include <gtest/gtest.h>

#include "ClsEncode.h"
#include "ContentCoding.h"
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
  StringBuffer sb;
  sb.append(std::string_view(text));
  DataBuffer out;
  LogNull log;
  EXPECT_TRUE(_clsEncode::decodeBinary(encoding, sb, out, false, log));
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
  }
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

TEST(ContentCodingTest, Base64Tests) {
  EXPECT_FALSE(ContentCoding::validateBase64(nullptr, 0));
  EXPECT_TRUE(ContentCoding::validateBase64("", 0));
  EXPECT_TRUE(ContentCoding::validateBase64("QU\r\n,:=\xFF", 8));
  EXPECT_FALSE(ContentCoding::validateBase64("QU!", 3));
  EXPECT_TRUE(ContentCoding::isBase64("QU==\t\r\n", 7));
  EXPECT_FALSE(ContentCoding::isBase64("Q,", 2));
}

struct Known {
  int encoding;
  std::string bytes, text;
};

/// Examples of the standards, and of the encodings that have none.
TEST(ContentCodingTest, KnownTexts) {
  const Known cases[] = {{_clsEncode::Base64, "foobar", "Zm9vYmFy"},
                         {_clsEncode::Base64, "foob", "Zm9vYg=="},
                         {_clsEncode::Base64Mime, "fo", "Zm8=\r\n"},
                         {_clsEncode::ModBase64, "\xFB\xFF\xFE\xFF", "-__-_w=="},
                         {_clsEncode::Base64Url, "\xFB\xFF\xFE\xFF", "-__-_w"},
                         {_clsEncode::Hex, "\x0A\xBC", "0ABC"},
                         {_clsEncode::HexLower, "\x0A\xBC", "0abc"},
                         {_clsEncode::Fingerprint, "\x0A\xBC\x01", "0A:BC:01"},
                         {_clsEncode::Base32, "foobar", "MZXW6YTBOI======"},
                         {_clsEncode::Base32, "fooba", "MZXW6YTB"},
                         {_clsEncode::Base58, "Hello World!", "2NEpo7TZRRrLZSi2U"},
                         {_clsEncode::Base58, "\0\0\x28\x7F\xB4\xCD"s, "11233QC4"},
                         {_clsEncode::Ascii85, "Man sure.", "9jqo^F*2M7/c~>"s.substr(0, 12)},
                         {_clsEncode::Ascii85, "\0\0\0\0"s, "z"},
                         {_clsEncode::Decimal, "\x01\0\0"s, "65536"},
                         {_clsEncode::Decimal, "\0"s, "0"},
                         {_clsEncode::DecList, "\x01\xFF"s, "1,255"},
                         {_clsEncode::Eda, "\xFF\xFF\x2B", "ZJ310"},
                         {_clsEncode::QuotedPrintable, "a=b \r\n\xE9 ", "a=3Db=20\r\n=E9=20"},
                         {_clsEncode::Url, "a b/\xFF", "a%20b%2F%FF"},
                         {_clsEncode::UrlRfc1738, "a+b~(", "a+b%7E("},
                         {_clsEncode::UrlRfc2396, "a+b~(", "a%2Bb~("},
                         {_clsEncode::UrlRfc3986, "a+b~(", "a%2Bb~%28"},
                         {_clsEncode::UrlOAuth, "a+b~!", "a%2Bb~%21"},
                         {_clsEncode::Json, "\"a\\\n\x01/ж", "\\\"a\\\\\\n\\u0001/ж"},
                         {_clsEncode::Q, "Ве с", "=?utf-8?Q?=D0=92=D0=B5_=D1=81?="},
                         {_clsEncode::B, "Вес", "=?utf-8?B?0JLQtdGB?="},
                         {_clsEncode::Uu, "Cat", "begin 644 file.dat\r\n#0V%T\r\n`\r\nend\r\n"},
                         {999, "AB", "QUI="}};
  for (const Known& known : cases) {
    EXPECT_EQ(encoded(known.encoding, known.bytes), known.text);
    EXPECT_EQ(decoded(known.encoding, known.text), known.bytes) << known.text;
  }
}

TEST(ContentCodingTest, DecodersTakeWhatOthersWrite) {
  const Known cases[] = {{_clsEncode::Hex, "\x0A\xBC", "abc"},  // an odd first digit stands alone
                         {_clsEncode::Fingerprint, "\x0A\xBC", " 0a:bc\r\n"},
                         {_clsEncode::QuotedPrintable, "long line=", "long =\r\nline=3D"},
                         {_clsEncode::QuotedPrintable, "a\r\nb=zc", "a  \r\nb=zc"},
                         {_clsEncode::Url, "100% a%2", "100%25 a%2"},
                         {_clsEncode::Json, "😀é/", "\\ud83d\\ude00\\u00e9\\/"},
                         {_clsEncode::Q, "a b c", "=?utf-8?q?a_b?=\r\n =?utf-8?B?IGM=?="},
                         {_clsEncode::Q, "x =?broken", "x =?broken"},
                         {_clsEncode::Ascii85, "Man ", "<~9jqo^~>"},
                         {_clsEncode::Base32, "foobar", "mzxw6-ytboi"},
                         {_clsEncode::DecList, "\x01\x02"s, " 1; 2 "},
                         {_clsEncode::Uu, "Cat", "#0V%T\n"},
                         {_clsEncode::Base64Url, "AB", " QUI\r\n"}};
  for (const Known& known : cases) EXPECT_EQ(decoded(known.encoding, known.text), known.bytes);
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
  const std::pair<const char*, int> cases[] = {{nullptr, 1},
                                               {"Base-64", 1},
                                               {"BASE64URL", 20},
                                               {"foo", 0},
                                               {"base32", 7},
                                               {"Base 58", 17},
                                               {"base64_mime", 24},
                                               {"q", 15},
                                               {"B", 16},
                                               {"qp", 2},
                                               {"quoted-printable", 2},
                                               {"hex_lower", 25},
                                               {"hex-lower", 25},
                                               {"hexadecimal", 3},
                                               {"url", 4},
                                               {"url_rfc1738", 11},
                                               {"url_oauth", 14},
                                               {"url-oauth", 4},
                                               {"ascii", 6},
                                               {"ascii85", 26},
                                               {"us-ascii", 6},
                                               {"modBase64", 10},
                                               {"thumbprint", 18},
                                               {"json", 22},
                                               {"declist", 23},
                                               {"uuencode", 8},
                                               {"decimal", 19},
                                               {"eda", 21},
                                               {"", 0}};
  for (const auto& [name, number] : cases) {
    EXPECT_EQ(_clsEncode::parseEncodingName(name), number) << (name ? name : "null");
  }
  for (int number = 1; number <= 26; ++number) {
    const char* const name = _clsEncode::encodingIdToName(number);
    const bool known = number == 1 || std::string_view(name) != "base64";
    EXPECT_EQ(_clsEncode::parseEncodingName(name), known ? number : 1) << name;
  }
  EXPECT_STREQ(_clsEncode::encodingIdToName(999), "base64");
}

TEST(ContentCodingTest, AppendsOrReplaces) {
  LogNull log;
  StringBuffer text("QUI=");
  DataBuffer out;
  out.append("x", 1);
  EXPECT_TRUE(_clsEncode::decodeBinary(1, text, out, true, log));
  EXPECT_EQ(toString(out), "xAB");
  EXPECT_TRUE(_clsEncode::decodeBinary(1, text, out, false, log));
  EXPECT_EQ(toString(out), "AB");
  EXPECT_TRUE(out.encodeDB("hex", text));
  EXPECT_STREQ(text.getString(), "QUI=4142");
  EXPECT_TRUE(ContentCoding::appendBase64(text, "QUI="));
  EXPECT_STREQ(text.getString(), "QUI=4142AB");
}

}  // namespace
