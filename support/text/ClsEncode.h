#pragma once

class DataBuffer;
class LogBase;
class StringBuffer;
class XString;

/// Runs the binary encodings by number or name.
class _clsEncode {
 public:
  enum Encoding : int {
    Base64 = 1,
    QuotedPrintable = 2,
    Hex = 3,
    Url = 4,
    Ansi = 6,
    Base32 = 7,
    Uu = 8,
    ModBase64 = 10,
    UrlRfc1738 = 11,
    UrlRfc2396 = 12,
    UrlRfc3986 = 13,
    UrlOAuth = 14,
    Q = 15,
    B = 16,
    Base58 = 17,
    Fingerprint = 18,
    Decimal = 19,
    Base64Url = 20,
    Eda = 21,
    Json = 22,
    DecList = 23,
    Base64Mime = 24,
    HexLower = 25,
    Ascii85 = 26,
  };

  /// The number, 0 for an unknown name. Null means base64.
  static int parseEncodingName(const char* name);
  /// An unknown number gives "base64".
  static const char* encodingIdToName(int encoding);

  void put_EncodingModeInt(int encoding) { m_encoding = encoding; }
  int get_EncodingModeInt() const { return m_encoding; }
  void put_EncodingMode(const char* name) { m_encoding = parseEncodingName(name); }

  /// Bytes to text, which is replaced or, with `append`, extended. Unknown numbers mean base64.
  bool encodeBinary(const DataBuffer& bytes, XString& text, bool append, LogBase& log) const;
  /// Text to bytes, likewise.
  static bool decodeBinary(int encoding, const StringBuffer& text, DataBuffer& out, bool append,
                           LogBase& log);
  bool decodeBinary(XString& text, DataBuffer& out, bool append, LogBase& log) const;

 private:
  int m_encoding = Base64;
};
