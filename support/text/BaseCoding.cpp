// Base32, Ascii85, base 43 pairs and uuencoding.

#include <algorithm>
#include <array>
#include <string_view>

#include "AsciiText.h"
#include "CodingStage.h"
#include "ContentCoding.h"

// Base32 (RFC 4648)

namespace {

constexpr std::string_view kBase32Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567";

}  // namespace

bool ContentCoding::encodeBase32_noCrLf(const void* data, std::size_t n, StringBuffer& out) {
  const auto* const p = static_cast<const unsigned char*>(data);
  if (p == nullptr || n == 0) return true;
  constexpr std::size_t kGroup = 8;
  TextStage stage(out);
  std::size_t written = 0;
  unsigned bits = 0;
  int numBits = 0;
  const auto put = [&](unsigned value) {
    stage.put(kBase32Alphabet[value & 31]);
    ++written;
  };
  for (std::size_t i = 0; i < n; ++i) {
    bits = (bits << 8) | p[i];
    numBits += 8;
    for (; numBits >= 5; numBits -= 5) put(bits >> (numBits - 5));
  }
  if (numBits > 0) put(bits << (5 - numBits));
  for (; written % kGroup != 0; ++written) stage.put('=');
  return stage.finish();
}

bool ContentCoding::decodeBase32(const char* p, std::size_t n, DataBuffer& out) {
  ByteStage stage(out);
  unsigned bits = 0;
  int numBits = 0;
  for (std::size_t i = 0; i < n && p[i] != '=' && p[i] != '\0'; ++i) {
    const std::size_t value = kBase32Alphabet.find(asciiUpper(p[i]));
    if (value == kBase32Alphabet.npos) continue;
    bits = (bits << 5) | static_cast<unsigned>(value);
    numBits += 5;
    if (numBits < 8) continue;
    numBits -= 8;
    stage.put(static_cast<unsigned char>(bits >> numBits));
  }
  return stage.finish();
}

// Ascii85: four bytes as five digits of base 85 from "!" on, "z" for four zero bytes

namespace {

constexpr char kFirstDigit85 = '!';
constexpr char kLastDigit85 = 'u';
constexpr char kZeroGroup = 'z';
constexpr std::string_view kBegin85 = "<~";

using Digits85 = std::array<char, 5>;

Digits85 digits85(std::uint32_t value) {
  Digits85 digits;
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, value /= 85) {
    *digit = static_cast<char>(kFirstDigit85 + static_cast<int>(value % 85));
  }
  return digits;
}

std::uint32_t bigEndian(const unsigned char* p, std::size_t n) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = (value << 8) | (i < n ? p[i] : 0U);
  return value;
}

}  // namespace

bool ContentCoding::encodeAscii85(const void* data, std::size_t n, StringBuffer& out) {
  const auto* p = static_cast<const unsigned char*>(data);
  if (p == nullptr) return true;
  TextStage stage(out);
  for (; n != 0;) {
    const std::size_t group = std::min<std::size_t>(n, 4);
    const std::uint32_t value = bigEndian(p, group);
    if (value == 0 && group == 4) {
      stage.put(kZeroGroup);
    } else {
      stage.put({digits85(value).data(), group + 1});
    }
    p += group;
    n -= group;
  }
  return stage.finish();
}

bool ContentCoding::decodeAscii85(const char* p, std::size_t n, DataBuffer& out) {
  std::string_view text(p, n);
  if (const std::size_t begin = text.find(kBegin85); begin != text.npos) {
    text.remove_prefix(begin + kBegin85.size());
  }
  ByteStage stage(out);
  std::uint32_t value = 0;
  unsigned count = 0;
  const auto emit = [&](unsigned bytes) {
    for (unsigned i = 0; i < bytes; ++i) {
      stage.put(static_cast<unsigned char>(value >> (24 - 8 * i)));
    }
    value = 0;
    count = 0;
  };
  for (const char c : text) {
    if (c == '~') break;
    if (c == kZeroGroup && count == 0) {
      emit(4);
    } else if (c >= kFirstDigit85 && c <= kLastDigit85) {
      value = value * 85 + static_cast<std::uint32_t>(c - kFirstDigit85);
      if (++count == 5) emit(4);
    }
  }
  if (count >= 2) {
    const unsigned bytes = count - 1;
    // A short group is filled up with the highest digit, so that what is cut off rounds up.
    for (; count < 5; ++count) value = value * 85 + 84;
    emit(bytes);
  }
  return stage.finish();
}

