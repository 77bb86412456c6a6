// UTF-7 (RFC 2152) and its variant for IMAP folder names (RFC 3501).

#include <array>
#include <cstring>
#include <string_view>

#include "Base64Alphabet.h"
#include "CkUtf.h"
#include "DataBuffer.h"
#include "UnitIo.h"

namespace {

struct Dialect {
  char shift;                  ///< begins a run of base64
  bool slashIsComma;           ///< "," in place of "/"
  bool alwaysClosed;           ///< "-" ends every run; else only before a character that needs it
  std::string_view notDirect;  ///< printable characters that need base64 nevertheless
};

constexpr Dialect kMail = {'+', false, false, "\\~"};
constexpr Dialect kImap = {'&', true, true, ""};

bool isDirect(const Dialect& dialect, std::uint16_t unit) {
  if (unit == '\t' || unit == '\r' || unit == '\n') return !dialect.slashIsComma;
  if (unit < 0x20 || unit > 0x7E) return false;
  return dialect.notDirect.find(static_cast<char>(unit)) == std::string_view::npos;
}

int valueOf(const Dialect& dialect, unsigned char c) {
  if (dialect.slashIsComma && (c == '/' || c == ',')) return c == ',' ? 63 : -1;
  return base64Value(c);
}

char letterOf(const Dialect& dialect, std::uint32_t value) {
  const char letter = kBase64Alphabet[value & 0x3F];
  return dialect.slashIsComma && letter == '/' ? ',' : letter;
}

bool appendUnit(DataBuffer& out, std::uint32_t unit) {
  unsigned char bytes[2];
  storeUnit(bytes, unit);
  return out.append(bytes, sizeof bytes);
}

bool decode(const Dialect& dialect, const unsigned char* p, std::size_t n, DataBuffer& out) {
  bool legal = true;
  for (std::size_t i = 0; i < n;) {
    if (p[i] != static_cast<unsigned char>(dialect.shift)) {
      if (p[i] >= 0x80) legal = false;
      if (p[i] < 0x80 && !appendUnit(out, p[i])) return false;
      ++i;
      continue;
    }
    ++i;
    if (i < n && p[i] == '-') {  // the shift character itself
      if (!appendUnit(out, static_cast<unsigned char>(dialect.shift))) return false;
      ++i;
      continue;
    }
    std::uint32_t bits = 0;
    int numBits = 0;
    for (; i < n; ++i) {
      const int value = valueOf(dialect, p[i]);
      if (value < 0) break;
      bits = (bits << 6) | static_cast<std::uint32_t>(value);
      numBits += 6;
      if (numBits >= 16) {
        numBits -= 16;
        if (!appendUnit(out, (bits >> numBits) & 0xFFFF)) return false;
      }
    }
    if (numBits >= 6) legal = false;  // a run that ends inside a unit
    if (i < n && p[i] == '-') ++i;
  }
  return legal;
}

bool encode(const Dialect& dialect, const unsigned char* p, std::size_t n, DataBuffer& out) {
  const std::size_t whole = n / 2 * 2;
  for (std::size_t i = 0; i < whole;) {
    const std::uint16_t unit = loadUnit(p + i);
    if (unit == static_cast<unsigned char>(dialect.shift)) {
      if (!out.appendChar2(dialect.shift, '-')) return false;
      i += 2;
      continue;
    }
    if (isDirect(dialect, unit)) {
      if (!out.appendChar(static_cast<char>(unit))) return false;
      i += 2;
      continue;
    }
    if (!out.appendChar(dialect.shift)) return false;
    std::uint32_t bits = 0;
    int numBits = 0;
    for (; i < whole && !isDirect(dialect, loadUnit(p + i)); i += 2) {
      bits = (bits << 16) | loadUnit(p + i);
      numBits += 16;
      for (; numBits >= 6; numBits -= 6) {
        if (!out.appendChar(letterOf(dialect, bits >> (numBits - 6)))) return false;
      }
    }
    if (numBits > 0 && !out.appendChar(letterOf(dialect, bits << (6 - numBits)))) return false;
    const bool ambiguous =
        i < whole && (p[i] == '-' || valueOf(dialect, p[i]) >= 0) && p[i + 1] == 0;
    if ((dialect.alwaysClosed || i == whole || ambiguous) && !out.appendChar('-')) return false;
  }
  return whole == n;
}

}  // namespace

bool _ckUtf::Utf7ToUtf16_xe(const unsigned char* p, std::size_t n, DataBuffer& out) {
  return decode(kMail, p, n, out);
}

bool _ckUtf::Utf16XEToUtf7(const unsigned char* p, std::size_t n, DataBuffer& out) {
  return encode(kMail, p, n, out);
}

bool _ckUtf::ImapUtf7ToUtf16_xe(const unsigned char* p, std::size_t n, DataBuffer& out) {
  return decode(kImap, p, n, out);
}

bool _ckUtf::ImapUtf16XEToUtf7(const unsigned char* p, std::size_t n, DataBuffer& out) {
  return encode(kImap, p, n, out);
}
