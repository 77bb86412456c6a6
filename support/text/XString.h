#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "DataBuffer.h"
#include "KestrumObject.h"
#include "StringBuffer.h"
#include "ValidityWord.h"

/// One text in up to three forms: ANSI, UTF-8 and wide (UTF-16 or UTF-32 in native order). A
/// form is made when somebody asks for it, and kept until the text changes. Conversions are
/// silent: what a form cannot hold is dropped from it.
///
/// Results point into the object. They stay valid until the text is written, but for the wide
/// form, which changes its width in place: getUtf16_xe() ends what getUtf32_xe() returned.
///
/// Reading converts, so that even two readers need a lock: one thread at a time. Null arguments
/// count as empty texts. The operations that write return false, with the text as it was, if
/// memory is short or the object isn't alive. A reader that finds no memory returns an empty text;
/// isWhole() tells.
class XString : public KestrumObject {
 public:
  XString() = default;
  ~XString() override;

  static std::unique_ptr<XString> createNewObject();
  /// Null if memory is short.
  std::unique_ptr<XString> cloneX() const;
  /// Copies all valid forms.
  bool copyFromX(const XString& other);

  bool isValidObject() const;
  void setSecureX(bool secure);
  bool getSecureX() const { return m_secure; }

  /// False once anything has been lost for want of memory since the text was last set as a whole:
  /// a write that wasn't done, a form that couldn't be made.
  bool isWhole() const { return m_whole; }
  /// For those who lost a part of the text or of a result on the way; returns false.
  bool noteShortage();

  // The forms at hand -----------------------------------------------------------------------

  bool getAnsiReady() const { return m_ansiReady; }
  bool getUtf8Ready() const { return m_utf8Ready; }
  bool getUtf16Ready() const { return m_wideReady; }
  bool isWideUtf16() const { return m_wideIsUtf16; }

  // Reading -----------------------------------------------------------------------------------

  const char* getAnsi();
  const char* getUtf8();
  /// UTF-8 with characters above U+FFFF as surrogates if 4-byte sequences are switched off.
  const char* getModifiedUtf8();
  const std::uint16_t* getUtf16_xe();
  const char32_t* getUtf32_xe();
  const wchar_t* getWideStr();

  StringBuffer& getAnsiSb();
  StringBuffer& getUtf8Sb();
  /// For writing into the text: the other forms are dropped.
  StringBuffer& getUtf8Sb_rw();

  std::uint32_t getSizeAnsi() { return getAnsiSb().getSize(); }
  std::uint32_t getSizeUtf8() { return getUtf8Sb().getSize(); }
  /// Bytes of the UTF-32 form, the terminator excluded.
  std::uint32_t getSizeUnicode();
  /// Length in the unit of the form at hand: ANSI bytes, UTF-16 units or UTF-32 characters.
  int getNumChars();
  bool isEmpty() const { return getSizeAny() == 0; }
  /// Bytes of the first valid form.
  std::uint32_t getSizeAny() const;

  // Writing -----------------------------------------------------------------------------------

  bool setFromUtf8(const char* text);
  bool setFromUtf8N(const char* text, std::size_t n);
  bool setFromAnsi(const char* text);
  bool setFromAnsiN(const char* text, std::size_t n);
  /// UTF-8 if the flag says so, else ANSI.
  bool setFromDual(const char* text, bool utf8) {
    return utf8 ? setFromUtf8(text) : setFromAnsi(text);
  }
  bool setFromUtf16_xe(const std::uint16_t* text);
  bool setFromUtf32_xe(const char32_t* text);
  bool setFromWideStr(const wchar_t* text);
  bool setFromSbUtf8(const StringBuffer& text);
  /// Clears, then appends the other's best form.
  bool assignX(const XString& other);
  /// Bytes in the named character set, ANSI if the name is unknown. What doesn't convert is
  /// dropped, with false. The number of a binary encoding converts nothing and leaves an empty
  /// text. The block may be taken over, which leaves `bytes` empty.
  bool setFromDb(const char* charset, DataBuffer& bytes);
  bool setFromDb_cp(int codePage, DataBuffer& bytes);

