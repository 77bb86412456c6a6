// Bytes as numbers: hexadecimal, one big decimal number, a list of decimal bytes, Base58.

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <string_view>

#include "AsciiText.h"
#include "CodingStage.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "StringBuffer.h"

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

/// A big number as limbs below `base`, least significant first: powers of the digits of a text, or
/// words of its bytes. Digits and bytes enter a limb at a time.
template <std::uint64_t base>
class Limbs {
 public:
  static_assert(base <= std::uint64_t{1} << 32);

  /// A secure number is wiped at its end.
  explicit Limbs(bool secure) { limbs_.setSecure(secure); }

  /// Room for a number of so many bits. False if there is no memory.
  bool reserve(std::size_t bits) {
    const std::uint64_t size = (bits / (std::bit_width(base) - 1) + 1) * sizeof(std::uint32_t);
    return !ck64_TooBigForUnsigned32(size) && limbs_.ensureBuffer(static_cast<std::uint32_t>(size));
  }

  /// The number times `factor` and `addend` more, both up to 2^32.
  void multiplyAdd(std::uint64_t factor, std::uint64_t carry) {
    unsigned char* p = limbs_.getData2();
    for (const unsigned char* const end = p + limbs_.getSize(); p != end; p += kLimb) {
      carry += load(p) * factor;
      store(p, carry % base);
      carry /= base;
    }
    for (; carry != 0; carry /= base, p += kLimb) {
      store(p, carry % base);
      limbs_.addToSize(kLimb);
    }
  }

  std::size_t size() const { return limbs_.getSize() / kLimb; }
  std::uint32_t operator[](std::size_t i) const { return load(limbs_.getData2() + i * kLimb); }

 private:
  static constexpr std::uint32_t kLimb = sizeof(std::uint32_t);

  static std::uint32_t load(const unsigned char* p) {
    std::uint32_t limb;
    std::memcpy(&limb, p, kLimb);
    return limb;
  }

  static void store(unsigned char* p, std::uint64_t value) {
    const std::uint32_t limb = static_cast<std::uint32_t>(value);
    std::memcpy(p, &limb, kLimb);
  }

  DataBuffer limbs_;
};

constexpr std::uint64_t powerOf(std::uint64_t base, std::size_t exponent) {
  return exponent == 0 ? 1 : base * powerOf(base, exponent - 1);
}

/// Digits that one limb of 32 bits holds.
constexpr std::size_t digitsPerLimb(std::uint64_t base) {
  std::size_t n = 0;
  while (powerOf(base, n + 1) <= std::uint64_t{1} << 32) ++n;
  return n;
}

constexpr std::uint64_t kWordBase = std::uint64_t{1} << 32;

/// Writes the big-endian number in digits of the alphabet, without zeros in front.
template <std::size_t base>
bool writeNumber(const unsigned char* p, std::size_t n, std::string_view alphabet, bool secure,
                 TextStage& stage) {
  constexpr std::size_t kDigitsAtOnce = digitsPerLimb(base);
  Limbs<powerOf(base, kDigitsAtOnce)> number(secure);
  if (!number.reserve(n * 8)) return false;
  for (std::size_t i = 0; i < n;) {
    std::uint64_t factor = 1;
    std::uint64_t word = 0;
    for (; i < n && factor != kWordBase; ++i, factor *= 256) word = word * 256 + p[i];
    number.multiplyAdd(factor, word);
  }
  bool leads = true;
  for (std::size_t i = number.size(); i != 0; --i) {
    std::array<char, kDigitsAtOnce> digits;
    std::uint32_t limb = number[i - 1];
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, limb /= base) {
      *digit = alphabet[limb % base];
    }
    std::string_view text(digits.data(), digits.size());
    if (leads) text.remove_prefix(text.find_first_not_of(alphabet[0]));
    leads = false;
    stage.put(text);
  }
  return true;
}