// EDA: pairs of bytes as three digits of base 43

namespace {

constexpr std::string_view kEdaAlphabet = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ(),-./=";
constexpr unsigned kEdaBase = 43;
static_assert(kEdaAlphabet.size() == kEdaBase);

}  // namespace

bool ContentCoding::encodeEda(const void* data, std::size_t n, StringBuffer& out) {
  const auto* const p = static_cast<const unsigned char*>(data);
  if (p == nullptr) return true;
  TextStage stage(out);
  std::size_t i = 0;
  for (; i + 1 < n; i += 2) {
    const unsigned value = p[i] * 256U + p[i + 1];
    stage.put(kEdaAlphabet[value / (kEdaBase * kEdaBase)]);
    stage.put(kEdaAlphabet[value / kEdaBase % kEdaBase]);
    stage.put(kEdaAlphabet[value % kEdaBase]);
  }
  if (i < n) {
    stage.put(kEdaAlphabet[p[i] / kEdaBase]);
    stage.put(kEdaAlphabet[p[i] % kEdaBase]);
  }
  return stage.finish();
}

bool ContentCoding::decodeEda(const char* p, std::size_t n, DataBuffer& out) {
  ByteStage stage(out);
  unsigned value = 0;
  int count = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t digit = kEdaAlphabet.find(p[i]);
    if (digit == kEdaAlphabet.npos) continue;
    value = value * kEdaBase + static_cast<unsigned>(digit);
    if (++count < 3) continue;
    stage.put(static_cast<unsigned char>(value >> 8));
    stage.put(static_cast<unsigned char>(value));
    value = 0;
    count = 0;
  }
  if (count == 2) stage.put(static_cast<unsigned char>(value));
  return stage.finish();
}

// Uuencoding (POSIX): lines of 45 bytes behind a length character

namespace {

constexpr std::size_t kUuLine = 45;
constexpr std::string_view kUuBegin = "begin ";
constexpr std::string_view kUuHead = "begin 644 file.dat\r\n";
constexpr std::string_view kUuTail = "`\r\nend\r\n";
constexpr std::string_view kUuEnd = "end";

/// "`" in place of a blank, which mail might strip.
char uuCharacter(unsigned value) {
  return value == 0 ? '`' : static_cast<char>(' ' + static_cast<int>(value & 63));
}

unsigned uuValue(char c) { return (static_cast<unsigned char>(c) - 0x20U) & 63; }

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == text.npos ? text.size() : end + 1);
  while (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

}  // namespace

bool ContentCoding::encodeUu(const void* data, std::size_t n, StringBuffer& out) {
  const auto* p = static_cast<const unsigned char*>(data);
  if (p == nullptr || n == 0) return true;
  TextStage stage(out);
  stage.put(kUuHead);
  while (n != 0) {
    const std::size_t line = std::min(n, kUuLine);
    stage.put(uuCharacter(static_cast<unsigned>(line)));
    for (std::size_t i = 0; i < line; i += 3) {
      const std::uint32_t bits = bigEndian(p + i, std::min<std::size_t>(3, line - i)) >> 8;
      for (const int shift : {18, 12, 6, 0}) stage.put(uuCharacter((bits >> shift) & 63));
    }
    stage.put("\r\n");
    p += line;
    n -= line;
  }
  stage.put(kUuTail);
  return stage.finish();
}

bool ContentCoding::decodeUu(const char* p, std::size_t n, DataBuffer& out) {
  std::string_view text(p, n);
  if (const std::size_t begin = text.find(kUuBegin); begin != text.npos) {
    text.remove_prefix(begin);
    takeLine(text);
  }
  ByteStage stage(out);
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (line == kUuEnd) break;
    if (line.empty()) continue;
    // The first character tells how many bytes there are: blanks at the end that mail stripped
    // were zeros.
    std::size_t left = uuValue(line[0]);
    for (std::size_t i = 1; left != 0; i += 4) {
      std::uint32_t bits = 0;
      for (std::size_t k = i; k < i + 4; ++k) {
        bits = (bits << 6) | (k < line.size() ? uuValue(line[k]) : 0);
      }
      for (const int shift : {16, 8, 0}) {
        if (left == 0) break;
        stage.put(static_cast<unsigned char>(bits >> shift));
        --left;
      }
    }
  }
  return stage.finish();
}
