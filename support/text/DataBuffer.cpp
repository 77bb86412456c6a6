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
  if (m_secure && !m_borrowed) secureClear();
  release();
}

int DataBuffer::heapUsage() { return m_borrowed ? 0 : static_cast<int>(m_capacity); }

// Ownership of the block -----------------------------------------------------------------------

void DataBuffer::release() {
  if (!m_borrowed) delete[] m_data;
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
  if (m_borrowed && !reallocate(m_capacity)) return nullptr;
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
  release();
  if (p == nullptr || n == 0) return;
  m_data = static_cast<unsigned char*>(p);
  m_size = n;
  m_capacity = n;
  m_borrowed = true;
}

void DataBuffer::takeData(DataBuffer& source) {
  if (&source == this) return;
  if (source.empty()) {
    clear();
    return;
  }
  release();
  m_data = source.m_data;
  m_size = source.m_size;
  m_capacity = source.m_capacity;
  m_borrowed = source.m_borrowed;
  source.dropData();
}

void DataBuffer::takeData(CkBlock block, std::uint32_t n) { takeData2(std::move(block), n, n); }

void DataBuffer::takeData2(CkBlock block, std::uint32_t size, std::uint32_t capacity) {
  if (block == nullptr) {
    release();
  } else {
    adopt(std::move(block), std::min(size, capacity), capacity);
  }
}

void DataBuffer::takeString(StringBuffer& text) {
  const std::uint32_t size = text.getSize();
  std::uint32_t capacity = 0;
  CkBlock block = text.extractString2(capacity);
  takeData2(std::move(block), size, capacity);
}

bool DataBuffer::copy(const DataBuffer& other) {
  if (&other == this) return true;
  release();
  if (other.m_capacity == 0) return true;
  if (!reallocate(other.m_capacity)) return false;
  return append(other);
}

bool DataBuffer::copyData(const void* p, std::uint32_t n) {
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
  std::swap(m_size, other.m_size);
  std::swap(m_capacity, other.m_capacity);
  std::swap(m_borrowed, other.m_borrowed);
  std::swap(m_data, other.m_data);
  std::swap(m_secure, other.m_secure);
}

bool DataBuffer::prepForSbTake() {
  if (lastByte() != 0 || empty()) {
    return m_size != kNotFound && ensureBufferWiping(m_size + 1) && appendChar('\0');
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
  if (p == nullptr || n == 0 || start > m_size) return kNotFound;
  const unsigned char* const wanted = static_cast<const unsigned char*>(p);
  const unsigned char* const from = m_data + start;
  const unsigned char* const end = m_data + m_size;
  const unsigned char* const found = std::search(from, end, wanted, wanted + n);
  return found == end ? kNotFound : static_cast<std::uint32_t>(found - m_data);
}

bool DataBuffer::is7bit() const {
  return std::none_of(m_data, m_data + m_size, [](unsigned char c) { return c >= 0x80; });
}

// Adding ---------------------------------------------------------------------------------------

bool DataBuffer::append(const void* p, std::size_t n) {
  if (!isValidObject()) {
    Psdk::badObjectFound();
    return false;
  }
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
  if (!isValidObject()) {
    Psdk::badObjectFound();
    return false;
  }
  if (m_size == m_capacity && !reallocate(capacityForOneMore(m_size))) return false;
  m_data[m_size++] = c;
  return true;
}

bool DataBuffer::appendChar(char c) { return push_back(static_cast<unsigned char>(c)); }

bool DataBuffer::appendChar2(char a, char b) { return appendChar(a) && appendChar(b); }

bool DataBuffer::appendCharN(char c, std::uint32_t n) {
  constexpr std::uint32_t kSlack = 10'000;
  if (!isValidObject()) {
    Psdk::badObjectFound();
    return false;
  }
  const std::uint64_t need = std::uint64_t{m_size} + n;
  if (need > m_capacity && !reallocate(need + kSlack)) return false;
  if (n != 0) std::memset(m_data + m_size, c, n);
  m_size += n;
  return true;
}

unsigned char* DataBuffer::getAppendPtr(std::uint32_t n) {
  const std::uint64_t need = std::uint64_t{m_size} + n + 1;
  if (ck64_TooBigForUnsigned32(need)) return nullptr;
  if (need > m_capacity && !expandBuffer(n + 1)) return nullptr;
  return m_data + m_size;
}

void DataBuffer::addToSize(std::uint32_t n) { m_size += std::min(n, m_capacity - m_size); }

void DataBuffer::setDataSize_CAUTION(std::uint32_t n) { m_size = std::min(n, m_capacity); }

bool DataBuffer::prepend(const void* p, std::uint32_t n) { return insertAt(0, p, n); }

bool DataBuffer::insertAt(std::uint32_t pos, const void* p, std::uint32_t n) {
  if (p == nullptr || n == 0) return true;
  const std::uint32_t oldSize = m_size;
  if (!append(p, n)) return false;
  if (pos < oldSize) std::rotate(m_data + pos, m_data + oldSize, m_data + m_size);
  return true;
}

// Reserving and removing -------------------------------------------------------------------------

bool DataBuffer::ensureBuffer(std::uint32_t n) { return n <= m_capacity || reallocate(n); }

bool DataBuffer::ensureBufferWiping(std::uint32_t n) {
  if (n <= m_capacity) return true;
  if (!m_secure || empty()) return reallocate(n);
  DataBuffer larger;
  if (!larger.reallocate(n)) return false;
  larger.append(*this);
  secureClearWithDeallocate();
  takeData(larger);
  return true;
}

void DataBuffer::shorten(std::uint32_t n) { m_size -= std::min(n, m_size); }

bool DataBuffer::resize(std::uint32_t n) {
  if (n > m_size) return ensureBuffer(n) && appendCharN('\0', n - m_size);
  m_size = n;
  return true;
}

bool DataBuffer::removeChunk(int pos, int n) {
  if (pos < 0) return false;
  const std::uint32_t from = static_cast<std::uint32_t>(pos);
  if (n < 1 || from >= m_size) return true;
  const std::uint32_t removed = std::min(static_cast<std::uint32_t>(n), m_size - from);
  std::memmove(m_data + from, m_data + from + removed, m_size - from - removed);
  m_size -= removed;
  return true;
}

void DataBuffer::removeHead(std::uint32_t n) {
  const std::uint32_t removed = std::min(n, m_size);
  m_size -= removed;
  if (m_size != 0) std::memmove(m_data, m_data + removed, m_size);
}

void DataBuffer::clear() {
  if (m_borrowed) dropData();
  m_size = 0;
}

void DataBuffer::clearWithDeallocate() { release(); }

void DataBuffer::secureClear() {
  ckWipe(m_data, m_size);
  m_size = 0;
}

void DataBuffer::secureClearWithDeallocate() {
  secureClear();
  release();
}

void DataBuffer::clearBuffer() { ckWipe(m_data, m_capacity); }

bool DataBuffer::minimizeMemoryUsage() { return minimizeMemoryUsage2(0); }

bool DataBuffer::minimizeMemoryUsage2(std::uint32_t keep) {
  constexpr std::uint32_t kSlack = 4;
  if (m_borrowed || m_capacity - m_size <= std::max(keep, kSlack)) return true;
  return reallocate(m_size + kSlack);
}
