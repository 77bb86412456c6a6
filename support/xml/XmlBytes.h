#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// Classes of bytes that the parser stops at or keeps, as bits of one table.
enum XmlByteClass : std::uint8_t {
  kXmlBlank = 1,                ///< tab, line feed, carriage return, blank
  kEndsTag = 2,                 ///< white space / >
  kEndsAttributeName = 4,       ///< white space = / >
  kXmlQuote = 8,                ///< " '
  kEndsPrologName = 16,         ///< white space = ? >
  kEndsQuotedPrologValue = 32,  ///< " ' CR LF
  kEndsPlainPrologValue = 64,   ///< " ' CR LF tab blank
  kXmlNameByte = 128,  ///< what a name keeps: letters, digits, - . _ ! : and bytes from 80 on
};

namespace xml_bytes {

constexpr std::array<std::uint8_t, 256> makeTable() {
  std::array<std::uint8_t, 256> table = {};
  const auto mark = [&table](std::string_view bytes, unsigned classes) {
    for (const char c : bytes) {
      std::uint8_t& entry = table[static_cast<unsigned char>(c)];
      entry = static_cast<std::uint8_t>(entry | classes);
    }
  };
  mark(" \t\r\n",
       kXmlBlank | kEndsTag | kEndsAttributeName | kEndsPrologName | kEndsPlainPrologValue);
  mark("\r\n", kEndsQuotedPrologValue);
  mark("/>", kEndsTag | kEndsAttributeName);
  mark("=", kEndsAttributeName | kEndsPrologName);
  mark("?>", kEndsPrologName);
  mark("\"'", kXmlQuote | kEndsQuotedPrologValue | kEndsPlainPrologValue);
  mark("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._!:", kXmlNameByte);
  for (std::size_t i = 0x80; i < table.size(); ++i) table[i] = kXmlNameByte;
  return table;
}

inline constexpr std::array<std::uint8_t, 256> kTable = makeTable();

}  // namespace xml_bytes

/// True if the byte belongs to the classes, or to one of them.
constexpr bool isXmlByte(char c, std::uint8_t classes) {
  return (xml_bytes::kTable[static_cast<unsigned char>(c)] & classes) != 0;
}

/// `text` without white space at its end.
constexpr std::string_view withoutBlanksAtEnd(std::string_view text) {
  while (!text.empty() && isXmlByte(text.back(), kXmlBlank)) text.remove_suffix(1);
  return text;
}

/// The name as a tree keeps it: bytes that belong in no name are removed. `scratch` holds the
/// result if it differs from `raw`.
std::string_view cleanXmlName(std::string_view raw, std::string& scratch);

/// The same for the name of an attribute, which gets an "A" in front if it begins with a digit,
/// "-" or ".".
std::string_view cleanXmlAttributeName(std::string_view raw, std::string& scratch);

/// The value with &lt; &gt; &quot; &apos; &amp; replaced. Other references stay as they are.
/// `scratch` holds the result if it differs from `raw`.
std::string_view decodeXmlEntities(std::string_view raw, std::string& scratch);
