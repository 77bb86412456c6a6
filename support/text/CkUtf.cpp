#include "CkUtf.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "CodePages.h"
#include "CodingStage.h"
#include "ConversionOutput.h"
#include "DataBuffer.h"
#include "StringBuffer.h"
#include "UnitIo.h"

bool g_allow_4byte_utf8 = true;

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;
/// The largest value that 4 bytes can hold.
constexpr std::uint32_t kLargestOf4Bytes = 0x1FFFFF;

/// Bytes of a sequence by its first one; 1 for a byte that begins none.
constexpr std::size_t lengthByLead(unsigned char lead) {
  if (lead < 0xC0 || lead >= 0xF8) return 1;
  if (lead < 0xE0) return 2;
  return lead < 0xF0 ? 3 : 4;
}

constexpr bool isContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

std::uint32_t swapped(std::uint32_t value) { return __builtin_bswap32(value); }

/// The code point of a legal sequence.
std::uint32_t decodeLegal(const unsigned char* p, std::size_t length) {
  static constexpr std::uint32_t kLeadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  std::uint32_t value = p[0] & kLeadMask[length];
  for (std::size_t i = 1; i < length; ++i) value = (value << 6) | (p[i] & 0x3FU);
  return value;
}

}  // namespace

_ckUtf::Utf16Character _ckUtf::utf16FromUtf8(const unsigned char* p, std::size_t n) {
  const std::size_t length = lengthByLead(p[0]);
  if (length == 1) return {{p[0], 0}, 1, 1};
  for (std::size_t i = 1; i < length; ++i) {
    if (i == n || p[i] == 0) return {{0, 0}, 0, i};
  }
  const std::uint32_t value = decodeLegal(p, length);
  if (length < 4) return {{static_cast<std::uint16_t>(value), 0}, 1, length};
  return {{static_cast<std::uint16_t>(highSurrogateOf(value)),
           static_cast<std::uint16_t>(lowSurrogateOf(value))},
          2,
          length};
}

int _ckUtf::oneUtf32ToUtf8(std::uint32_t c, unsigned char out[6]) {
  const auto trail = [](std::uint32_t bits) {
    return static_cast<unsigned char>(0x80 | (bits & 0x3F));
  };
  if (c > kLargestOf4Bytes) c = kReplacement;
  if (c < 0x80) {
    out[0] = static_cast<unsigned char>(c);
    return 1;
  }
  if (c < 0x800) {
    out[0] = static_cast<unsigned char>(0xC0 | (c >> 6));
    out[1] = trail(c);
    return 2;
  }
  if (c < 0x10000) {
    storeUtf8Of3(out, c);
    return 3;
  }
  if (!g_allow_4byte_utf8) {
    storeUtf8Of3(storeUtf8Of3(out, highSurrogateOf(c)), lowSurrogateOf(c));
    return 6;
  }
  out[0] = static_cast<unsigned char>(0xF0 | (c >> 18));
  out[1] = trail(c >> 12);
  out[2] = trail(c >> 6);
  out[3] = trail(c);
  return 4;
}

bool _ckUtf::isLegalUtf8(const unsigned char* p, std::size_t n) {
  if (n == 0 || n > 4) return false;
  const unsigned char lead = p[0];
  if (n == 1) return lead < 0x80;
  if (lengthByLead(lead) != n || lead < 0xC2 || lead > 0xF4) return false;
  if (!std::all_of(p + 1, p + n, isContinuation)) return false;
  const unsigned char second = p[1];
  if (lead == 0xE0) return second >= 0xA0;  // else overlong
  if (lead == 0xED) return second <= 0x9F;  // else a surrogate
  if (lead == 0xF0) return second >= 0x90;  // else overlong
  if (lead == 0xF4) return second <= 0x8F;  // else above 10FFFF
  return true;
}

bool _ckUtf::hasUtf8Preamble(const unsigned char* p, std::size_t n) {
  const std::string_view bom = code_page::bomOf(code_page::kUtf8);
  return n >= bom.size() && std::memcmp(p, bom.data(), bom.size()) == 0;
}

