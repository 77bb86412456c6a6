// Base64 in its forms (RFC 4648, RFC 2045).

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

#include "AsciiText.h"
#include "Base64Alphabet.h"
#include "CodingStage.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "StringBuffer.h"

namespace {

constexpr std::uint32_t kShortestLine = 10;
/// Between "+" and "z" lies what may stand in a base64 text.
constexpr unsigned char kFirstCharacter = '+';
constexpr unsigned char kLastCharacter = 'z';

/// The two characters of each 12 bits.
using PairTable = std::array<std::array<char, 2>, 4096>;

constexpr PairTable pairsOf(char letter62, char letter63) {
  const auto letter = [&](std::size_t value) {
    return value == 62 ? letter62 : value == 63 ? letter63 : kBase64Alphabet[value];
  };
  PairTable pairs{};
  for (std::size_t i = 0; i < pairs.size(); ++i) pairs[i] = {letter(i >> 6), letter(i & 63)};
  return pairs;
}

constexpr PairTable kStandard = pairsOf('+', '/');
constexpr PairTable kUrlSafe = pairsOf('-', '_');

/// The bits of a character at each place of a group of four. Foreign characters have a bit that
/// no group has.
constexpr std::uint32_t kForeign = 0x80000000;
using GroupTable = std::array<std::array<std::uint32_t, 256>, 4>;

constexpr GroupTable kGroups = [] {
  GroupTable groups{};
  for (std::size_t place = 0; place < groups.size(); ++place) {
    for (std::size_t c = 0; c < 256; ++c) {
      const int value = base64Value(static_cast<unsigned char>(c));
      groups[place][c] =
          value < 0 ? kForeign : static_cast<std::uint32_t>(value) << (18 - 6 * place);
    }
  }
  return groups;
}();

/// Four characters of three bytes.
inline char* encodeGroup(const PairTable& pairs, const unsigned char* p, char* to) {
  const std::uint32_t bits = (std::uint32_t{p[0]} << 16) | (std::uint32_t{p[1]} << 8) | p[2];
  std::memcpy(to, pairs[bits >> 12].data(), 2);
  std::memcpy(to + 2, pairs[bits & 0xFFF].data(), 2);
  return to + 4;
}

/// One or two bytes, padded to four characters.
char* encodeRest(const PairTable& pairs, const unsigned char* p, std::size_t n, char* to) {
  const unsigned char padded[3] = {p[0], n > 1 ? p[1] : static_cast<unsigned char>(0), 0};
  encodeGroup(pairs, padded, to);
  if (n == 1) to[2] = '=';
  to[3] = '=';
  return to + 4;
}

bool reserveText(StringBuffer& out, std::size_t n, std::uint32_t line) {
  return !ck64_TooBigForUnsigned32(n) &&
         out.expectNumBytes(ContentCoding::computeBase64Size(static_cast<std::uint32_t>(n), line));
}

bool encode(const PairTable& pairs, const void* data, std::size_t n, StringBuffer& out) {
  if (data == nullptr || n == 0) return true;
  if (out.contains(data)) {
    return encodeApart(out, [&](StringBuffer& text) { return encode(pairs, data, n, text); });
  }
  if (!reserveText(out, n, 0)) return false;
  TextStage stage(out);
  constexpr std::size_t kGroupsAtOnce = 250;
  const auto* p = static_cast<const unsigned char*>(data);
  for (std::size_t left = n / 3; left != 0;) {
    const std::size_t groups = std::min(left, kGroupsAtOnce);
    char* to = stage.place(groups * 4);
    for (std::size_t i = 0; i < groups; ++i, p += 3) to = encodeGroup(pairs, p, to);
    stage.wrote(groups * 4);
    left -= groups;
  }
  if (n % 3 != 0) {
    encodeRest(pairs, p, n % 3, stage.place(4));
    stage.wrote(4);
  }
  return stage.finish();
}

}  // namespace

std::uint32_t ContentCoding::computeBase64Size(std::uint32_t n, std::uint32_t line) {
  std::uint64_t size = (std::uint64_t{n} * 4 + 8) / 3 + 3;
  if (line != 0) size += (size / line + 1) * 2;
  return static_cast<std::uint32_t>(
      std::min<std::uint64_t>(size, std::numeric_limits<std::uint32_t>::max()));
}

void ContentCoding::setLineLength(std::uint32_t n) { m_lineLength = std::max(n, kShortestLine); }

