// Encodings that leave text readable: quoted-printable, percent encoding, JSON escapes and the
// encoded words of mail headers.

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "AsciiText.h"
#include "CkUtf.h"
#include "CodingStage.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "StringBuffer.h"
#include "UnitIo.h"

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

constexpr bool isAsciiLetterOrDigit(char c) {
  return isAsciiDigit(c) || (asciiLower(c) >= 'a' && asciiLower(c) <= 'z');
}

void putHex(TextStage& stage, char lead, unsigned char c) {
  stage.put(lead);
  stage.put(kHexDigits[c >> 4]);
  stage.put(kHexDigits[c & 15]);
}

/// -1 if it is no digit.
int hexDigit(char c) {
  const std::size_t value = kHexDigits.find(asciiUpper(c));
  return value == kHexDigits.npos || c == '\0' ? -1 : static_cast<int>(value);
}

/// The byte of the two digits at `i`, -1 if they aren't two.
int hexByteAt(std::string_view text, std::size_t i) {
  if (text.size() < 2 || i > text.size() - 2) return -1;
  const int high = hexDigit(text[i]);
  const int low = hexDigit(text[i + 1]);
  return high < 0 || low < 0 ? -1 : high * 16 + low;
}

std::string_view viewOf(const void* p, std::size_t n) {
  return p == nullptr ? std::string_view() : std::string_view(static_cast<const char*>(p), n);
}

}  // namespace

// Quoted-printable (RFC 2045)

bool ContentCoding::encodeQuotedPrintable(const void* p, std::size_t n, StringBuffer& out) {
  constexpr std::size_t kLongestLine = 76;
  constexpr std::string_view kLineEnd = "\r\n";
  const std::string_view text = viewOf(p, n);
  TextStage stage(out);
  std::size_t column = 0;
  for (std::size_t i = 0; i < text.size();) {
    if (text.substr(i).starts_with(kLineEnd)) {
      stage.put(kLineEnd);
      column = 0;
      i += kLineEnd.size();
      continue;
    }
    const char c = text[i++];
    const bool endsLine = i == text.size() || text.substr(i).starts_with(kLineEnd);
    const bool plain = (c > ' ' && c <= '~' && c != '=') || (isTabOrSpace(c) && !endsLine);
    const std::size_t width = plain ? 1 : 3;
    // The last column of a line that goes on is for the "=" that says so.
    if (column + width > (endsLine ? kLongestLine : kLongestLine - 1)) {
      stage.put("=\r\n");
      column = 0;
    }
    if (plain) {
      stage.put(c);
    } else {
      putHex(stage, '=', static_cast<unsigned char>(c));
    }
    column += width;
  }
  return stage.finish();
}

bool ContentCoding::decodeQuotedPrintable(const char* p, std::size_t n, DataBuffer& out) {
  const std::string_view text = viewOf(p, n);
  ByteStage stage(out);
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    if (c == '=') {
      if (const int byte = hexByteAt(text, i + 1); byte >= 0) {
        stage.put(static_cast<unsigned char>(byte));
        i += 3;
        continue;
      }
      // A soft line break, blanks that mail added included.
      const std::size_t end = std::min(text.find_first_not_of(" \t", i + 1), text.size());
      const std::string_view rest = text.substr(end);
      if (rest.empty() || rest[0] == '\n' || rest.starts_with("\r\n")) {
        i = end + (rest.empty() ? 0 : rest[0] == '\n' ? 1 : 2);
        continue;
      }
    } else if (isTabOrSpace(c)) {
      // Blanks at the end of a line come from transport.
      const std::size_t end = std::min(text.find_first_not_of(" \t", i), text.size());
      const std::string_view rest = text.substr(end);
      const bool lineEnds = rest.empty() || rest[0] == '\n' || rest.starts_with("\r\n");
      if (!lineEnds) stage.put(text.substr(i, end - i));
      i = end;
      continue;
    }
    stage.put(c);
    ++i;
  }
  return stage.finish();
}

// Percent encoding

namespace {

/// What stands for itself besides letters and digits.
std::string_view unreservedOf(UrlStyle style) {
  switch (style) {
    case UrlStyle::Rfc1738: return "$-_.+!*'(),";
    case UrlStyle::Rfc2396: return "-_.!~*'()";
    case UrlStyle::Rfc3986:
    case UrlStyle::OAuth: return "-._~";
    case UrlStyle::Plain: break;
  }
  return "-_.";
}

}  // namespace

bool ContentCoding::encodeUrl(const void* p, std::size_t n, UrlStyle style, StringBuffer& out) {
  const std::string_view unreserved = unreservedOf(style);
  TextStage stage(out);
  for (const char c : viewOf(p, n)) {
    if (isAsciiLetterOrDigit(c) || unreserved.find(c) != unreserved.npos) {
      stage.put(c);
    } else {
      putHex(stage, '%', static_cast<unsigned char>(c));
    }
  }
  return stage.finish();
}

