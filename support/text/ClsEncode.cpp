#include "ClsEncode.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "CodePages.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "Psdk.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

struct EncodingName {
  int encoding;
  const char* name;
};

constexpr std::array<EncodingName, 24> kNames = {{{_clsEncode::Base64, "base64"},
                                                  {_clsEncode::QuotedPrintable, "qp"},
                                                  {_clsEncode::Hex, "hex"},
                                                  {_clsEncode::Url, "url"},
                                                  {_clsEncode::Ansi, "ansi"},
                                                  {_clsEncode::Base32, "base32"},
                                                  {_clsEncode::Uu, "uu"},
                                                  {_clsEncode::ModBase64, "modBase64"},
                                                  {_clsEncode::UrlRfc1738, "url_rfc1738"},
                                                  {_clsEncode::UrlRfc2396, "url_rfc2396"},
                                                  {_clsEncode::UrlRfc3986, "url_rfc3986"},
                                                  {_clsEncode::UrlOAuth, "url_oauth"},
                                                  {_clsEncode::Q, "q"},
                                                  {_clsEncode::B, "b"},
                                                  {_clsEncode::Base58, "base58"},
                                                  {_clsEncode::Fingerprint, "fingerprint"},
                                                  {_clsEncode::Decimal, "decimal"},
                                                  {_clsEncode::Base64Url, "base64url"},
                                                  {_clsEncode::Eda, "eda"},
                                                  {_clsEncode::Json, "json"},
                                                  {_clsEncode::DecList, "declist"},
                                                  {_clsEncode::Base64Mime, "base64_mime"},
                                                  {_clsEncode::HexLower, "hexlower"},
                                                  {_clsEncode::Ascii85, "ascii85"}}};

int urlEncodingOf(std::string_view name) {
  if (name == "url_rfc1738") return _clsEncode::UrlRfc1738;
  if (name == "url_rfc2396") return _clsEncode::UrlRfc2396;
  if (name == "url_rfc3986") return _clsEncode::UrlRfc3986;
  if (name == "url_oauth") return _clsEncode::UrlOAuth;
  return _clsEncode::Url;
}

int baseEncodingOf(std::string_view name) {
  const auto contains = [&](std::string_view part) { return name.find(part) != name.npos; };
  if (contains("32")) return _clsEncode::Base32;
  if (contains("58")) return _clsEncode::Base58;
  if (contains("url")) return _clsEncode::Base64Url;
  if (contains("mime")) return _clsEncode::Base64Mime;
  return _clsEncode::Base64;
}

UrlStyle urlStyleOf(int encoding) {
  switch (encoding) {
    case _clsEncode::UrlRfc1738: return UrlStyle::Rfc1738;
    case _clsEncode::UrlRfc2396: return UrlStyle::Rfc2396;
    case _clsEncode::UrlRfc3986: return UrlStyle::Rfc3986;
    case _clsEncode::UrlOAuth: return UrlStyle::OAuth;
    default: return UrlStyle::Plain;
  }
}

bool encodeInto(int encoding, const void* p, std::size_t n, StringBuffer& out) {
  switch (encoding) {
    case _clsEncode::QuotedPrintable: return ContentCoding::encodeQuotedPrintable(p, n, out);
    case _clsEncode::Hex: return ContentCoding::encodeHex(p, n, HexStyle::Upper, out);
    case _clsEncode::Fingerprint: return ContentCoding::encodeHex(p, n, HexStyle::UpperColons, out);
    case _clsEncode::HexLower: return ContentCoding::encodeHex(p, n, HexStyle::Lower, out);
    case _clsEncode::Url:
    case _clsEncode::UrlRfc1738:
    case _clsEncode::UrlRfc2396:
    case _clsEncode::UrlRfc3986:
    case _clsEncode::UrlOAuth: return ContentCoding::encodeUrl(p, n, urlStyleOf(encoding), out);
    case _clsEncode::Base32: return ContentCoding::encodeBase32_noCrLf(p, n, out);
    case _clsEncode::Uu: return ContentCoding::encodeUu(p, n, out);
    case _clsEncode::ModBase64: return ContentCoding::encodeModBase64_noCrLf(p, n, out);
    case _clsEncode::Base64Url:
      if (!ContentCoding::encodeModBase64_noCrLf(p, n, out)) return false;
      while (out.lastChar() == '=') out.shorten(1);
      return true;
    case _clsEncode::Q: return ContentCoding::Q_Encode(p, n, nullptr, out);
    case _clsEncode::B: return ContentCoding::B_Encode(p, n, nullptr, out);
    case _clsEncode::Base58: return ContentCoding::encodeBase58(p, n, out);
    case _clsEncode::Decimal: return ContentCoding::encodeDecimal(p, n, out);
    case _clsEncode::Eda: return ContentCoding::encodeEda(p, n, out);
    case _clsEncode::Json: return ContentCoding::encodeJson(p, n, out);
    case _clsEncode::DecList: return ContentCoding::encodeDecList(p, n, out);
    case _clsEncode::Base64Mime: return ContentCoding().encodeBase64(p, n, out);
    case _clsEncode::Ascii85: return ContentCoding::encodeAscii85(p, n, out);
    default: return ContentCoding::encodeBase64_noCrLf(p, n, out);
  }
}

