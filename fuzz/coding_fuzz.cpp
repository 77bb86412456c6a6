// Binary encodings. The first byte chooses one; the rest is decoded as a text of it, and encoded
// and decoded again as bytes, which must give the same bytes.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ClsEncode.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "LogBase.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

/// Encodings that cannot carry every byte: texts, and a number that has no zeros in front.
bool isLossy(int encoding) {
  return encoding == _clsEncode::Ansi || encoding == _clsEncode::Json ||
         encoding == _clsEncode::Decimal;
}

/// Big numbers take time by the square of their length.
bool isNumber(int encoding) {
  return encoding == _clsEncode::Decimal || encoding == _clsEncode::Base58;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr int kEncodings = 27;
  const int encoding = data[0] % kEncodings;
  const auto* const text = reinterpret_cast<const char*>(data + 1);
  const std::size_t n = size - 1;
  if (isNumber(encoding) && n > 2000) return 0;

  LogNull log;
  StringBuffer given;
  DataBuffer decoded;
  given.append(std::string_view(text, n));
  _clsEncode::decodeBinary(encoding, given, decoded, false, log);
  ContentCoding::validateBase64(text, n);
  ContentCoding::isBase64(text, n);
  _clsEncode::parseEncodingName(given.getString());

  DataBuffer bytes;
  bytes.append(text, n);
  _clsEncode coder;
  coder.put_EncodingModeInt(encoding);
  XString encoded;
  if (!coder.encodeBinary(bytes, encoded, false, log)) std::abort();
  DataBuffer again;
  if (!coder.decodeBinary(encoded, again, false, log)) std::abort();
  const auto isTheSame = [&] { return again.equals2(bytes.getData2(), bytes.getSize()); };
  if (!isLossy(encoding) && !isTheSame()) std::abort();

  ContentCoding wrapping;
  wrapping.setLineLength(data[0]);
  StringBuffer wrapped;
  wrapping.encodeBase64(text, n, wrapped);
  ContentCoding::decodeBase64ToDb(wrapped.getString(), wrapped.getSize(), again);
  if (!isTheSame()) std::abort();
  return 0;
}
