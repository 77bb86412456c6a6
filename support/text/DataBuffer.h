#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "CkMemory.h"
#include "KestrumObject.h"
#include "ValidityWord.h"

class LogBase;
class StringBuffer;

/// A growable block of bytes, owned or borrowed. Sizes are 32 bits. Operations that need memory
/// return false, with the old content intact, if there is none; those that write do nothing on an
/// object that isn't alive. Not locked: one thread at a time.
class DataBuffer : public KestrumObject {
 public:
  DataBuffer() = default;
  ~DataBuffer() override;

  /// Bytes of the block that this object owns.
  int heapUsage() override;

  // Reading -------------------------------------------------------------------------------

  std::uint32_t getSize() const { return m_size; }
  /// Bytes in the block, used or not.
  std::uint32_t getBufSize() const { return m_capacity; }
  bool empty() const { return m_size == 0; }
  bool isValidObject() const { return m_validity.isAlive(); }
  /// The bytes; null before the first use.
  unsigned char* getData2() const { return m_data; }
  /// The bytes; never null but when memory is short, also for an empty buffer.
  unsigned char* getDataSafe4();
  /// From byte `i` on; null unless `i` is below the size.
  unsigned char* getDataAt2(std::uint32_t i) const;
  /// 0 out of range.
  unsigned char byteAt(std::uint32_t i) const;
  unsigned char firstByte() const { return byteAt(0); }
  unsigned char lastByte() const { return m_size == 0 ? 0 : m_data[m_size - 1]; }

  bool equals2(const void* p, std::uint32_t n) const;
  bool beginsWith(const void* p, std::uint32_t n) const;
  /// Offset of the first occurrence from `start` on, or kNotFound.
  std::uint32_t findBytes2(const void* p, std::uint32_t n, std::uint32_t start = 0) const;
  static constexpr std::uint32_t kNotFound = 0xFFFFFFFF;
  bool is7bit() const;
  /// True if the address lies in the block.
  bool contains(const void* p) const;

  // Adding --------------------------------------------------------------------------------

  /// A null `p` or an `n` of 0 succeeds with no change. `p` may point into this buffer.
  bool append(const void* p, std::size_t n);
  bool append(const DataBuffer& bytes);
  bool append(const StringBuffer& text);
  bool appendStr(const char* text);
  /// One byte, with a smaller growth step than append().
  bool appendChar(char c);
  bool appendChar2(char a, char b);
  bool push_back(unsigned char c);
  bool appendCharN(char c, std::uint32_t n);
  /// Pointer to room for n + 1 bytes behind the used ones, null if there is no memory. Say with
  /// addToSize() how many were written.
  unsigned char* getAppendPtr(std::uint32_t n);
  /// Raises the size, never past the capacity.
  void addToSize(std::uint32_t n);
  void setDataSize_CAUTION(std::uint32_t n);
  bool prepend(const void* p, std::uint32_t n);
  bool insertAt(std::uint32_t pos, const void* p, std::uint32_t n);

  // Reserving and removing ------------------------------------------------------------------

  /// Makes the capacity at least `n`.
  bool ensureBuffer(std::uint32_t n);
  /// Drops `n` bytes from the end, or all there are.
  void shorten(std::uint32_t n);
  /// Shortens, or extends with zero bytes.
  bool resize(std::uint32_t n);
  /// Removes a range; one that passes the end is cut there. A negative position fails.
  bool removeChunk(int pos, int n);
  void removeHead(std::uint32_t n);
  /// Moves the bytes from `index` on to the front, over those before it.
  void slideTailToFront(std::uint32_t index) { removeHead(index); }
  /// Size 0. An owned block is kept for reuse, a borrowed one is forgotten. Never wipes.
  void clear();
  /// Frees the block.
  void clearWithDeallocate();
  /// Wipes the used bytes and keeps the block.
  void secureClear();
  /// Wipes the used bytes and frees the block.
  void secureClearWithDeallocate();
  /// Zeroes the whole block, the size stays.
  void clearBuffer();
  /// Shrinks the block to size + 4 if it is larger.
  bool minimizeMemoryUsage();
  /// The same, unless no more than `keep` bytes are unused.
  bool minimizeMemoryUsage2(std::uint32_t keep);
  /// Every block that a secure buffer frees, it wipes first.
  void setSecure(bool secure) { m_secure = secure; }
  bool getSecure() const { return m_secure; }

