#pragma once

#include <string>
#include <string_view>

#include "PublicApi.h"

/// A text. A `const char*` without a named encoding is in the ANSI code page of the process,
/// which comes from LANG (windows-1251 on a Russian locale). Null pointers count as empty texts.
/// Readers return pointers into the object, valid until the next write on it.
class ORBELO_PUBLIC CkString {
 public:
  CkString() = default;
  explicit CkString(const char* ansi);

  void clear();
  CkString& operator=(const char* ansi);
  void setString(const char* ansi);
  void setStringU(const wchar_t* utf32);
  void setStringUtf8(const char* utf8);
  void setStringUtf16(const unsigned short* utf16);
  void setStr(CkString& other);

  void append(const char* ansi);
  void appendAnsi(const char* ansi);
  void appendU(const wchar_t* utf32);
  void appendStr(const CkString& other);
  /// Adds `numBytes` random bytes as text; "hex" gives two hexadecimal digits a byte.
  void appendRandom(int numBytes, const char* encoding);

  const char* getAnsi();
  const char* getUtf8();
  const wchar_t* getUnicode();
  /// The bytes of the text in the named character set.
  const char* getEnc(const char* charset);
  /// Length in characters.
  int getNumChars();

  /// 0 when both texts are equal.
  int compareStr(const CkString& other);
  /// Replaces every occurrence of `from` and returns their number.
  int replaceAll(CkString& from, CkString& to);
  bool endsWith(const char* ansi);
  /// Removes blanks and tabs from both ends.
  void trim();
  /// Reads the text as base64 and replaces it by the decoded bytes, read in `charset`.
  void base64Decode(const char* charset);

 private:
  std::string utf8_;
  std::string ansi_;
  std::string encoded_;
  std::wstring wide_;
};
