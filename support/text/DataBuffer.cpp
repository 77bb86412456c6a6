#include "DataBuffer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <string_view>
#include <utility>

#include "Psdk.h"
#include "StringBuffer.h"

namespace {

constexpr std::uint32_t kSmallestStep = 20'000;

/// From each of these sizes on, of the buffer or of the piece, a block grows by more at once.
constexpr std::array<std::uint32_t, 8> kSteps = {12'000'000, 8'000'000, 4'000'000, 3'000'000,
                                                 2'000'000,  1'000'000, 100'000,   50'000};

constexpr std::uint32_t growthStep(std::uint32_t size, std::uint32_t n) {
  for (const std::uint32_t step : kSteps) {
    if (n >= step) return n;
    if (size >= step) return step;
  }
  return n >= kSmallestStep ? n : kSmallestStep;
}

/// New capacity for a buffer that grows byte by byte.
constexpr std::uint64_t capacityForOneMore(std::uint32_t size) {
  if (size < 64) return size + 64U;
  if (size < 256) return size + 256U;
  if (size < 1024) return size + 1024U;
  return std::uint64_t{size} + 10'000U;
}

}  // namespace

DataBuffer::~DataBuffer() {
  if (!isValidObject()) {
    Psdk::corruptObjectFound();
    return;
  }
  release();
}

bool DataBuffer::isAlive() const {
  if (isValidObject()) return true;
  Psdk::badObjectFound();
  return false;
}

int DataBuffer::heapUsage() { return m_borrowed ? 0 : static_cast<int>(m_capacity); }

// Ownership of the block -----------------------------------------------------------------------

void DataBuffer::release() {
  if (!m_borrowed) ckFreeBlock(CkBlock(m_data), m_capacity, m_secure);
  dropData();
}

void DataBuffer::adopt(CkBlock block, std::uint32_t size, std::uint32_t capacity) {
  release();
  m_data = block.release();
  m_size = size;
  m_capacity = capacity;
}

void DataBuffer::dropData() {
  m_data = nullptr;
  m_size = 0;
  m_capacity = 0;
  m_borrowed = false;
}

CkBlock DataBuffer::removeData() {
  if (!isAlive() || (m_borrowed && !reallocate(m_capacity))) return nullptr;
  CkBlock block(m_data);
  dropData();
  return block;
}

bool DataBuffer::reallocate(std::uint64_t n) {
  if (n == 0 || ck64_TooBigForUnsigned32(n)) return false;
  CkBlock block = ckNewUnsignedChar(n);
  if (block == nullptr) return false;
  const std::uint32_t used = std::min(m_size, static_cast<std::uint32_t>(n));
  if (used != 0) std::memcpy(block.get(), m_data, used);
  adopt(std::move(block), used, static_cast<std::uint32_t>(n));
  return true;
}

bool DataBuffer::expandBuffer(std::uint32_t n) {
  constexpr std::uint32_t kLastResort = 400;
  const std::uint64_t step = growthStep(m_size, n);
  if (ck64_TooBigForUnsigned32(m_size + step)) return false;
  if (reallocate(m_size + step)) return true;
  return step > std::uint64_t{n} + kLastResort &&
         reallocate(std::uint64_t{m_size} + n + kLastResort);
}

bool DataBuffer::contains(const void* p) const {
  if (m_data == nullptr) return false;
  const void* const begin = m_data;
  const void* const end = m_data + m_capacity;
  return !std::less<>{}(p, begin) && std::less<>{}(p, end);
}

void DataBuffer::borrowData(void* p, std::uint32_t n) {
  if (!isAlive()) return;
  unsigned char* const bytes = static_cast<unsigned char*>(p);
  if (!m_borrowed && contains(p)) {
    const std::uint32_t offset = static_cast<std::uint32_t>(bytes - m_data);
    m_size = std::min(n, m_capacity - offset);
    std::memmove(m_data, bytes, m_size);
    return;
  }
  release();
  if (p == nullptr) return;
  m_data = bytes;
  m_size = n;
  m_capacity = n;
  m_borrowed = true;
}

void DataBuffer::takeData(DataBuffer& source) {
  if (&source == this || !isAlive()) return;
  if (source.empty()) {
    clear();
    return;
  }
  m_secure = m_secure || source.m_secure;
  if (source.m_borrowed) {
    borrowData(source.m_data, source.m_size);
    source.dropData();
  } else {
    const std::uint32_t size = source.m_size;
    const std::uint32_t capacity = source.m_capacity;
    adopt(source.removeData(), size, capacity);
  }
}

void DataBuffer::takeData(CkBlock block, std::uint32_t n) { takeData2(std::move(block), n, n); }

