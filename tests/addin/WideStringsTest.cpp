#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Utf16.h"
#include "WideStrings.h"

namespace {

using Units = std::vector<unsigned short>;

/// The text as 16-bit units, NUL included.
Units toShort(const std::wstring& text) {
  unsigned short* units = nullptr;
  convToShortWchar(&units, text.c_str(), 0);
  const std::unique_ptr<unsigned short[]> owner(units);
  return Units(units, units + text.size() + 1);
}

std::wstring fromShort(const char* utf8) {
  const auto text = host::toUtf16(utf8);
  wchar_t* wide = nullptr;
  convFromShortWchar(&wide, text.c_str(), 0);
  const std::unique_ptr<wchar_t[]> owner(wide);
  return std::wstring(wide, wide + text.size());
}

TEST(WideStrings, GoesToUtf16) {
  EXPECT_EQ(getLenShortWcharStr(host::toUtf16("").c_str()), 0U);
  EXPECT_EQ(getLenShortWcharStr(nullptr), 0U);
  EXPECT_EQ(toShort(L""), (Units{0}));
  EXPECT_EQ(toShort(L"A"), (Units{0x41, 0}));
  EXPECT_EQ(toShort(L"Вес"), (Units{0x0412, 0x0435, 0x0441, 0}));  // no byte order mark
  // What has no single unit is cut to its low 16 bits, and so is every other character then.
  EXPECT_EQ(toShort(std::wstring{L'A', static_cast<wchar_t>(0x1F600), L'B'}),
            (Units{0x41, 0xF600, 0x42, 0}));
  EXPECT_EQ(toShort(std::wstring{static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)}),
            (Units{0xD83D, 0xDE00, 0}));
}

TEST(WideStrings, ComesFromUtf16) {
  EXPECT_EQ(fromShort(""), L"");
  EXPECT_EQ(fromShort("A"), L"A");
  EXPECT_EQ(fromShort("Вес: 1"), L"Вес: 1");
  EXPECT_EQ(fromShort("ПолучитьВесЦенуСтоимость"), L"ПолучитьВесЦенуСтоимость");
  // A pair of surrogates stays two.
  EXPECT_EQ(fromShort("A\U0001F600"),
            (std::wstring{L'A', static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)}));
}

TEST(WideStrings, FillsABufferOfTheCaller) {
  Units buffer = {0xA5A5, 0xA5A5, 0xA5A5, 0xA5A5, 0xA5A5};
  unsigned short* units = buffer.data();
  // iconv reports 0 for a text that it took whole; the loop reports its units.
  EXPECT_EQ(convToShortWchar(&units, L"\U0001F600", 2), 2U);
  EXPECT_EQ(convToShortWchar(&units, L"Вес", 4), 0U);
  EXPECT_EQ(units, buffer.data());
  EXPECT_EQ(buffer, (Units{0x0412, 0x0435, 0x0441, 0, 0xA5A5}));
  std::wstring wideBuffer(5, L'#');
  wchar_t* wide = wideBuffer.data();
  EXPECT_EQ(convFromShortWchar(&wide, host::toUtf16("Вес").c_str(), 4), 4U);
  EXPECT_EQ(wideBuffer, (std::wstring{L'В', L'е', L'с', 0, L'#'}));
}

TEST(WcharWrapper, HoldsBothForms) {
  const WcharWrapper fromWide(L"Вес");
  EXPECT_EQ(host::toUtf8(fromWide), "Вес");
  EXPECT_STREQ(fromWide.wide(), L"Вес");
  const auto units = host::toUtf16("Вес");
  const WcharWrapper from16(units.data());
  EXPECT_EQ(host::toUtf8(from16), "Вес");
  EXPECT_STREQ(from16.wide(), L"Вес");
  const WcharWrapper none(static_cast<const wchar_t*>(nullptr));
  EXPECT_EQ(static_cast<const unsigned short*>(none), nullptr);
  EXPECT_EQ(none.wide(), nullptr);
  const WcharWrapper none16(static_cast<const unsigned short*>(nullptr));
  EXPECT_EQ(static_cast<const unsigned short*>(none16), nullptr);
}

}  // namespace