bool ContentCoding::decodeUrl(const char* p, std::size_t n, DataBuffer& out) {
  const std::string_view text = viewOf(p, n);
  ByteStage stage(out);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int byte = text[i] == '%' ? hexByteAt(text, i + 1) : -1;
    if (byte >= 0) i += 2;
    stage.put(static_cast<unsigned char>(byte >= 0 ? byte : text[i]));
  }
  return stage.finish();
}

// JSON (RFC 8259)

namespace {

struct JsonEscape {
  char letter;
  char meaning;
};

constexpr std::array<JsonEscape, 7> kJsonEscapes = {
    {{'"', '"'}, {'\\', '\\'}, {'b', '\b'}, {'f', '\f'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}}};

/// Half a surrogate pair is no character, and has no form in UTF-8.
constexpr std::uint32_t kReplacementCharacter = 0xFFFD;

/// The unit of "\uXXXX" at `i`, -1 if there is none.
int unitAt(std::string_view text, std::size_t i) {
  if (!text.substr(std::min(i, text.size())).starts_with("\\u")) return -1;
  const int high = hexByteAt(text, i + 2);
  const int low = hexByteAt(text, i + 4);
  return high < 0 || low < 0 ? -1 : high * 256 + low;
}

}  // namespace

bool ContentCoding::encodeJson(const void* p, std::size_t n, StringBuffer& out) {
  TextStage stage(out);
  for (const char c : viewOf(p, n)) {
    const auto* const escape = std::find_if(kJsonEscapes.begin(), kJsonEscapes.end(),
                                            [&](const JsonEscape& e) { return e.meaning == c; });
    if (escape != kJsonEscapes.end()) {
      stage.put('\\');
      stage.put(escape->letter);
    } else if (static_cast<unsigned char>(c) < 0x20) {
      stage.put("\\u00");
      stage.put(kHexDigits[static_cast<unsigned char>(c) >> 4]);
      stage.put(kHexDigits[c & 15]);
    } else {
      stage.put(c);
    }
  }
  return stage.finish();
}

bool ContentCoding::decodeJson(const char* p, std::size_t n, DataBuffer& out) {
  const std::string_view text = viewOf(p, n);
  ByteStage stage(out);
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      stage.put(text[i++]);
      continue;
    }
    if (const int unit = unitAt(text, i); unit >= 0) {
      i += 6;
      std::uint32_t c = static_cast<std::uint32_t>(unit);
      const std::uint32_t next = static_cast<std::uint32_t>(unitAt(text, i));
      if (isHighSurrogate(c) && isLowSurrogate(next)) {
        c = codePointOf(c, next);
        i += 6;
      } else if (isHighSurrogate(c) || isLowSurrogate(c)) {
        c = kReplacementCharacter;
      }
      unsigned char bytes[6];
      const int length = _ckUtf::oneUtf32ToUtf8(c, bytes);
      stage.put({reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)});
      continue;
    }
    const char letter = text[i + 1];
    const auto* const escape =
        std::find_if(kJsonEscapes.begin(), kJsonEscapes.end(),
                     [&](const JsonEscape& e) { return e.letter == letter; });
    // Any other character stands for itself, "/" among them.
    stage.put(escape == kJsonEscapes.end() ? letter : escape->meaning);
    i += 2;
  }
  return stage.finish();
}

// Encoded words (RFC 2047)

namespace {

/// An encoded word is no longer than this.
constexpr std::size_t kLongestWord = 75;
constexpr std::string_view kWordBegin = "=?";
constexpr std::string_view kWordEnd = "?=";
constexpr std::string_view kBetweenWords = "\r\n ";

/// Bytes of the text that fit into `room` characters, cut between characters of UTF-8.
template <typename Width>
std::size_t pieceThatFits(std::string_view text, std::size_t room, Width widthOf) {
  std::size_t fits = 0;
  std::size_t width = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    width += widthOf(text[i]);
    if (width > room) break;
    const bool characterEnds =
        i + 1 == text.size() || (static_cast<unsigned char>(text[i + 1]) & 0xC0) != 0x80;
    if (characterEnds) fits = i + 1;
  }
  return fits != 0 ? fits : std::min<std::size_t>(text.size(), 1);
}

bool isPlainInQ(char c) {
  return isAsciiLetterOrDigit(c) || (c != '\0' && std::strchr("!*+-/", c));
}

