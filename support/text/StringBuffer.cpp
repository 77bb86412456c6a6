#include "StringBuffer.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <functional>
#include <utility>

#include "DataBuffer.h"

namespace {

constexpr std::uint32_t kLargestExtendSize = 500'000;
/// A count of repeated characters above this is taken for a mistake of the caller.
constexpr std::uint32_t kMostRepeats = 0xC00000;

std::size_t lengthOf(const char* text) { return text == nullptr ? 0 : std::strlen(text); }

template <typename Number>
bool appendNumber(StringBuffer& sb, Number value) {
  std::array<char, 24> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return sb.appendN(digits.data(), static_cast<std::size_t>(result.ptr - digits.data()));
}

}  // namespace

StringBuffer::StringBuffer(const char* text) { append(text); }

StringBuffer::~StringBuffer() {
  releaseBuffer();
  m_extendSize = 0;
}

StringBuffer& StringBuffer::operator=(const StringBuffer& other) {
  if (&other != this) setString(other);
  return *this;
}

int StringBuffer::heapUsage() { return static_cast<int>(m_heapCapacity); }

std::uint32_t StringBuffer::memoryUsage() const {
  return m_heapCapacity + static_cast<std::uint32_t>(sizeof(StringBuffer));
}

// Memory ---------------------------------------------------------------------------------------

void StringBuffer::setLength(std::uint32_t length) {
  m_length = length;
  m_data[length] = '\0';
}

/// NUL bytes at the very end don't count.
void StringBuffer::setLengthBeforeNuls(std::uint32_t length) {
  while (length != 0 && m_data[length - 1] == '\0') --length;
  setLength(length);
}

void StringBuffer::freeBlock(bool wipe) {
  ckFreeBlock(std::move(m_heap), m_heapCapacity, wipe);
  m_heapCapacity = 0;
  m_data = m_inline.data();
}

void StringBuffer::release(bool wipe) {
  freeBlock(wipe);
  if (wipe) ckWipe(m_inline.data(), m_inline.size());
  setLength(0);
}

bool StringBuffer::moveToBlock(std::uint64_t capacity) {
  if (ck64_TooBigForUnsigned32(capacity)) return false;
  CkBlock block = ckNewUnsignedChar(capacity);
  if (block == nullptr) return false;
  std::memcpy(block.get(), m_data, m_length + 1U);
  if (m_secure) ckWipe(m_inline.data(), m_inline.size());
  freeBlock(m_secure);
  m_heap = std::move(block);
  m_heapCapacity = static_cast<std::uint32_t>(capacity);
  m_data = reinterpret_cast<char*>(m_heap.get());
  return true;
}

void StringBuffer::moveInline() {
  std::memcpy(m_inline.data(), m_data, m_length + 1U);
  freeBlock(m_secure);
}

bool StringBuffer::expectNumBytes(std::uint32_t n) {
  if (!isValidObject()) return false;
  const std::uint64_t need = std::uint64_t{m_length} + n;
  if (m_heap == nullptr) {
    return need < kInlineSize || moveToBlock(need + m_extendSize + 1);
  }
  if (need < m_heapCapacity) return true;
  if (!moveToBlock(need + m_extendSize + 1)) return false;
  if (m_heapCapacity > m_extendSize && m_extendSize < kLargestExtendSize) {
    m_extendSize = std::min(m_heapCapacity / 2, kLargestExtendSize);
  }
  return true;
}

bool StringBuffer::hasRoomFor(std::size_t n) const {
  const std::uint32_t size = m_heap == nullptr ? kInlineSize : m_heapCapacity;
  return n < size - m_length;
}

bool StringBuffer::makeRoomFor(std::size_t n) {
  if (hasRoomFor(n)) return true;
  return !ck64_TooBigForUnsigned32(n) && expectNumBytes(static_cast<std::uint32_t>(n));
}

void StringBuffer::minimizeMemoryUsage() {
  constexpr std::uint32_t kTolerance = 256;
  if (m_heap == nullptr) return;
  if (m_length < kInlineSize) {
    moveInline();
  } else if (m_heapCapacity > m_length + kTolerance) {
    moveToBlock(m_length + 1U);
  }
}

void StringBuffer::weakClear() {
  m_inline[0] = '\0';
  setLength(0);
  m_extendSize = kFirstExtendSize;
}

void StringBuffer::releaseBuffer() { release(m_secure); }

void StringBuffer::strongClear() {
  releaseBuffer();
  m_extendSize = kFirstExtendSize;
}

void StringBuffer::secureClear() {
  release(true);
  m_extendSize = kFirstExtendSize;
}

bool StringBuffer::takeFromDb(DataBuffer& bytes) {
  if (!bytes.prepForSbTake()) return false;
  const std::uint32_t length = bytes.getSize() - 1;
  const std::uint32_t capacity = bytes.getBufSize();
  const bool secure = m_secure || bytes.getSecure();
  if (length == 0) {
    strongClear();
    return true;
  }
  CkBlock block = bytes.removeData();
  if (block == nullptr) return false;
  strongClear();
  m_secure = secure;
  m_heap = std::move(block);
  m_heapCapacity = capacity;
  m_data = reinterpret_cast<char*>(m_heap.get());
  m_length = length;
  return true;
}

void StringBuffer::takeSb(StringBuffer& other) {
  if (&other == this) return;
  strongClear();
  m_secure = m_secure || other.m_secure;
  m_extendSize = other.m_extendSize;
  m_length = other.m_length;
  if (other.m_heap == nullptr) {
    std::memcpy(m_inline.data(), other.m_data, m_length + 1U);
  } else {
    m_heap = std::move(other.m_heap);
    m_heapCapacity = std::exchange(other.m_heapCapacity, 0U);
    m_data = reinterpret_cast<char*>(m_heap.get());
    other.m_data = other.m_inline.data();
  }
  other.strongClear();
}