  bool appendUtf8(const char* text);
  bool appendUtf8N(const char* text, std::size_t n);
  bool appendSbUtf8(const StringBuffer& text);
  bool appendAnsi(const char* text);
  bool appendAnsiN(const char* text, std::size_t n);
  /// To the UTF-8 form, whichever is valid.
  bool appendAnsiToUtf8(const char* text, std::size_t n);
  bool appendUtf16_xe(const std::uint16_t* text);
  /// `n` counts units.
  bool appendUtf16N_xe(const std::uint16_t* text, std::size_t n);
  bool appendUtf32_xe(const char32_t* text);
  bool appendUtf32N_xe(const char32_t* text, std::size_t n);
  bool appendWideStr(const wchar_t* text);
  /// ASCII only: goes to whichever byte form is valid.
  bool appendUsAscii(const char* text);
  bool appendInt(int value);
  bool appendX(const XString& other);

  /// Adopt a block without copying it; a UTF-8 mark in front is skipped.
  bool takeFromUtf8Sb(StringBuffer& text);
  bool takeFromUtf8Db(DataBuffer& bytes);
  bool takeFromAnsiDb(DataBuffer& bytes);

  // Clearing ----------------------------------------------------------------------------------

  /// Frees the forms; wipes them first if the object is secure.
  void clear();
  /// Empties the forms, keeps their memory, never wipes.
  void weakClear();
  void strongClear() { clear(); }
  /// Wipes and frees the forms.
  void secureClear();
  /// Keeps one form and frees the others.
  void minimizeMemory();

  // Comparing and editing, through UTF-8 --------------------------------------------------------

  bool equalsUtf8(const char* text);
  bool equalsX(XString& other);
  bool equalsIgnoreCaseUtf8(const char* text);
  bool beginsWithUtf8(const char* text);
  bool endsWithUtf8(const char* text);
  bool containsSubstringUtf8(const char* text);
  int indexOfUtf8(const char* text);
  bool is7bit();
  bool isValidUtf8();
  /// Both are brought to UTF-32 and compared by code point. Without memory for that two objects
  /// are never equal.
  int compareX(XString& other);
  /// Compares the form at hand with an ASCII text. Needs no memory and converts nothing.
  bool equalsAscii(const char* ascii) const;
  int replaceAllOccurancesUtf8(const char* from, const char* to, bool ignoreCase);
  /// Tab and blank, at both ends.
  void trim();
  /// Tab, blank, CR and LF, at both ends.
  void trim2();

  // Other encodings -----------------------------------------------------------------------------

  /// The text's bytes in a code page, appended to `out`; a binary encoding decodes the text.
  bool getConverted_cp(int codePage, DataBuffer& out);
  /// The same by name; 65001 if the name is unknown.
  bool getConverted(const char* charset, DataBuffer& out);

  /// The text's bytes in the character set become its text in the binary encoding ...
  bool encodeBinaryText(const char* charset, int encoding);
  /// ... and back.
  bool decodeBinaryText(const char* charset, int encoding);

 private:
  bool isAlive() const;
  void onlyUtf8();
  void onlyAnsi();
  void onlyWide(bool utf16);
  std::uint32_t wideWidth() const { return m_wideIsUtf16 ? 2 : 4; }
  std::uint32_t wideSize() const;
  void emptyForm(StringBuffer& form);
  void releaseWide();
  void takeX(XString& other);
  void trimWith(std::uint32_t (StringBuffer::*family)());
  bool makeUtf8();
  bool makeAnsi();
  bool makeWide(bool utf16);
  template <typename Unit>
  bool appendWide(const Unit* text, std::size_t n);
  template <typename Unit>
  bool setWide(const Unit* text);
  bool convertTo(int codePage, DataBuffer& out);

  ValidityWord<std::uint32_t, 0xC8E20FF6> m_magic;
  bool m_wideReady = false;
  bool m_ansiReady = true;
  bool m_utf8Ready = true;
  bool m_wideIsUtf16 = true;
  DataBuffer m_wide;
  StringBuffer m_sbAnsi;
  StringBuffer m_sbUtf8;
  bool m_secure = false;
  bool m_whole = true;
};