bool decodeInto(int encoding, StringBuffer& text, DataBuffer& out, LogBase& log) {
  const char* const p = text.getString();
  const std::size_t n = text.getSize();
  switch (encoding) {
    case _clsEncode::QuotedPrintable: return ContentCoding::decodeQuotedPrintable(p, n, out);
    case _clsEncode::Hex:
    case _clsEncode::HexLower:
    case _clsEncode::Fingerprint:
      text.trim2();
      if (encoding == _clsEncode::Fingerprint) text.removeCharOccurances(':');
      return text.hexStringToBinary(out);
    case _clsEncode::Url:
    case _clsEncode::UrlRfc1738:
    case _clsEncode::UrlRfc2396:
    case _clsEncode::UrlRfc3986:
    case _clsEncode::UrlOAuth: return ContentCoding::decodeUrl(p, n, out);
    case _clsEncode::Ansi: {
      // Characters that the page doesn't have are foreign to the encoding.
      EncodingConvert converter;
      return converter.EncConvert(code_page::kUtf8, Psdk::getAnsiCodePage(), p, n, out, log) ||
             converter.hadError();
    }
    case _clsEncode::Base32: return ContentCoding::decodeBase32(p, n, out);
    case _clsEncode::Uu: return ContentCoding::decodeUu(p, n, out);
    case _clsEncode::Q:
    case _clsEncode::B: return ContentCoding::QB_Decode(p, n, out);
    case _clsEncode::Base58: return ContentCoding::decodeBase58(p, n, out);
    case _clsEncode::Decimal: return ContentCoding::decodeDecimal(p, n, out);
    case _clsEncode::Eda: return ContentCoding::decodeEda(p, n, out);
    case _clsEncode::Json: return ContentCoding::decodeJson(p, n, out);
    case _clsEncode::DecList: return ContentCoding::decodeDecList(p, n, out);
    case _clsEncode::Ascii85: return ContentCoding::decodeAscii85(p, n, out);
    case _clsEncode::ModBase64:
    case _clsEncode::Base64Url:
      text.replaceCharAnsi('-', '+');
      text.replaceCharAnsi('_', '/');
      return ContentCoding::decodeBase64ToDb(p, n, out);
    default: return ContentCoding::decodeBase64ToDb(p, n, out);
  }
}

}  // namespace

int _clsEncode::parseEncodingName(const char* name) {
  if (name == nullptr) return Base64;
  StringBuffer normalised(name);
  normalised.removeCharOccurances('-');
  normalised.removeCharOccurances(' ');
  normalised.trim2();
  normalised.toLowerCase();
  const std::string_view text = normalised.view();
  const auto begins = [&](std::string_view prefix) { return text.starts_with(prefix); };
  const auto contains = [&](std::string_view part) { return text.find(part) != text.npos; };
  if (begins("base")) return baseEncodingOf(text);
  if (text == "q") return Q;
  if (text == "b") return B;
  if (text == "qp" || begins("quoted")) return QuotedPrintable;
  if (text == "hexlower" || text == "hex_lower") return HexLower;
  if (begins("hex")) return Hex;
  if (begins("url")) return urlEncodingOf(text);
  if (text == "ascii85") return Ascii85;
  if (begins("ansi") || begins("asc") || begins("usasc")) return Ansi;
  if (begins("modbase")) return ModBase64;
  if (begins("finger") || begins("thumb")) return Fingerprint;
  if (contains("json")) return Json;
  if (contains("declist")) return DecList;
  if (contains("uu")) return Uu;
  if (begins("dec")) return Decimal;
  if (begins("eda")) return Eda;
  return 0;
}

const char* _clsEncode::encodingIdToName(int encoding) {
  const auto* const place =
      std::find_if(kNames.begin(), kNames.end(),
                   [&](const EncodingName& known) { return known.encoding == encoding; });
  return place == kNames.end() ? kNames[0].name : place->name;
}

bool _clsEncode::encodeBinary(const DataBuffer& bytes, XString& text, bool append,
                              LogBase& /*log*/) const {
  if (!append) text.weakClear();
  const unsigned char* const p = bytes.getData2();
  if (m_encoding == Ansi) {
    return text.appendAnsiN(reinterpret_cast<const char*>(p), bytes.getSize());
  }
  StringBuffer encoded;
  encoded.setSecureBuf(text.getSecureX());
  return encodeInto(m_encoding, p, bytes.getSize(), encoded) && text.appendSbUtf8(encoded);
}

bool _clsEncode::decodeBinary(int encoding, const StringBuffer& text, DataBuffer& out, bool append,
                              LogBase& log) {
  StringBuffer copy;
  DataBuffer decoded;
  copy.setSecureBuf(text.getSecureBuf());
  decoded.setSecure(out.getSecure());
  if (!append) out.clear();
  if (!copy.append(text) || !decodeInto(encoding, copy, decoded, log)) return false;
  if (!out.empty()) return out.append(decoded);
  out.takeData(decoded);
  return true;
}

bool _clsEncode::decodeBinary(XString& text, DataBuffer& out, bool append, LogBase& log) const {
  const StringBuffer& utf8 = text.getUtf8Sb();
  return text.isWhole() && decodeBinary(m_encoding, utf8, out, append, log);
}