  // Handing blocks over ----------------------------------------------------------------------

  /// Reads and writes the caller's `n` bytes in place. They are never freed here; the first
  /// growth turns them into an owned copy. Bytes of this buffer's own block stay owned, and what
  /// is around them goes.
  void borrowData(void* p, std::uint32_t n);
  /// Adopts the other buffer's block; an empty source only clears this buffer. What was secure
  /// stays so.
  void takeData(DataBuffer& source);
  /// Adopts a block from ckNewUnsignedChar().
  void takeData(CkBlock block, std::uint32_t n);
  void setData(CkBlock block, std::uint32_t n) { takeData(std::move(block), n); }
  void takeData2(CkBlock block, std::uint32_t size, std::uint32_t capacity);
  /// Adopts the text without its terminator, which stays in the block. The text is emptied.
  bool takeString(StringBuffer& text);
  /// Forgets the block without freeing it; the caller has it by other means.
  void dropData();
  /// Hands the block out, a copy if it was borrowed, and forgets it.
  CkBlock removeData();
  /// Both leave an empty buffer if there is no memory.
  bool copy(const DataBuffer& other);
  bool copyData(const void* p, std::uint32_t n);
  void swapData(DataBuffer& other);
  /// Makes the bytes end in exactly one NUL, for StringBuffer::takeFromDb().
  bool prepForSbTake();

  // Text ----------------------------------------------------------------------------------

  /// The encoding that a byte order mark or a good share of NUL bytes gives away: 1200, 1201,
  /// 12001 or 65001; -1 if nothing does.
  int detectObviousCodePage() const;
  /// Appends the bytes in upper-case hexadecimal.
  void toHexString(StringBuffer& out) const;
  /// The same, with a colon between bytes if asked.
  void toHexString2(StringBuffer& out, bool colons) const;
  /// Appends the bytes in the named binary encoding ("base64", "hex").
  bool encodeDB(const char* encoding, StringBuffer& out) const;
  /// Decodes a text in the named binary encoding and appends the bytes.
  bool appendEncoded(const char* text, const char* encoding);
  void replaceChar(unsigned char from, unsigned char to);
  /// Reverses the bytes of each 32-bit group; a rest stays.
  void byteSwap4321();
  /// Swaps the bytes of each 16-bit group; a rest stays.
  void byteSwap21();

  // Files ---------------------------------------------------------------------------------

  /// Replaces the content by that of a regular file. The path is UTF-8. A file that changes its
  /// size while it is read isn't loaded.
  bool loadFileUtf8(const char* path, LogBase* log);
  bool saveToFileUtf8(const char* path, LogBase* log) const;
  /// Brings an XML document to UTF-8 in place, by its byte order mark, by NUL bytes or by the
  /// encoding that its declaration names. What cannot be converted is dropped. False for an empty
  /// buffer and, with the bytes as they were, if memory is short.
  bool convertXmlToUtf8(LogBase& log);

 private:
  /// At entry of whatever writes.
  bool isAlive() const;
  bool expandBuffer(std::uint32_t n);
  bool reallocate(std::uint64_t n);
  void adopt(CkBlock block, std::uint32_t size, std::uint32_t capacity);
  void release();

  std::uint32_t m_size = 0;
  std::uint32_t m_capacity = 0;
  ValidityWord<std::uint8_t, 0xDB> m_validity;
  bool m_borrowed = false;
  unsigned char* m_data = nullptr;
  bool m_secure = false;
};
