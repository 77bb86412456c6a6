// UTF-7 (RFC 2152) and its variant for IMAP folder names (RFC 3501).

#include <array>
#include <cstring>
#include <string_view>

#include "Base64Alphabet.h"
#include "CkUtf.h"
#include "CodingStage.h"
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

void putUnit(ByteStage& stage, std::uint32_t unit) {
  unsigned char bytes[2];
  storeUnit(bytes, unit);
  stage.put(bytes[0]);
  stage.put(bytes[1]);
}

bool decode(const Dialect& dialect, const unsigned char* p, std::size_t n, DataBuffer& out) {
  ByteStage stage(out);
  bool legal = true;
  for (std::size_t i = 0; i < n;) {
    if (p[i] != static_cast<unsigned char>(dialect.shift)) {
      if (p[i] >= 0x80) legal = false;
      if (p[i] < 0x80) putUnit(stage, p[i]);
      ++i;
      continue;
    }
    ++i;
    if (i < n && p[i] == '-') {  // the shift character itself
      putUnit(stage, static_cast<unsigned char>(dialect.shift));
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
        putUnit(stage, (bits >> numBits) & 0xFFFF);
      }
    }
    if (numBits >= 6) legal = false;  // a run that ends inside a unit
    if (i < n && p[i] == '-') ++i;
  }
  return stage.finish() && legal;
}

bool encode(const Dialect& dialect, const unsigned char* p, std::size_t n, DataBuffer& out) {
  ByteStage stage(out);
  const std::size_t whole = n / 2 * 2;
  for (std::size_t i = 0; i < whole;) {
    const std::uint16_t unit = loadUnit(p + i);
    if (unit == static_cast<unsigned char>(dialect.shift)) {
      stage.put(dialect.shift);
      stage.put('-');
      i += 2;
      continue;
    }
    if (isDirect(dialect, unit)) {
      stage.put(static_cast<char>(unit));
      i += 2;
      continue;
    }
    stage.put(dialect.shift);
    std::uint32_t bits = 0;
    int numBits = 0;
    for (; i < whole && !isDirect(dialect, loadUnit(p + i)); i += 2) {
      bits = (bits << 16) | loadUnit(p + i);
      numBits += 16;
      for (; numBits >= 6; numBits -= 6) {
        stage.put(letterOf(dialect, bits >> (numBits - 6)));
      }
    }
    if (numBits > 0) stage.put(letterOf(dialect, bits << (6 - numBits)));
    const bool ambiguous =
        i < whole && (p[i] == '-' || valueOf(dialect, p[i]) >= 0) && p[i + 1] == 0;
    if (dialect.alwaysClosed || i == whole || ambiguous) stage.put('-');
  }
  return stage.finish() && whole == n;
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
