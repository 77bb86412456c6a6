#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "CkMemory.h"
#include "KestrumObject.h"
#include "ValidityWord.h"

class DataBuffer;

/// A NUL-terminated byte string without a notion of encoding. Up to 81 bytes live inside the
/// object, longer texts in one heap block. Lengths are 32 bits. Operations that need memory
/// return false, with the text unchanged, if there is none. Null arguments count as empty texts.
/// Not locked: one thread at a time.
class StringBuffer : public NonRefCountedObj {
 public:
  StringBuffer() = default;
  explicit StringBuffer(const char* text);
  ~StringBuffer() override;
  StringBuffer& operator=(const StringBuffer& other);

  /// Bytes of the block, 0 while the text lives inside the object.
  int heapUsage() override;

  // Reading -------------------------------------------------------------------------------

  /// The text, never null, valid until the next write.
  char* getString() const { return m_data; }
  /// Bytes of the text, the terminator excluded. A text with NUL bytes inside is longer than
  /// getString() shows.
  std::uint32_t getSize() const { return m_length; }
  std::string_view view() const { return {m_data, m_length}; }
  bool empty() const { return m_length == 0; }
  bool isValidObject() const { return m_validity.isAlive(); }
  /// True if the terminator is missing.
  bool isNonTerminated() const { return m_data[m_length] != 0; }
  /// True if the address lies in the memory of the text.
  bool contains(const void* p) const;
  char* pCharAt(std::uint32_t i) const { return m_data + i; }
  char charAt(std::uint32_t i) const { return i < m_length ? m_data[i] : '\0'; }
  char lastChar() const { return m_length == 0 ? '\0' : m_data[m_length - 1]; }

  // Adding and replacing the text -----------------------------------------------------------

  bool append(const char* text);
  bool append(std::string_view text) { return appendN(text.data(), text.size()); }
  bool append(const StringBuffer& text);
  bool append(const DataBuffer& bytes);
  /// Copies `n` bytes. NUL bytes at the very end of the text don't count, those inside do.
  bool appendN(const char* p, std::size_t n);
  bool appendChar(char c);
  bool appendChar2(char a, char b);
  bool appendUChar(unsigned char c);
  /// An absurd count (above 12,582,912) is ignored with success.
  bool appendCharN(char c, std::uint32_t n);
  bool append(int value);
  bool append(unsigned int value);
  bool appendInt64(std::int64_t value);
  bool prepend(const char* text);
  /// A position past the end appends.
  bool insertAt(std::uint32_t pos, const char* text);
  /// Replaces the text; the argument may point into it.
  bool setString(const char* text);
  bool setString(const StringBuffer& text);

  // Memory ----------------------------------------------------------------------------------

  /// Makes room for `n` more bytes.
  bool expectNumBytes(std::uint32_t n);
  /// Whatever memory a secure text leaves behind, it wipes first.
  void setSecureBuf(bool secure) { m_secure = secure; }
  bool getSecureBuf() const { return m_secure; }
  std::uint32_t getExtendSize() const { return m_extendSize; }
  void setExtendSize(std::uint32_t n) { m_extendSize = n; }
  /// Bytes of the object with its block.
  std::uint32_t memoryUsage() const;
  bool onHeap() const { return m_heap != nullptr; }
  /// Moves a short text back into the object, or a long one into a block that fits.
  void minimizeMemoryUsage();

  /// Empties the text, keeps the block, never wipes.
  void weakClear();
  /// Empties the text and frees the block; wipes first if the buffer is secure.
  void strongClear();
  void clear() { strongClear(); }
  /// The same, and wipes whatever the flag says.
  void secureClear();
  /// As strongClear(), but the extend size stays.
  void releaseBuffer();

  /// Adopts the bytes without copying them; the text ends before its trailing NUL bytes.
  bool takeFromDb(DataBuffer& bytes);
  /// Adopts the other text and leaves it empty. What was secure stays so.
  void takeSb(StringBuffer& other);
  /// Hands the text out in a block of its own, terminated, and leaves the buffer empty. Null, with
  /// the text still here, if a short text finds no memory for a block.
  CkBlock extractString();
  CkBlock extractString2(std::uint32_t& capacity);
  CkBlock copyString() const;
  /// Copies as much of the text as fits into `size` bytes with the terminator.
  void copyToBuffer(char* buffer, std::uint32_t size) const;

  // Shortening --------------------------------------------------------------------------------

  /// Drops `n` bytes from the end.
  void shorten(std::uint32_t n);
  void rollback(std::uint32_t length);
  void chopAt(std::uint32_t i);
  /// Removes a range that lies inside the text; else nothing.
  void removeChunk(std::uint32_t pos, std::uint32_t n);

  // Trimming: each returns the number of bytes removed --------------------------------------

  /// Tab and blank, at both ends.
  std::uint32_t trim();
  /// Tab, blank, CR and LF, at both ends.
  std::uint32_t trim2();

  // Searching (bytes; "NoCase" for ASCII letters) ---------------------------------------------

  /// Offset of the first occurrence, -1 if there is none.
  int indexOf(const char* text) const;
  bool containsSubstring(const char* text) const { return indexOf(text) >= 0; }
  bool containsChar(char c) const;
  bool beginsWith(const char* text) const;
  bool endsWith(const char* text) const;
  bool equals(const char* text) const;
  bool equals(const StringBuffer& text) const { return view() == text.view(); }
  bool equalsIgnoreCase(const char* text) const;

  // Replacing -----------------------------------------------------------------------------------

  /// Returns the number of replacements. Matches don't overlap, and what was put in isn't
  /// searched again.
  int replaceAllOccurances(const char* from, const char* to);
  int replaceAllOccurancesNoCase(const char* from, const char* to);
  int replaceFirstOccurance(const char* from, const char* to, bool noCase);
  int replaceCharAnsi(char from, char to);
  int removeCharOccurances(char c);

  // Case, tests, numbers ------------------------------------------------------------------------

  void toLowerCase();
  bool is7bit() const;
  /// Decimal value behind leading tabs and blanks and one sign, up to the first other character;
  /// 32 bits, wrapping around.
  int intValue() const;

  // Line ends -----------------------------------------------------------------------------------

  bool toLF();
  bool toCRLF();

  /// Hexadecimal text to bytes, appended. Characters that are no digits give garbage; an odd
  /// first digit is a byte of its own.
  bool hexStringToBinary(DataBuffer& out) const;

 private:
  static constexpr std::uint32_t kInlineSize = 82;
  static constexpr std::uint32_t kFirstExtendSize = 202;

  bool hasRoomFor(std::size_t n) const;
  bool makeRoomFor(std::size_t n);
  bool moveToBlock(std::uint64_t capacity);
  void moveInline();
  void freeBlock(bool wipe);
  void release(bool wipe);
  void setLength(std::uint32_t length);
  void setLengthBeforeNuls(std::uint32_t length);
  bool setText(std::string_view text);
  int replaceAll(std::string_view wanted, std::string_view replacement, bool noCase);
  std::uint32_t keepRange(std::size_t from, std::size_t to);

  ValidityWord<std::uint8_t, 0xAA> m_validity;
  bool m_secure = false;
  std::array<char, kInlineSize> m_inline = {};
  char* m_data = m_inline.data();
  CkBlock m_heap;
  std::uint32_t m_heapCapacity = 0;
  std::uint32_t m_length = 0;
  std::uint32_t m_extendSize = kFirstExtendSize;
};