void DataBuffer::takeData2(CkBlock block, std::uint32_t size, std::uint32_t capacity) {
  if (!isAlive()) return;
  if (block == nullptr) {
    release();
  } else {
    adopt(std::move(block), std::min(size, capacity), capacity);
  }
}

bool DataBuffer::takeString(StringBuffer& text) {
  const std::uint32_t size = text.getSize();
  std::uint32_t capacity = 0;
  CkBlock block = isAlive() ? text.extractString2(capacity) : nullptr;
  if (block == nullptr) return false;
  m_secure = m_secure || text.getSecureBuf();
  takeData2(std::move(block), size, capacity);
  return true;
}

bool DataBuffer::copy(const DataBuffer& other) {
  if (!isAlive()) return false;
  if (&other == this) return true;
  // The other one may have borrowed from this block.
  CkBlock block = other.m_capacity == 0 ? nullptr : ckNewUnsignedChar(other.m_capacity);
  if (block != nullptr && other.m_size != 0) std::memcpy(block.get(), other.m_data, other.m_size);
  const bool copied = block != nullptr || other.m_capacity == 0;
  takeData2(std::move(block), other.m_size, other.m_capacity);
  return copied;
}

bool DataBuffer::copyData(const void* p, std::uint32_t n) {
  if (!isAlive()) return false;
  if (p == nullptr || n == 0) {
    release();
    return true;
  }
  CkBlock block = ckNewUnsignedChar(n);
  if (block != nullptr) std::memcpy(block.get(), p, n);
  takeData2(std::move(block), n, n);
  return m_data != nullptr;
}

void DataBuffer::swapData(DataBuffer& other) {
  if (!isAlive() || !other.isAlive()) return;
  std::swap(m_size, other.m_size);
  std::swap(m_capacity, other.m_capacity);
  std::swap(m_borrowed, other.m_borrowed);
  std::swap(m_data, other.m_data);
  std::swap(m_secure, other.m_secure);
}

bool DataBuffer::prepForSbTake() {
  if (!isAlive()) return false;
  if (lastByte() != 0 || empty()) {
    return m_size != kNotFound && ensureBuffer(m_size + 1) && appendChar('\0');
  }
  while (m_size > 1 && m_data[m_size - 2] == 0) --m_size;
  return true;
}

// Reading --------------------------------------------------------------------------------------

unsigned char* DataBuffer::getDataSafe4() {
  constexpr std::uint32_t kPlaceholder = 4;
  if (m_data == nullptr && reallocate(kPlaceholder)) std::memset(m_data, 0, kPlaceholder);
  return m_data;
}

unsigned char* DataBuffer::getDataAt2(std::uint32_t i) const {
  return i < m_size ? m_data + i : nullptr;
}

unsigned char DataBuffer::byteAt(std::uint32_t i) const { return i < m_size ? m_data[i] : 0; }

bool DataBuffer::equals2(const void* p, std::uint32_t n) const {
  return n == m_size && beginsWith(p, n);
}

bool DataBuffer::beginsWith(const void* p, std::uint32_t n) const {
  if (n > m_size) return false;
  return n == 0 || (p != nullptr && std::memcmp(m_data, p, n) == 0);
}

std::uint32_t DataBuffer::findBytes2(const void* p, std::uint32_t n, std::uint32_t start) const {
  if (p == nullptr || n == 0 || start >= m_size) return kNotFound;
  const void* const found = ::memmem(m_data + start, m_size - start, p, n);
  return found == nullptr
             ? kNotFound
             : static_cast<std::uint32_t>(static_cast<const unsigned char*>(found) - m_data);
}

bool DataBuffer::is7bit() const {
  return std::none_of(m_data, m_data + m_size, [](unsigned char c) { return c >= 0x80; });
}

// Adding ---------------------------------------------------------------------------------------

bool DataBuffer::append(const void* p, std::size_t n) {
  if (!isAlive()) return false;
  if (p == nullptr || n == 0) return true;
  if (ck64_TooBigForUnsigned32(n) || ck64_TooBigForUnsigned32(std::uint64_t{m_size} + n)) {
    return false;
  }
  const std::uint32_t added = static_cast<std::uint32_t>(n);
  const unsigned char* piece = static_cast<const unsigned char*>(p);
  if (m_size + added > m_capacity) {
    // The piece may be a part of the block that is about to move.
    const bool ownPiece = contains(piece);
    const std::ptrdiff_t offset = ownPiece ? piece - m_data : 0;
    if (ownPiece && offset + added > m_size) return false;
    if (!expandBuffer(added)) return false;
    if (ownPiece) piece = m_data + offset;
  }
  std::memmove(m_data + m_size, piece, added);
  m_size += added;
  return true;
}

bool DataBuffer::append(const DataBuffer& bytes) { return append(bytes.m_data, bytes.m_size); }

