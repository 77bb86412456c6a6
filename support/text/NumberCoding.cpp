// Bytes as numbers: hexadecimal, one big decimal number, a list of decimal bytes, Base58.

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "AsciiText.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "StringBuffer.h"
#include "TextStage.h"

namespace {

constexpr std::string_view kBitcoinAlphabet =
    "123456789ABCDEFGHJKLMNPQRSTUVWXYZabcdefghijkmnopqrstuvwxyz";
constexpr std::string_view kDigits = "0123456789";

using HexTable = std::array<std::array<char, 2>, 256>;

constexpr HexTable hexTable(std::string_view digits) {
  HexTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = {digits[i >> 4], digits[i & 15]};
  return table;
}

constexpr HexTable kUpperHex = hexTable("0123456789ABCDEF");
constexpr HexTable kLowerHex = hexTable("0123456789abcdef");

/// The value of a digit; something for any other character.
constexpr std::array<unsigned char, 256> kHexValues = [] {
  std::array<unsigned char, 256> values{};
  for (unsigned c = 0; c < values.size(); ++c) {
    const unsigned letter = c & 0x1F;  // A and a are 1
    values[c] = static_cast<unsigned char>((c >= '0' && c <= '9' ? c - '0' : letter + 9) & 15);
  }
  return values;
}();

unsigned char hexValue(char c) { return kHexValues[static_cast<unsigned char>(c)]; }

bool appendZeros(DataBuffer& out, std::size_t n) {
  return ck64_TooBigForUnsigned32(n) ? false : out.appendCharN('\0', static_cast<std::uint32_t>(n));
}

/// A number as bytes, most significant first, turned into digits of the base, and back. The
/// digits are kept least significant first.
bool bytesToDigits(const unsigned char* p, std::size_t n, unsigned base, DataBuffer& digits) {
  for (std::size_t i = 0; i < n; ++i) {
    unsigned carry = p[i];
    unsigned char* const known = digits.getData2();
    for (std::uint32_t k = 0; k < digits.getSize(); ++k) {
      carry += known[k] * 256U;
      known[k] = static_cast<unsigned char>(carry % base);
      carry /= base;
    }
    for (; carry != 0; carry /= base) {
      if (!digits.push_back(static_cast<unsigned char>(carry % base))) return false;
    }
  }
  return true;
}

/// Characters outside the alphabet are skipped. Appends the bytes, without zeros in front.
bool digitsToBytes(const char* p, std::size_t n, std::string_view alphabet, DataBuffer& out) {
  const unsigned base = static_cast<unsigned>(alphabet.size());
  DataBuffer bytes;  // least significant first
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t digit = p[i] == '\0' ? alphabet.npos : alphabet.find(p[i]);
    if (digit == alphabet.npos) continue;
    unsigned carry = static_cast<unsigned>(digit);
    unsigned char* const known = bytes.getData2();
    for (std::uint32_t k = 0; k < bytes.getSize(); ++k) {
      carry += known[k] * base;
      known[k] = static_cast<unsigned char>(carry & 0xFF);
      carry >>= 8;
    }
    if (carry != 0 && !bytes.push_back(static_cast<unsigned char>(carry))) return false;
  }
  std::reverse(bytes.getData2(), bytes.getData2() + bytes.getSize());
  return out.append(bytes);
}

bool writeDigits(const DataBuffer& digits, std::string_view alphabet, TextStage& stage) {
  for (std::uint32_t i = digits.getSize(); i != 0; --i) stage.put(alphabet[digits.byteAt(i - 1)]);
  return stage.finish();
}

}  // namespace

// Hexadecimal ------------------------------------------------------------------------------------

bool ContentCoding::encodeHex(const void* data, std::size_t n, HexStyle style, StringBuffer& out) {
  if (data == nullptr || n == 0) return true;
  if (ck64_TooBigForUnsigned32(n * 3) || !out.expectNumBytes(static_cast<std::uint32_t>(
                                             n * (style == HexStyle::UpperColons ? 3 : 2)))) {
    return false;
  }
  const HexTable& table = style == HexStyle::Lower ? kLowerHex : kUpperHex;
  const auto* const p = static_cast<const unsigned char*>(data);
  TextStage stage(out);
  if (style == HexStyle::UpperColons) {
    for (std::size_t i = 0; i < n; ++i) {
      if (i != 0) stage.put(':');
      stage.put({table[p[i]].data(), 2});
    }
    return stage.finish();
  }
  constexpr std::size_t kBytesAtOnce = 500;
  for (std::size_t i = 0; i < n;) {
    const std::size_t piece = std::min(n - i, kBytesAtOnce);
    char* to = stage.place(piece * 2);
    for (const std::size_t stop = i + piece; i < stop; ++i, to += 2) {
      to[0] = table[p[i]][0];
      to[1] = table[p[i]][1];
    }
    stage.wrote(piece * 2);
  }
  return stage.finish();
}

