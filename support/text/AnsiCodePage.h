#pragma once

#include <string>
#include <string_view>

/// The two single-byte code pages that device ids, port names and hosts travel in.
enum class CodePage { Windows1251 = 1251, Windows1252 = 1252 };

/// The code page of `const char*` texts in this process, taken from the environment variable
/// LANG at the first call: windows-1251 for the Cyrillic locales, whatever their suffix says.
CodePage ansiCodePage();

/// The text in the code page. A character without a place in it is dropped.
std::string utf8ToCodePage(std::string_view utf8, CodePage page);

/// The text in UTF-8. A byte that the code page leaves undefined is dropped.
std::string codePageToUtf8(std::string_view bytes, CodePage page);

/// Adds one code point in UTF-8. Surrogates and values above 10FFFF are dropped.
void appendUtf8(std::string& text, char32_t codePoint);

/// Takes the code point at `pos` and moves `pos` behind it. A byte that begins no whole and
/// legal sequence is stepped over with the result 0.
char32_t nextCodePoint(std::string_view utf8, std::size_t& pos);