/// Writes one encoded word after the other; `put` writes a piece of the text.
template <typename Fit, typename Put>
bool encodeWords(std::string_view text, const char* charset, char kind, StringBuffer& out, Fit fit,
                 Put put) {
  const std::string_view name = charset == nullptr ? "utf-8" : charset;
  const std::size_t frame = kWordBegin.size() + name.size() + 3 + kWordEnd.size();
  const std::size_t room = kLongestWord - std::min(frame, kLongestWord);
  for (bool first = true; !text.empty(); first = false) {
    const std::size_t piece = fit(text, room);
    if (!first && !out.append(kBetweenWords)) return false;
    const bool ok = out.append(kWordBegin) && out.append(name) && out.appendChar2('?', kind) &&
                    out.appendChar('?') && put(text.substr(0, piece)) && out.append(kWordEnd);
    if (!ok) return false;
    text.remove_prefix(piece);
  }
  return true;
}

struct EncodedWord {
  char kind = '\0';
  std::string_view text;
  std::size_t length = 0;  ///< of the whole word; 0 if there is none
};

/// The words of a text, from its begin to its end.
class EncodedWords {
 public:
  explicit EncodedWords(std::string_view text) : text_(text), lastEnd_(text.rfind(kWordEnd)) {}

  /// The word at `i`. Without an end behind it there is none, and no walk to look for one.
  EncodedWord at(std::size_t i) const {
    const std::string_view text = text_.substr(i);
    if (!text.starts_with(kWordBegin)) return {};
    const std::size_t charsetEnd = text.find('?', kWordBegin.size());
    if (charsetEnd == text.npos || charsetEnd + 2 >= text.size() || text[charsetEnd + 2] != '?') {
      return {};
    }
    const char kind = asciiUpper(text[charsetEnd + 1]);
    const std::size_t begin = charsetEnd + 3;
    if ((kind != 'Q' && kind != 'B') || lastEnd_ == text_.npos || i + begin > lastEnd_) return {};
    const std::size_t end = text.find(kWordEnd, begin);
    return {kind, text.substr(begin, end - begin), end + kWordEnd.size()};
  }

 private:
  std::string_view text_;
  std::size_t lastEnd_;
};

bool decodeWord(const EncodedWord& word, bool secure, ByteStage& stage) {
  if (word.kind == 'B') {
    DataBuffer bytes;
    bytes.setSecure(secure);
    if (!ContentCoding::decodeBase64ToDb(word.text.data(), word.text.size(), bytes)) return false;
    stage.put({reinterpret_cast<const char*>(bytes.getData2()), bytes.getSize()});
    return true;
  }
  for (std::size_t i = 0; i < word.text.size(); ++i) {
    const char c = word.text[i];
    const int byte = c == '=' ? hexByteAt(word.text, i + 1) : -1;
    if (byte >= 0) i += 2;
    stage.put(byte >= 0 ? static_cast<char>(byte) : c == '_' ? ' ' : c);
  }
  return true;
}

}  // namespace

bool ContentCoding::Q_Encode(const void* p, std::size_t n, const char* charset, StringBuffer& out) {
  const auto fit = [](std::string_view text, std::size_t room) {
    return pieceThatFits(text, room,
                         [](char c) { return isPlainInQ(c) || c == ' ' ? std::size_t{1} : 3; });
  };
  const auto put = [&](std::string_view piece) {
    TextStage stage(out);
    for (const char c : piece) {
      if (isPlainInQ(c) || c == ' ') {
        stage.put(c == ' ' ? '_' : c);
      } else {
        putHex(stage, '=', static_cast<unsigned char>(c));
      }
    }
    return stage.finish();
  };
  return encodeWords(viewOf(p, n), charset, 'Q', out, fit, put);
}

bool ContentCoding::B_Encode(const void* p, std::size_t n, const char* charset, StringBuffer& out) {
  const auto fit = [](std::string_view text, std::size_t room) {
    return pieceThatFits(text, room / 4 * 3, [](char) { return std::size_t{1}; });
  };
  const auto put = [&](std::string_view piece) {
    return encodeBase64_noCrLf(piece.data(), piece.size(), out);
  };
  return encodeWords(viewOf(p, n), charset, 'B', out, fit, put);
}

bool ContentCoding::QB_Decode(const char* p, std::size_t n, DataBuffer& out) {
  const std::string_view text = viewOf(p, n);
  const EncodedWords words(text);
  ByteStage stage(out);
  for (std::size_t i = 0; i < text.size();) {
    EncodedWord word = words.at(i);
    if (word.length == 0) {
      stage.put(text[i++]);
      continue;
    }
    while (word.length != 0) {
      if (!decodeWord(word, out.getSecure(), stage)) return false;
      i += word.length;
      // White space between two encoded words is no part of the text.
      const std::size_t next = std::min(text.find_first_not_of(" \t\r\n", i), text.size());
      word = words.at(next);
      if (word.length != 0) i = next;
    }
  }
  return stage.finish();
}
