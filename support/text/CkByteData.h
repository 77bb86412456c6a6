#pragma once

#include <memory>

#include "CkObject.h"

class CkString;
class DataBuffer;

/// A block of bytes, owned or borrowed. Sizes and offsets are 32 bits inside; larger arguments are
/// taken for the largest. A file name is ANSI, or UTF-8 after put_Utf8(true). Not locked: one
/// thread at a time.
class ORBELO_PUBLIC CkByteData : public CkObject {
 public:
  CkByteData();
  CkByteData(const CkByteData& other);
  CkByteData& operator=(const CkByteData& other);
  ~CkByteData() override;

  bool get_Utf8() const;
  void put_Utf8(bool utf8);
  bool get_SecureClear() const;
  /// Every block is wiped before it is freed, also those of the results. Copies are secure, too.
  void put_SecureClear(bool secure);

  /// Frees the block at once.
  void clear();
  /// Number of bytes.
  unsigned long getSize() const;
  /// The bytes, valid until the next write; not null also when the block is empty.
  const unsigned char* getBytes() const;
  const char* getData() const;

  // Writing: false only if there is no memory -------------------------------------------------

  /// Adds `n` bytes from `p`. A null `p` adds nothing.
  bool append2(const void* p, unsigned long n);
  bool append(const CkByteData& other);
  bool appendRange(const CkByteData& other, unsigned long index, unsigned long n);
  bool appendChar(char c);
  bool appendCharN(char c, int n);
  /// Adds the text as it is given, without its terminator.
  bool appendStr(const char* text);
  /// Native byte order.
  bool appendInt(int value);
  bool appendShort(short value);
  bool appendRandom(int n);
  bool appendFile(const char* path);
  bool appendEncoded(const char* text, const char* encoding);
  bool ensureBuffer(unsigned long n);
  bool preAllocate(unsigned long n);
  /// Reads and writes the caller's bytes in place, without owning them.
  void borrowData(void* p, unsigned long n);

  // Reading: 0 or an empty result out of range ------------------------------------------------

  unsigned char getByte(unsigned long index) const;
  char getChar(unsigned long index) const;
  /// Native byte order.
  short getShort(unsigned long index) const;
  unsigned short getUShort(unsigned long index) const;
  int getInt(unsigned long index) const;
  unsigned int getUInt(unsigned long index) const;
  const unsigned char* getDataAt(unsigned long index) const;
  /// Replaces `out` by the range; false, with `out` as it was, if there is no memory.
  bool getRange(unsigned long index, unsigned long n, CkByteData& out) const;
  /// The range as a text; null if there is no memory. Valid until the next call that returns one.
  const char* getRangeStr(unsigned long index, unsigned long n);
  /// The bytes in the named binary encoding ("base64", "hex"), valid until the next such call.
  const char* getEncoded(const char* encoding);
  const char* getEncodedRange(const char* encoding, unsigned long index, unsigned long n);
  void encode(const char* encoding, CkString& out) const;
  /// The bytes as a NUL-terminated text, valid until the next call that returns one.
  const char* to_s();
  bool equals(const CkByteData& other) const;
  bool equals2(const void* p, unsigned long n) const;
  bool beginsWith(const CkByteData& other) const;
  bool beginsWith2(const void* p, unsigned long n) const;
  /// Offset, or 0xFFFFFFFF.
  int findBytes(const CkByteData& wanted) const;
  unsigned long findBytes2(const void* p, unsigned long n) const;
  bool is7bit() const;

  // Reshaping -----------------------------------------------------------------------------------

  void shorten(unsigned long n);
  void removeChunk(unsigned long index, unsigned long n);
  void replaceChar(unsigned char from, unsigned char to);
  void byteSwap4321();
  /// Adopts the other's bytes and leaves it empty.
  void takeByteData(CkByteData& other);

  bool loadFile(const char* path);
  bool saveFile(const char* path) const;

  DataBuffer* getImpl() const;
  /// Replaces the bytes; a null pointer changes nothing.
  void setImpl(std::unique_ptr<DataBuffer> impl);

 private:
  DataBuffer* writable();
  const char* resultOf(unsigned long index, unsigned long n, const char* encoding);
  bool load(const char* path, DataBuffer& out) const;

  std::unique_ptr<DataBuffer> m_impl;
  bool m_utf8;
  bool m_secure = false;
  std::unique_ptr<DataBuffer> m_result;
};