bool ContentCoding::decodeHex(const char* p, std::size_t n, DataBuffer& out) {
  if (p == nullptr || n == 0) return true;
  const std::size_t size = (n + 1) / 2;
  if (ck64_TooBigForUnsigned32(size)) return false;
  unsigned char* to = out.getAppendPtr(static_cast<std::uint32_t>(size));
  if (to == nullptr) return false;
  const char* const end = p + n;
  if (n % 2 != 0) *to++ = hexValue(*p++);
  for (; p != end; p += 2) *to++ = static_cast<unsigned char>(hexValue(p[0]) << 4 | hexValue(p[1]));
  out.addToSize(static_cast<std::uint32_t>(size));
  return true;
}

// Decimal ----------------------------------------------------------------------------------------

bool ContentCoding::encodeDecimal(const void* p, std::size_t n, StringBuffer& out) {
  if (p == nullptr || n == 0) return true;
  DataBuffer digits;
  if (!bytesToDigits(static_cast<const unsigned char*>(p), n, 10, digits)) return false;
  if (digits.empty()) return out.appendChar('0');
  TextStage stage(out);
  return writeDigits(digits, kDigits, stage);
}

bool ContentCoding::decodeDecimal(const char* p, std::size_t n, DataBuffer& out) {
  const std::uint32_t before = out.getSize();
  if (!digitsToBytes(p, n, kDigits, out)) return false;
  const bool zero = out.getSize() == before && std::any_of(p, p + n, isAsciiDigit);
  return !zero || out.push_back(0);
}

bool ContentCoding::encodeDecList(const void* data, std::size_t n, StringBuffer& out) {
  const auto* const p = static_cast<const unsigned char*>(data);
  TextStage stage(out);
  for (std::size_t i = 0; p != nullptr && i < n; ++i) {
    if (i != 0) stage.put(',');
    constexpr std::size_t kLongest = 3;
    char* const to = stage.place(kLongest);
    stage.wrote(static_cast<std::size_t>(std::to_chars(to, to + kLongest, p[i]).ptr - to));
  }
  return stage.finish();
}

bool ContentCoding::decodeDecList(const char* p, std::size_t n, DataBuffer& out) {
  for (std::size_t i = 0; i < n;) {
    if (!isAsciiDigit(p[i])) {
      ++i;
      continue;
    }
    unsigned value = 0;
    for (; i < n && isAsciiDigit(p[i]); ++i) value = value * 10 + static_cast<unsigned>(p[i] - '0');
    if (!out.push_back(static_cast<unsigned char>(value))) return false;
  }
  return true;
}

// Base58 -----------------------------------------------------------------------------------------

bool ContentCoding::encodeBase58(const void* data, std::size_t n, StringBuffer& out) {
  const auto* const p = static_cast<const unsigned char*>(data);
  if (p == nullptr || n == 0) return true;
  const unsigned char* const first = std::find_if(p, p + n, [](unsigned char c) { return c != 0; });
  DataBuffer digits;
  if (!bytesToDigits(first, static_cast<std::size_t>(p + n - first), 58, digits)) return false;
  TextStage stage(out);
  // Each zero byte in front is kept as the digit zero.
  for (const unsigned char* zero = p; zero != first; ++zero) stage.put(kBitcoinAlphabet[0]);
  return writeDigits(digits, kBitcoinAlphabet, stage);
}

bool ContentCoding::decodeBase58(const char* p, std::size_t n, DataBuffer& out) {
  std::size_t zeros = 0;
  while (zeros < n && p[zeros] == kBitcoinAlphabet[0]) ++zeros;
  return appendZeros(out, zeros) && digitsToBytes(p + zeros, n - zeros, kBitcoinAlphabet, out);
}