bool _ckUtf::isValidUtf8(const unsigned char* p, std::size_t n, std::size_t limit) {
  std::size_t i = hasUtf8Preamble(p, n) ? 3 : 0;
  const std::size_t end = std::min(n, limit);
  while (i < end) {
    if (p[i] < 0x80) {
      ++i;
      continue;
    }
    const std::size_t length = lengthByLead(p[i]);
    if (length == 1 || length > n - i) return false;
    if (!std::all_of(p + i + 1, p + i + length, isContinuation)) return false;
    i += length;
  }
  return true;
}

std::size_t _ckUtf::NumUtf8Bytes(const unsigned char* p, std::size_t n) {
  if (n == 0) return 0;
  const std::size_t length = lengthByLead(p[0]);
  if (length > n) return n;
  return isLegalUtf8(p, length) ? length : 1;
}

bool _ckUtf::utf8toUtf32(bool bigEndian, const unsigned char* p, std::size_t n, DataBuffer& out) {
  const unsigned char* const end = p + n;
  ConversionOutput output(out, end, {4, 1});
  bool legal = true;
  while (p != end) {
    const ConversionOutput::Piece piece = output.begin(p);
    const unsigned char* const stop = piece.stop;
    unsigned char* to = piece.to;
    if (to == nullptr) return false;
    while (p < stop) {
      std::uint32_t c = *p;
      std::size_t length = 1;
      if (c >= 0x80) {
        length = lengthByLead(*p);
        if (length > static_cast<std::size_t>(end - p)) {  // cut off by the end
          output.keep(to);
          return false;
        }
        if (!isLegalUtf8(p, length)) {
          legal = false;
          ++p;
          continue;
        }
        c = decodeLegal(p, length);
      }
      to = storeUtf32(to, bigEndian ? swapped(c) : c);
      p += length;
    }
    output.keep(to);
  }
  return legal;
}

bool _ckUtf::Utf32ToUtf8(bool bigEndian, const unsigned char* p, std::size_t n, DataBuffer& out) {
  constexpr std::size_t kLargest = 6;
  const unsigned char* const end = p + n / 4 * 4;
  ConversionOutput output(out, end, {kLargest, 4});
  while (p != end) {
    const ConversionOutput::Piece piece = output.begin(p);
    const unsigned char* const stop = piece.stop;
    unsigned char* to = piece.to;
    if (to == nullptr) return false;
    for (; p != stop; p += 4) {
      std::uint32_t c;
      std::memcpy(&c, p, sizeof c);
      if (bigEndian) c = swapped(c);
      unsigned char bytes[kLargest];
      const int length = oneUtf32ToUtf8(c, bytes);
      std::memcpy(to, bytes, kLargest);
      to += length;
    }
    output.keep(to);
  }
  return n % 4 == 0;
}

bool _ckUtf::ensureModifiedUtf8(StringBuffer& text, bool& changed) {
  changed = false;
  const auto* const p = reinterpret_cast<const unsigned char*>(text.getString());
  const std::size_t n = text.getSize();
  const auto begins4 = [](unsigned char c) { return lengthByLead(c) == 4; };
  if (std::none_of(p, p + n, begins4)) return true;
  StringBuffer modified;
  modified.setSecureBuf(text.getSecureBuf());
  TextStage stage(modified);
  for (std::size_t i = 0; i < n;) {
    const bool four = begins4(p[i]) && n - i >= 4 && isLegalUtf8(p + i, 4);
    if (!four) {
      stage.put(p[i++]);
      continue;
    }
    const std::uint32_t c = decodeLegal(p + i, 4);
    unsigned char pair[6];
    storeUtf8Of3(storeUtf8Of3(pair, highSurrogateOf(c)), lowSurrogateOf(c));
    stage.put({reinterpret_cast<const char*>(pair), sizeof pair});
    changed = true;
    i += 4;
  }
  if (!stage.finish()) {
    changed = false;
    return false;
  }
  if (changed) text.takeSb(modified);
  return true;
}