CkBlock StringBuffer::extractString() {
  std::uint32_t capacity = 0;
  return extractString2(capacity);
}

CkBlock StringBuffer::extractString2(std::uint32_t& capacity) {
  capacity = m_heap == nullptr ? m_length + 1 : m_heapCapacity;
  CkBlock block = m_heap == nullptr ? copyString() : std::move(m_heap);
  if (block == nullptr) {
    capacity = 0;
    return nullptr;
  }
  m_heapCapacity = 0;
  strongClear();
  return block;
}

CkBlock StringBuffer::copyString() const {
  CkBlock block = ckNewUnsignedChar(m_length + std::size_t{1});
  if (block != nullptr) std::memcpy(block.get(), m_data, m_length + std::size_t{1});
  return block;
}

void StringBuffer::copyToBuffer(char* buffer, std::uint32_t size) const {
  if (buffer == nullptr || size == 0) return;
  const std::uint32_t n = std::min(m_length, size - 1);
  std::memcpy(buffer, m_data, n);
  buffer[n] = '\0';
}

// Adding ---------------------------------------------------------------------------------------

bool StringBuffer::contains(const void* p) const {
  const void* const begin = m_data;
  const void* const end = m_data + (m_heap == nullptr ? kInlineSize : m_heapCapacity);
  return !std::less<>{}(p, begin) && std::less<>{}(p, end);
}

bool StringBuffer::appendN(const char* p, std::size_t n) {
  if (p == nullptr || n == 0) return true;
  if (!hasRoomFor(n)) {
    // The piece may be a part of the text that is about to move.
    const bool ownPiece = contains(p);
    const std::size_t offset = ownPiece ? static_cast<std::size_t>(p - m_data) : 0;
    if (ownPiece && (offset > m_length || n > m_length - offset)) return false;
    if (!makeRoomFor(n)) return false;
    if (ownPiece) p = m_data + offset;
  }
  std::memmove(m_data + m_length, p, n);
  setLengthBeforeNuls(m_length + static_cast<std::uint32_t>(n));
  return true;
}

bool StringBuffer::append(const char* text) { return appendN(text, lengthOf(text)); }

bool StringBuffer::append(const StringBuffer& text) { return appendN(text.m_data, text.m_length); }

bool StringBuffer::append(const DataBuffer& bytes) {
  return appendN(reinterpret_cast<const char*>(bytes.getData2()), bytes.getSize());
}

bool StringBuffer::appendChar(char c) {
  if (!makeRoomFor(1)) return false;
  m_data[m_length] = c;
  setLength(m_length + 1);
  return true;
}

bool StringBuffer::appendChar2(char a, char b) {
  return makeRoomFor(2) && appendChar(a) && appendChar(b);
}

bool StringBuffer::appendUChar(unsigned char c) { return appendChar(static_cast<char>(c)); }

bool StringBuffer::appendCharN(char c, std::uint32_t n) {
  if (n == 0 || n > kMostRepeats) return true;
  if (!makeRoomFor(n)) return false;
  std::memset(m_data + m_length, c, n);
  setLength(m_length + n);
  return true;
}

bool StringBuffer::append(int value) { return appendNumber(*this, value); }

bool StringBuffer::append(unsigned int value) { return appendNumber(*this, value); }

bool StringBuffer::appendInt64(std::int64_t value) { return appendNumber(*this, value); }

bool StringBuffer::prepend(const char* text) { return insertAt(0, text); }

bool StringBuffer::insertAt(std::uint32_t pos, const char* text) {
  if (pos >= m_length) return append(text);
  const std::uint32_t oldLength = m_length;
  if (!append(text)) return false;
  std::rotate(m_data + pos, m_data + oldLength, m_data + m_length);
  return true;
}

bool StringBuffer::setString(const char* text) {
  const std::size_t n = lengthOf(text);
  if (n == 0 || !contains(text)) return setText({text, n});
  // A part of this very text: what is kept moves to the front.
  std::memmove(m_data, text, n);
  setLength(static_cast<std::uint32_t>(n));
  m_extendSize = kFirstExtendSize;
  return true;
}

bool StringBuffer::setString(const StringBuffer& text) {
  return &text == this || setText(text.view());
}

/// Replaces the text by one that lies elsewhere.
bool StringBuffer::setText(std::string_view text) {
  const std::uint32_t length = std::exchange(m_length, 0U);
  const std::uint32_t extendSize = std::exchange(m_extendSize, kFirstExtendSize);
  if (!makeRoomFor(text.size())) {
    m_length = length;
    m_extendSize = extendSize;
    return false;
  }
  m_inline[0] = '\0';
  if (!text.empty()) std::memcpy(m_data, text.data(), text.size());
  setLengthBeforeNuls(static_cast<std::uint32_t>(text.size()));
  return true;
}

// Shortening -----------------------------------------------------------------------------------

void StringBuffer::shorten(std::uint32_t n) {
  const std::uint32_t dropped = std::min(n, m_length);
  m_length -= dropped;
  std::memset(m_data + m_length, 0, dropped);
}

void StringBuffer::rollback(std::uint32_t length) {
  if (length < m_length) shorten(m_length - length);
}

void StringBuffer::chopAt(std::uint32_t i) {
  if (i < m_length) setLength(i);
}

void StringBuffer::removeChunk(std::uint32_t pos, std::uint32_t n) {
  if (pos >= m_length || n > m_length - pos) return;
  std::memmove(m_data + pos, m_data + pos + n, m_length - pos - n);
  setLength(m_length - n);
}
