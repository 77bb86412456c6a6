#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "DataBuffer.h"
#include "DataFile.h"
#include "LogBase.h"

namespace {

using namespace std::literals;

std::string toUtf8(std::string_view bytes, bool expected = true) {
  DataBuffer buffer;
  buffer.append(bytes.data(), bytes.size());
  LogNull log;
  EXPECT_EQ(buffer.convertXmlToUtf8(log), expected);
  return {reinterpret_cast<const char*>(buffer.getData2()), buffer.getSize()};
}

/// A document as ASCII, with each byte in a group of `width`, at offset `place`.
std::string widened(std::string_view ascii, std::size_t width, std::size_t place) {
  std::string wide(ascii.size() * width, '\0');
  for (std::size_t i = 0; i < ascii.size(); ++i) wide[i * width + place] = ascii[i];
  return wide;
}

TEST(XmlEncoding, IsToldByMarkOrNulBytes) {
  const std::string text = "<a x=\"1\">text</a>";
  EXPECT_EQ(toUtf8("\xFF\xFE" + widened(text, 2, 0)), text);
  EXPECT_EQ(toUtf8("\xFE\xFF" + widened(text, 2, 1)), text);
  EXPECT_EQ(toUtf8("\xEF\xBB\xBF" + text), text);
  EXPECT_EQ(toUtf8("\xFF\xFE\0\0"s + widened(text, 4, 0)), text);
  EXPECT_EQ(toUtf8(widened(text, 2, 0)), text);
  EXPECT_EQ(toUtf8(widened(text, 4, 0)), text);
  EXPECT_EQ(toUtf8("\xFF\xFE\x4F\x04\x0A\x04"), "\xD1\x8F\xD0\x8A");
  EXPECT_EQ(toUtf8("\xFE\xFF\x04\x4F"), "\xD1\x8F");
  // Whatever converts is kept: half a unit at the end of a file that was cut is not.
  EXPECT_EQ(toUtf8("\xFF\xFE<\0a\0>"s), "<a");
  EXPECT_EQ(toUtf8("\xFF\xFE"), "");
  EXPECT_EQ(toUtf8("\xEF\xBB\xBF"), "");
}

TEST(XmlEncoding, IsTakenFromTheDeclaration) {
  for (const fixture::DataRow& row : fixture::dataRows("xml_declarations.txt")) {
    EXPECT_EQ(toUtf8(row.left + "\xFF"), row.left + (row.right == "yes" ? "\xD1\x8F" : "\xFF"))
        << row.left;
  }
  EXPECT_EQ(toUtf8("<?xml encoding='koi8-r'?>\xD1"), "<?xml encoding='koi8-r'?>\xD1\x8F");
  // 98 is no character of windows-1251.
  EXPECT_EQ(toUtf8("<?xml encoding='cp1251'?>\x98<a/>"), "<?xml encoding='cp1251'?><a/>");
}

// An odd number of bytes is no wide text, whatever NUL bytes stand among them.
TEST(XmlEncoding, FallsBackToTheDeclarationForStrayNulBytes) {
  std::string text = "<?xml encoding='cp1251'?><a x='\xFF'/>\n\0";
  text.push_back('\0');
  if (text.size() % 2 == 0) text.insert(0, 1, ' ');
  const std::string utf8 = toUtf8(text);
  EXPECT_NE(utf8.find("<a x='\xD1\x8F'/>"), std::string::npos);
}

TEST(XmlEncoding, NeedsBytes) { EXPECT_EQ(toUtf8("", false), ""); }

}  // namespace
