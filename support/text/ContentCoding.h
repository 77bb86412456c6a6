#pragma once

#include <cstddef>
#include <cstdint>

#include "CkMemory.h"

class DataBuffer;
class StringBuffer;

/// How bytes look in hexadecimal.
enum class HexStyle { Upper, Lower, UpperColons };

/// Which characters percent encoding leaves as they are.
enum class UrlStyle { Plain, Rfc1738, Rfc2396, Rfc3986, OAuth };

/// Binary-to-text encodings. Encoders append to `out` and return false if it cannot grow.
/// Decoders append too, skip what is foreign to the encoding and fail only for want of memory,
/// but where it is said otherwise. Null or empty input succeeds with nothing written.
class ContentCoding {
 public:
  // Base64 --------------------------------------------------------------------------------

  /// Replaces the content of `out`. The text ends at a NUL or "=".
  static bool decodeBase64ToDb(const char* p, std::size_t n, DataBuffer& out);
  /// A new block, with a 0 byte behind the `outLen` decoded ones; null for empty input.
  static CkBlock decodeBase64(const char* p, std::size_t n, std::uint32_t& outLen);
  static CkBlock decodeBase64_2(const char* p, std::size_t n, std::uint32_t& outLen, bool& ok);
  static bool encodeBase64_noCrLf(const void* p, std::size_t n, StringBuffer& out);
  /// With "-" and "_" in place of "+" and "/".
  static bool encodeModBase64_noCrLf(const void* p, std::size_t n, StringBuffer& out);
  /// In lines of the set length, each closed by CR LF; the end is closed too, so that a last
  /// line which is just full is followed by an empty one.
  bool encodeBase64(const void* p, std::size_t n, StringBuffer& out) const;
  /// Raises values below 10 to 10.
  void setLineLength(std::uint32_t n);
  /// A generous estimate; `line` is the length of lines, 0 for one line.
  static std::uint32_t computeBase64Size(std::uint32_t n, std::uint32_t line);
  /// False only for a byte that no base64 text holds, up to the first "=" or NUL.
  static bool validateBase64(const char* p, std::size_t n);
  /// True if all bytes are of the alphabet, "=" or white space.
  static bool isBase64(const char* p, std::size_t n);
  /// Decodes a text and appends the bytes to `out`.
  static bool appendBase64(StringBuffer& out, const char* text);

  // Hexadecimal and decimal -----------------------------------------------------------------

  static bool encodeHex(const void* p, std::size_t n, HexStyle style, StringBuffer& out);
  /// Tests nothing: foreign characters give garbage. An odd first digit is a byte of its own.
  static bool decodeHex(const char* p, std::size_t n, DataBuffer& out);
  /// The bytes as one big-endian number. Zero bytes in front are lost.
  static bool encodeDecimal(const void* p, std::size_t n, StringBuffer& out);
  static bool decodeDecimal(const char* p, std::size_t n, DataBuffer& out);
  /// "1,2,255"
  static bool encodeDecList(const void* p, std::size_t n, StringBuffer& out);
  static bool decodeDecList(const char* p, std::size_t n, DataBuffer& out);

  // Other bases -------------------------------------------------------------------------------

  static bool encodeBase32_noCrLf(const void* p, std::size_t n, StringBuffer& out);
  static bool decodeBase32(const char* p, std::size_t n, DataBuffer& out);
  static bool encodeBase58(const void* p, std::size_t n, StringBuffer& out);
  static bool decodeBase58(const char* p, std::size_t n, DataBuffer& out);
  static bool encodeAscii85(const void* p, std::size_t n, StringBuffer& out);
  static bool decodeAscii85(const char* p, std::size_t n, DataBuffer& out);
  static bool encodeEda(const void* p, std::size_t n, StringBuffer& out);
  static bool decodeEda(const char* p, std::size_t n, DataBuffer& out);
  static bool encodeUu(const void* p, std::size_t n, StringBuffer& out);
  static bool decodeUu(const char* p, std::size_t n, DataBuffer& out);

  // Text that stays readable ------------------------------------------------------------------

  static bool encodeQuotedPrintable(const void* p, std::size_t n, StringBuffer& out);
  static bool decodeQuotedPrintable(const char* p, std::size_t n, DataBuffer& out);
  static bool encodeUrl(const void* p, std::size_t n, UrlStyle style, StringBuffer& out);
  static bool decodeUrl(const char* p, std::size_t n, DataBuffer& out);
  static bool encodeJson(const void* p, std::size_t n, StringBuffer& out);
  static bool decodeJson(const char* p, std::size_t n, DataBuffer& out);

  // Fields of mail headers: "=?charset?Q?text?=" -------------------------------------------------

  static bool Q_Encode(const void* p, std::size_t n, const char* charset, StringBuffer& out);
  static bool B_Encode(const void* p, std::size_t n, const char* charset, StringBuffer& out);
  /// Replaces each encoded word by its bytes; the rest stays as it is.
  static bool QB_Decode(const char* p, std::size_t n, DataBuffer& out);

 private:
  std::uint32_t m_lineLength = 76;
};
