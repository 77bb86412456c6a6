#pragma once

#include <memory>

#include "CkObject.h"

class StringBuffer;
class XString;

/// A text, held by value and copied deep. Readers convert on demand and return pointers into the
/// object, which owns what they point to; they stay valid until the next write. getUnicode() and
/// getUtf16() share one buffer, so that each ends the other's result. `const char*` arguments
/// without a named encoding are ANSI, or UTF-8 after put_Utf8(true); ANSI is the code page that
/// LANG stands for (windows-1251 on a Russian locale). Null pointers count as empty texts. What an
/// encoding cannot hold is dropped.
///
///   CkString id;
///   id.setStringU(fromThePlatform);
///   const char* bytes = id.getEnc("windows-1251");
///   if (!id.isWhole()) return refused();  // memory is short: `bytes` may be another id
///
/// Nothing throws. A write that finds no memory leaves the text as it was, a reader then returns
/// an empty text, and isWhole() tells. Reading changes the object too: one thread at a time,
/// readers included.
class ORBELO_PUBLIC CkString : public CkObject {
 public:
  CkString();
  /// The text is ANSI.
  explicit CkString(const char* ansi);
  /// The text is UTF-8, whatever the flag says.
  CkString(const char* utf8, bool ignored);
  CkString(const CkString& other);
  ~CkString() override;

  static CkString* createNew();
  /// A new object with the same text, null if memory is short. The caller deletes it.
  CkString* clone() const;

  void clear();
  /// False once anything has been lost for want of memory since the text was last set as a whole:
  /// the object itself, a write, a copy's source, a form that was asked for. Ask before a text is
  /// used as a name, a path or a number.
  bool isWhole() const;
  bool get_Utf8() const;
  void put_Utf8(bool utf8);
  /// Memory is wiped before it is freed.
  bool get_SecureClear() const;
  void put_SecureClear(bool secure);

  // Reading -----------------------------------------------------------------------------------

  const char* getString() const;
  operator const char*() const;
  const char* getAnsi() const;
  const char* getUtf8() const;
  const wchar_t* getUnicode() const;
  operator const wchar_t*() const;
  const unsigned short* getUtf16() const;
  /// The bytes of the text in the named character set, valid until the next call of getEnc().
  /// The name of a binary encoding ("base64") decodes the text. NUL bytes at the end don't count.
  const char* getEnc(const char* charset) const;
  /// Length in the unit of the form at hand: ANSI bytes, UTF-16 units or UTF-32 characters.
  int getNumChars() const;
  /// Bytes of the form, without a terminator.
  int getSizeAnsi() const;
  int getSizeUtf8() const;
  int getSizeUnicode() const;

  // Writing -----------------------------------------------------------------------------------

  void setString(const char* text);
  void setStringAnsi(const char* ansi);
  void setStringUtf8(const char* utf8);
  void setStringU(const wchar_t* utf32);
  void setStringUtf16(const unsigned short* utf16);
  void setStr(CkString& other);
  CkString& operator=(const CkString& other);
  CkString& operator=(const char* text);
  CkString& operator=(char c);
  CkString& operator=(int value);
  CkString& operator=(bool value);

  void append(const char* text);
  void append(const CkString& other);
  void appendAnsi(const char* ansi);
  void appendUtf8(const char* utf8);
  void appendU(const wchar_t* utf32);
  void appendStr(const CkString& other);
  void appendChar(char ansi);
  void appendInt(int value);
  /// Adds `numBytes` random bytes in the named binary encoding; "hex" gives two digits a byte.
  void appendRandom(int numBytes, const char* encoding);

  // Comparing and editing -----------------------------------------------------------------------

  /// By code point: negative, 0 or positive. 0 if either object has no text at all; never 0 if a
  /// text can't be brought into the form to compare.
  int compareStr(const CkString& other) const;
  /// True if the text is this one, in ASCII. Needs no memory and converts nothing; without a text
  /// false.
  bool equalsAscii(const char* ascii) const;
  bool endsWith(const char* text) const;
  /// Returns the number of replacements.
  int replaceAll(CkString& from, CkString& to);
  /// Removes tabs and blanks from both ends.
  void trim();
  /// Removes tabs, blanks, CR and LF from both ends.
  void trim2();
  void minimizeMemory();

  // Binary encodings: the text's bytes in the character set become text, and back ----------------

  void base64Encode(const char* charset);
  void base64Decode(const char* charset);
  void hexEncode(const char* charset);
  void hexDecode(const char* charset);
  void qpEncode(const char* charset);
  void qpDecode(const char* charset);
  void urlEncode(const char* charset);
  void urlDecode(const char* charset);

  /// The value inside; null only if there was no memory for it.
  XString* getImpl() const;

 private:
  std::unique_ptr<XString> m_x;
  bool m_utf8;
  mutable std::unique_ptr<StringBuffer> m_sbEnc;
};