bool ContentCoding::encodeBase64_noCrLf(const void* p, std::size_t n, StringBuffer& out) {
  return encode(kStandard, p, n, out);
}

bool ContentCoding::encodeModBase64_noCrLf(const void* p, std::size_t n, StringBuffer& out) {
  return encode(kUrlSafe, p, n, out);
}

bool ContentCoding::encodeBase64(const void* data, std::size_t n, StringBuffer& out) const {
  if (data == nullptr || n == 0) return true;
  if (out.contains(data)) {
    return encodeApart(out, [&](StringBuffer& text) { return encodeBase64(data, n, text); });
  }
  if (!reserveText(out, n, m_lineLength)) return false;
  TextStage stage(out);
  const auto* p = static_cast<const unsigned char*>(data);
  std::uint32_t column = 0;
  for (std::size_t left = n / 3; left != 0; --left, p += 3) {
    encodeGroup(kStandard, p, stage.place(4));
    stage.wrote(4);
    column += 4;
    if (column >= m_lineLength) {
      stage.put("\r\n");
      column = 0;
    }
  }
  if (n % 3 != 0) {
    encodeRest(kStandard, p, n % 3, stage.place(4));
    stage.wrote(4);
  }
  stage.put("\r\n");
  return stage.finish();
}

CkBlock ContentCoding::decodeBase64_2(const char* text, std::size_t n, std::uint32_t& outLen,
                                      bool& ok) {
  outLen = 0;
  ok = true;
  if (text == nullptr || n == 0) return nullptr;
  CkBlock block = ck64_TooBigForUnsigned32(n) ? nullptr : ckNewUnsignedChar(n / 4 * 3 + n % 4 + 4);
  if (block == nullptr) {
    ok = false;
    return nullptr;
  }
  const auto* p = reinterpret_cast<const unsigned char*>(text);
  const unsigned char* const end = p + n;
  unsigned char* to = block.get();
  std::uint32_t bits = 0;
  int numBits = 0;
  while (p != end) {
    if (numBits == 0) {
      while (end - p >= 4) {
        const std::uint32_t group =
            kGroups[0][p[0]] | kGroups[1][p[1]] | kGroups[2][p[2]] | kGroups[3][p[3]];
        if ((group & kForeign) != 0) break;
        to[0] = static_cast<unsigned char>(group >> 16);
        to[1] = static_cast<unsigned char>(group >> 8);
        to[2] = static_cast<unsigned char>(group);
        to += 3;
        p += 4;
      }
      if (p == end) break;
    }
    const unsigned char c = *p++;
    if (c == '=' || c == '\0') break;
    const int value = base64Value(c);
    if (value < 0) continue;
    bits = (bits << 6) | static_cast<std::uint32_t>(value);
    numBits += 6;
    if (numBits >= 8) {
      numBits -= 8;
      *to++ = static_cast<unsigned char>(bits >> numBits);
    }
  }
  outLen = static_cast<std::uint32_t>(to - block.get());
  *to = 0;
  return block;
}

CkBlock ContentCoding::decodeBase64(const char* p, std::size_t n, std::uint32_t& outLen) {
  bool ok;
  return decodeBase64_2(p, n, outLen, ok);
}

bool ContentCoding::decodeBase64ToDb(const char* p, std::size_t n, DataBuffer& out) {
  std::uint32_t length;
  bool ok;
  CkBlock block = decodeBase64_2(p, n, length, ok);
  if (!ok) return false;
  out.takeData(std::move(block), length);
  return true;
}

bool ContentCoding::appendBase64(StringBuffer& out, const char* text) {
  DataBuffer bytes;
  bytes.setSecure(out.getSecureBuf());
  return text == nullptr || (decodeBase64ToDb(text, std::strlen(text), bytes) && out.append(bytes));
}

bool ContentCoding::validateBase64(const char* p, std::size_t n) {
  if (p == nullptr) return false;
  for (std::size_t i = 0; i < n && p[i] != '=' && p[i] != '\0'; ++i) {
    const auto c = static_cast<unsigned char>(p[i]);
    if ((c < kFirstCharacter || c > kLastCharacter) && !isAsciiSpace(p[i])) return false;
  }
  return true;
}

bool ContentCoding::isBase64(const char* p, std::size_t n) {
  return p != nullptr && std::all_of(p, p + n, [](char c) {
           return base64Value(static_cast<unsigned char>(c)) >= 0 || c == '=' || isAsciiSpace(c);
         });
}
