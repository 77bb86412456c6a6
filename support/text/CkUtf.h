#pragma once

#include <cstddef>
#include <cstdint>

class DataBuffer;
class StringBuffer;

/// True while characters above U+FFFF are written to UTF-8 as 4 bytes, false while as two
/// surrogates of 3 bytes each.
extern bool g_allow_4byte_utf8;

/// Primitives of UTF-8, UTF-16, UTF-32, UTF-7 and the GSM alphabet. Wide texts are in native
/// byte order and given as bytes; results are appended to `out`.
class _ckUtf {
 public:
  /// One character of UTF-8 as read by utf16FromUtf8().
  struct Utf16Character {
    std::uint16_t units[2];
    int numUnits;          ///< 1 or 2; 0 if a NUL or the end of the text cuts the sequence off
    std::size_t numBytes;  ///< of UTF-8 that were used up, at least 1
  };

  /// Takes the length from the first byte and masks the following ones without a test, so that
  /// overlong forms and foreign bytes become some character; a byte that begins no sequence
  /// stands for itself. `n` is at least 1.
  static Utf16Character utf16FromUtf8(const unsigned char* p, std::size_t n);

  /// Writes 1 to 4 bytes, or 6 for a character above U+FFFF while 4-byte sequences are off.
  /// Above 1FFFFF it is U+FFFD. Returns the number of bytes.
  static int oneUtf32ToUtf8(std::uint32_t codePoint, unsigned char out[6]);

  /// True if the `n` bytes, 1 to 4, are one well-formed sequence of UTF-8.
  static bool isLegalUtf8(const unsigned char* p, std::size_t n);
  /// Tests the lead and continuation pattern of the first `limit` bytes, behind a mark.
  static bool isValidUtf8(const unsigned char* p, std::size_t n, std::size_t limit = 0x20000);
  /// Length of the sequence by its first byte, 1 if it is illegal, what is left if it is cut off.
  static std::size_t NumUtf8Bytes(const unsigned char* p, std::size_t n);
  static bool hasUtf8Preamble(const unsigned char* p, std::size_t n);

  /// Drops the first byte of an illegal sequence and goes on; a sequence cut off by the end stops
  /// the conversion. False in both cases.
  static bool utf8toUtf32(bool bigEndian, const unsigned char* p, std::size_t n, DataBuffer& out);
  static bool Utf8toUtf32(const unsigned char* p, std::size_t n, DataBuffer& out) {
    return utf8toUtf32(false, p, n, out);
  }
  /// A rest of less than 4 bytes is lost, with the result false.
  static bool Utf32ToUtf8(bool bigEndian, const unsigned char* p, std::size_t n, DataBuffer& out);

  /// Rewrites 4-byte sequences as surrogates of 3 bytes each; `changed` says if there were any.
  static bool ensureModifiedUtf8(StringBuffer& text, bool& changed);

  static bool Utf7ToUtf16_xe(const unsigned char* p, std::size_t n, DataBuffer& out);
  static bool Utf16XEToUtf7(const unsigned char* p, std::size_t n, DataBuffer& out);
  /// The variant in names of IMAP folders.
  static bool ImapUtf7ToUtf16_xe(const unsigned char* p, std::size_t n, DataBuffer& out);
  static bool ImapUtf16XEToUtf7(const unsigned char* p, std::size_t n, DataBuffer& out);

  /// The default alphabet of text messages, one byte a septet, with its extension table. False
  /// if characters were dropped.
  static bool utf8_to_gsm(const unsigned char* p, std::size_t n, DataBuffer& out);
  static bool gsm_to_utf8(const unsigned char* p, std::size_t n, DataBuffer& out);
};
