#include "CkString.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string_view>

#include "AnsiCodePage.h"

namespace {

std::string_view orEmpty(const char* text) { return text == nullptr ? "" : text; }

std::string ansiToUtf8(const char* ansi) { return codePageToUtf8(orEmpty(ansi), ansiCodePage()); }

void appendUtf32(std::string& utf8, const wchar_t* text) {
  for (; text != nullptr && *text != 0; ++text) appendUtf8(utf8, static_cast<char32_t>(*text));
}

constexpr bool isHighSurrogate(unsigned unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool isLowSurrogate(unsigned unit) { return (unit & 0xFC00) == 0xDC00; }

void appendUtf16(std::string& utf8, const unsigned short* text) {
  for (; text != nullptr && *text != 0; ++text) {
    const char32_t unit = *text;
    if (isHighSurrogate(unit) && isLowSurrogate(text[1])) {
      ++text;
      appendUtf8(utf8, 0x10000 + ((unit & 0x3FF) << 10) + (*text & 0x3FFU));
    } else {
      appendUtf8(utf8, unit);
    }
  }
}

CodePage codePageNamed(const char* charset) {
  return orEmpty(charset) == "windows-1251" ? CodePage::Windows1251 : ansiCodePage();
}

}  // namespace

CkString::CkString(const char* ansi) { setString(ansi); }

void CkString::clear() { utf8_.clear(); }

CkString& CkString::operator=(const char* ansi) {
  setString(ansi);
  return *this;
}

void CkString::setString(const char* ansi) { utf8_ = ansiToUtf8(ansi); }

void CkString::setStringU(const wchar_t* utf32) {
  std::string utf8;
  appendUtf32(utf8, utf32);
  utf8_ = std::move(utf8);
}

void CkString::setStringUtf8(const char* utf8) { utf8_ = std::string(orEmpty(utf8)); }

void CkString::setStringUtf16(const unsigned short* utf16) {
  utf8_.clear();
  appendUtf16(utf8_, utf16);
}

void CkString::setStr(CkString& other) { *this = CkString(other); }

void CkString::append(const char* ansi) { appendAnsi(ansi); }

void CkString::appendAnsi(const char* ansi) { utf8_ += ansiToUtf8(ansi); }

void CkString::appendU(const wchar_t* utf32) { appendUtf32(utf8_, utf32); }

void CkString::appendStr(const CkString& other) { utf8_ += std::string(other.utf8_); }

void CkString::appendRandom(int numBytes, const char* encoding) {
  if (orEmpty(encoding) != "hex") return;
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::random_device source;
  for (int i = 0; i < numBytes; ++i) {
    const unsigned byte = source() & 0xFF;
    utf8_ += kDigits[byte >> 4];
    utf8_ += kDigits[byte & 0x0F];
  }
}

const char* CkString::getAnsi() {
  ansi_ = utf8ToCodePage(utf8_, ansiCodePage());
  return ansi_.c_str();
}

const char* CkString::getUtf8() { return utf8_.c_str(); }

const wchar_t* CkString::getUnicode() {
  wide_.clear();
  for (std::size_t pos = 0; pos < utf8_.size();) {
    const char32_t c = nextCodePoint(utf8_, pos);
    if (c != 0) wide_.push_back(static_cast<wchar_t>(c));
  }
  return wide_.c_str();
}

const char* CkString::getEnc(const char* charset) {
  encoded_ = utf8ToCodePage(utf8_, codePageNamed(charset));
  return encoded_.c_str();
}

int CkString::getNumChars() {
  getUnicode();
  return static_cast<int>(wide_.size());
}

int CkString::compareStr(const CkString& other) { return utf8_.compare(other.utf8_); }

int CkString::replaceAll(CkString& from, CkString& to) {
  if (from.utf8_.empty()) return 0;
  const std::string old = from.utf8_;
  const std::string replacement = to.utf8_;
  int count = 0;
  for (std::size_t pos = 0; (pos = utf8_.find(old, pos)) != std::string::npos; ++count) {
    utf8_.replace(pos, old.size(), replacement);
    pos += replacement.size();
  }
  return count;
}

bool CkString::endsWith(const char* ansi) { return utf8_.ends_with(ansiToUtf8(ansi)); }

void CkString::trim() {
  static constexpr const char* kBlanks = " \t";
  const std::size_t first = utf8_.find_first_not_of(kBlanks);
  if (first == std::string::npos) {
    utf8_.clear();
    return;
  }
  utf8_ = utf8_.substr(first, utf8_.find_last_not_of(kBlanks) - first + 1);
}

void CkString::base64Decode(const char* charset) {
  static constexpr std::string_view kAlphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  std::uint32_t gathered = 0;
  int bits = 0;
  for (const char c : utf8_) {
    const std::size_t value = kAlphabet.find(c);
    if (value == std::string_view::npos) continue;
    gathered = (gathered << 6) | static_cast<std::uint32_t>(value);
    bits += 6;
    if (bits >= 8) {
      bits -= 8;
      bytes.push_back(static_cast<char>((gathered >> bits) & 0xFF));
    }
  }
  utf8_ = orEmpty(charset) == "utf-8" ? bytes : codePageToUtf8(bytes, codePageNamed(charset));
}