/// Reads digits of the alphabet and skips all else. Appends the bytes of the number, most
/// significant first: either with a zero byte for each zero in front, or without, so that zero
/// alone is one byte.
template <std::size_t base>
bool readNumber(std::string_view text, std::string_view alphabet, bool keepsZeros,
                DataBuffer& out) {
  constexpr std::uint64_t kFull = powerOf(base, digitsPerLimb(base));
  Limbs<kWordBase> number(out.getSecure());
  if (!number.reserve(text.size() * std::bit_width(base))) return false;
  std::size_t zeros = 0;
  std::uint64_t factor = 1;
  std::uint64_t word = 0;
  bool leads = true;
  for (const char c : text) {
    const std::size_t digit = alphabet.find(c);
    if (digit == alphabet.npos) continue;
    leads = leads && digit == 0;
    if (leads) {
      ++zeros;
      continue;
    }
    word = word * base + digit;
    factor *= base;
    if (factor != kFull) continue;
    number.multiplyAdd(factor, word);
    factor = 1;
    word = 0;
  }
  number.multiplyAdd(factor, word);

  if (!keepsZeros) zeros = number.size() == 0 ? std::min<std::size_t>(zeros, 1) : 0;
  ByteStage stage(out);
  for (; zeros != 0; --zeros) stage.put('\0');
  leads = true;
  for (std::size_t i = number.size(); i != 0; --i) {
    for (const int shift : {24, 16, 8, 0}) {
      const auto byte = static_cast<unsigned char>(number[i - 1] >> shift);
      leads = leads && byte == 0;
      if (!leads) stage.put(byte);
    }
  }
  return stage.finish();
}

}  // namespace

// Hexadecimal ------------------------------------------------------------------------------------

bool ContentCoding::encodeHex(const void* data, std::size_t n, HexStyle style, StringBuffer& out) {
  if (data == nullptr || n == 0) return true;
  if (out.contains(data)) {
    return encodeApart(out, [&](StringBuffer& text) { return encodeHex(data, n, style, text); });
  }
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
  const std::uint32_t before = out.getSize();
  TextStage stage(out);
  if (!writeNumber<kDigits.size()>(static_cast<const unsigned char*>(p), n, kDigits,
                                   out.getSecureBuf(), stage) ||
      !stage.finish()) {
    return false;
  }
  return out.getSize() != before || out.appendChar(kDigits[0]);
}

bool ContentCoding::decodeDecimal(const char* p, std::size_t n, DataBuffer& out) {
  return readNumber<kDigits.size()>({p, n}, kDigits, false, out);
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
  ByteStage stage(out);
  for (std::size_t i = 0; i < n;) {
    if (!isAsciiDigit(p[i])) {
      ++i;
      continue;
    }
    unsigned value = 0;
    for (; i < n && isAsciiDigit(p[i]); ++i) value = value * 10 + static_cast<unsigned>(p[i] - '0');
    stage.put(static_cast<unsigned char>(value));
  }
  return stage.finish();
}

// Base58 -----------------------------------------------------------------------------------------

bool ContentCoding::encodeBase58(const void* data, std::size_t n, StringBuffer& out) {
  const auto* const p = static_cast<const unsigned char*>(data);
  if (p == nullptr || n == 0) return true;
  const unsigned char* const first = std::find_if(p, p + n, [](unsigned char c) { return c != 0; });
  TextStage stage(out);
  // Each zero byte in front is kept as the digit zero.
  for (const unsigned char* zero = p; zero != first; ++zero) stage.put(kBitcoinAlphabet[0]);
  return writeNumber<kBitcoinAlphabet.size()>(first, static_cast<std::size_t>(p + n - first),
                                              kBitcoinAlphabet, out.getSecureBuf(), stage) &&
         stage.finish();
}

bool ContentCoding::decodeBase58(const char* p, std::size_t n, DataBuffer& out) {
  return readNumber<kBitcoinAlphabet.size()>({p, n}, kBitcoinAlphabet, true, out);
}