bool DataBuffer::append(const StringBuffer& text) {
  return append(text.getString(), text.getSize());
}

bool DataBuffer::appendStr(const char* text) {
  return text == nullptr || append(text, std::strlen(text));
}

bool DataBuffer::push_back(unsigned char c) {
  if (!isAlive()) return false;
  if (m_size == m_capacity && !reallocate(capacityForOneMore(m_size))) return false;
  m_data[m_size++] = c;
  return true;
}

bool DataBuffer::appendChar(char c) { return push_back(static_cast<unsigned char>(c)); }

bool DataBuffer::appendChar2(char a, char b) {
  if (!isAlive()) return false;
  const bool fits = std::uint64_t{m_size} + 2 <= m_capacity;
  return (fits || reallocate(capacityForOneMore(m_size))) && appendChar(a) && appendChar(b);
}

bool DataBuffer::appendCharN(char c, std::uint32_t n) {
  constexpr std::uint32_t kSlack = 10'000;
  if (!isAlive()) return false;
  const std::uint64_t need = std::uint64_t{m_size} + n;
  if (need > m_capacity && !reallocate(need + kSlack)) return false;
  if (n != 0) std::memset(m_data + m_size, c, n);
  m_size += n;
  return true;
}

unsigned char* DataBuffer::getAppendPtr(std::uint32_t n) {
  const std::uint64_t need = std::uint64_t{m_size} + n + 1;
  if (!isAlive()) return nullptr;
  if (ck64_TooBigForUnsigned32(need)) return nullptr;
  if (need > m_capacity && !expandBuffer(n + 1)) return nullptr;
  return m_data + m_size;
}

void DataBuffer::addToSize(std::uint32_t n) {
  if (isAlive()) m_size += std::min(n, m_capacity - m_size);
}

void DataBuffer::setDataSize_CAUTION(std::uint32_t n) {
  if (isAlive()) m_size = std::min(n, m_capacity);
}

bool DataBuffer::prepend(const void* p, std::uint32_t n) { return insertAt(0, p, n); }

bool DataBuffer::insertAt(std::uint32_t pos, const void* p, std::uint32_t n) {
  if (!isAlive()) return false;
  if (p == nullptr || n == 0) return true;
  const std::uint32_t oldSize = m_size;
  if (!append(p, n)) return false;
  if (pos < oldSize) std::rotate(m_data + pos, m_data + oldSize, m_data + m_size);
  return true;
}

// Reserving and removing -------------------------------------------------------------------------

bool DataBuffer::ensureBuffer(std::uint32_t n) {
  return isAlive() && (n <= m_capacity || reallocate(n));
}

void DataBuffer::shorten(std::uint32_t n) {
  if (isAlive()) m_size -= std::min(n, m_size);
}

bool DataBuffer::resize(std::uint32_t n) {
  if (!isAlive()) return false;
  if (n > m_size) return ensureBuffer(n) && appendCharN('\0', n - m_size);
  m_size = n;
  return true;
}

bool DataBuffer::removeChunk(int pos, int n) {
  if (!isAlive() || pos < 0) return false;
  const std::uint32_t from = static_cast<std::uint32_t>(pos);
  if (n < 1 || from >= m_size) return true;
  const std::uint32_t removed = std::min(static_cast<std::uint32_t>(n), m_size - from);
  std::memmove(m_data + from, m_data + from + removed, m_size - from - removed);
  m_size -= removed;
  return true;
}

void DataBuffer::removeHead(std::uint32_t n) {
  if (!isAlive()) return;
  const std::uint32_t removed = std::min(n, m_size);
  m_size -= removed;
  if (m_size != 0) std::memmove(m_data, m_data + removed, m_size);
}

void DataBuffer::clear() {
  if (!isAlive()) return;
  if (m_borrowed) dropData();
  m_size = 0;
}

void DataBuffer::clearWithDeallocate() {
  if (isAlive()) release();
}

void DataBuffer::secureClear() {
  if (!isAlive()) return;
  ckWipe(m_data, m_size);
  m_size = 0;
}

void DataBuffer::secureClearWithDeallocate() {
  if (!isAlive()) return;
  secureClear();
  release();
}

void DataBuffer::clearBuffer() {
  if (isAlive()) ckWipe(m_data, m_capacity);
}

bool DataBuffer::minimizeMemoryUsage() { return minimizeMemoryUsage2(0); }

bool DataBuffer::minimizeMemoryUsage2(std::uint32_t keep) {
  constexpr std::uint32_t kSlack = 4;
  if (!isAlive()) return false;
  if (m_borrowed || m_capacity - m_size <= std::max(keep, kSlack)) return true;
  return reallocate(m_size + kSlack);
}
