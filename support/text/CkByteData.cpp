#include "CkByteData.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "CkSettings.h"
#include "CkString.h"
#include "DataBuffer.h"
#include "RandomBytes.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

/// Sizes of the handle narrowed to those of the buffer; what doesn't fit is beyond any buffer.
std::uint32_t narrow(unsigned long n) {
  return static_cast<std::uint32_t>(std::min<unsigned long>(n, DataBuffer::kNotFound));
}

template <typename Number>
Number numberAt(const DataBuffer* bytes, unsigned long index) {
  Number value = 0;
  if (bytes != nullptr && index <= bytes->getSize() && bytes->getSize() - index >= sizeof value) {
    std::memcpy(&value, bytes->getData2() + index, sizeof value);
  }
  return value;
}

}  // namespace

CkByteData::CkByteData() : m_impl(new (std::nothrow) DataBuffer), m_utf8(newHandlesReadUtf8()) {}

CkByteData::CkByteData(const CkByteData& other)
    : m_impl(new (std::nothrow) DataBuffer), m_utf8(other.m_utf8) {
  put_SecureClear(other.m_secure);
  append(other);
}

CkByteData& CkByteData::operator=(const CkByteData& other) {
  if (&other != this && m_impl != nullptr && other.m_impl != nullptr) {
    DataBuffer copy;
    copy.setSecure(m_secure || other.m_secure);
    if (copy.copyData(other.m_impl->getData2(), other.m_impl->getSize())) {
      m_impl->clearWithDeallocate();
      m_impl->takeData(copy);
    }
  }
  return *this;
}

CkByteData::~CkByteData() = default;

bool CkByteData::get_Utf8() const { return m_utf8; }

void CkByteData::put_Utf8(bool utf8) { m_utf8 = utf8; }

bool CkByteData::get_SecureClear() const { return m_secure; }

DataBuffer* CkByteData::getImpl() const { return m_impl.get(); }

void CkByteData::put_SecureClear(bool secure) {
  m_secure = secure;
  if (m_impl != nullptr) m_impl->setSecure(secure);
  if (m_result != nullptr) m_result->setSecure(secure);
}

void CkByteData::setImpl(std::unique_ptr<DataBuffer> impl) {
  if (impl == nullptr) return;
  m_impl = std::move(impl);
  if (m_secure) m_impl->setSecure(true);
}

DataBuffer* CkByteData::writable() {
  if (m_impl == nullptr) {
    m_impl.reset(new (std::nothrow) DataBuffer);
    put_SecureClear(m_secure);
  }
  return m_impl.get();
}

void CkByteData::clear() {
  if (m_impl != nullptr) m_impl->clearWithDeallocate();
}

unsigned long CkByteData::getSize() const { return m_impl == nullptr ? 0 : m_impl->getSize(); }

const unsigned char* CkByteData::getBytes() const {
  return m_impl == nullptr ? nullptr : m_impl->getDataSafe4();
}

const char* CkByteData::getData() const { return reinterpret_cast<const char*>(getBytes()); }

// Writing --------------------------------------------------------------------------------------

bool CkByteData::append2(const void* p, unsigned long n) {
  DataBuffer* const bytes = writable();
  return bytes != nullptr && bytes->append(p, n);
}

bool CkByteData::append(const CkByteData& other) {
  return other.m_impl == nullptr || append2(other.m_impl->getData2(), other.m_impl->getSize());
}

bool CkByteData::appendRange(const CkByteData& other, unsigned long index, unsigned long n) {
  const unsigned char* const from = other.getDataAt(index);
  return from == nullptr || append2(from, std::min(n, other.getSize() - index));
}

bool CkByteData::appendChar(char c) {
  DataBuffer* const bytes = writable();
  return bytes != nullptr && bytes->appendChar(c);
}

bool CkByteData::appendCharN(char c, int n) {
  DataBuffer* const bytes = writable();
  return bytes != nullptr && (n <= 0 || bytes->appendCharN(c, static_cast<std::uint32_t>(n)));
}

bool CkByteData::appendStr(const char* text) {
  return text == nullptr || append2(text, std::strlen(text));
}

bool CkByteData::appendInt(int value) { return append2(&value, sizeof value); }

bool CkByteData::appendShort(short value) { return append2(&value, sizeof value); }

bool CkByteData::appendRandom(int n) {
  DataBuffer* const bytes = writable();
  return bytes != nullptr && appendRandomBytes(n, *bytes);
}

bool CkByteData::appendFile(const char* path) {
  DataBuffer content;
  content.setSecure(m_secure);
  return load(path, content) && append2(content.getData2(), content.getSize());
}

bool CkByteData::appendEncoded(const char* text, const char* encoding) {
  DataBuffer* const bytes = writable();
  return bytes != nullptr && bytes->appendEncoded(text, encoding);
}

bool CkByteData::ensureBuffer(unsigned long n) {
  DataBuffer* const bytes = writable();
  return bytes != nullptr && n <= std::numeric_limits<std::uint32_t>::max() &&
         bytes->ensureBuffer(narrow(n));
}

bool CkByteData::preAllocate(unsigned long n) { return ensureBuffer(n); }

void CkByteData::borrowData(void* p, unsigned long n) {
  DataBuffer* const bytes = writable();
  if (bytes != nullptr) bytes->borrowData(p, narrow(n));
}

// Reading --------------------------------------------------------------------------------------

unsigned char CkByteData::getByte(unsigned long index) const {
  return numberAt<unsigned char>(m_impl.get(), index);
}

char CkByteData::getChar(unsigned long index) const { return numberAt<char>(m_impl.get(), index); }

short CkByteData::getShort(unsigned long index) const {
  return numberAt<short>(m_impl.get(), index);
}

unsigned short CkByteData::getUShort(unsigned long index) const {
  return numberAt<unsigned short>(m_impl.get(), index);
}

int CkByteData::getInt(unsigned long index) const { return numberAt<int>(m_impl.get(), index); }

unsigned int CkByteData::getUInt(unsigned long index) const {
  return numberAt<unsigned int>(m_impl.get(), index);
}

const unsigned char* CkByteData::getDataAt(unsigned long index) const {
  return m_impl == nullptr ? nullptr : m_impl->getDataAt2(narrow(index));
}

bool CkByteData::getRange(unsigned long index, unsigned long n, CkByteData& out) const {
  CkByteData range;
  range.put_SecureClear(m_secure);
  if (!range.appendRange(*this, index, n)) return false;
  out.clear();
  out.takeByteData(range);
  return true;
}

const char* CkByteData::resultOf(unsigned long index, unsigned long n, const char* encoding) {
  if (m_impl == nullptr) return nullptr;
  if (m_result == nullptr) m_result.reset(new (std::nothrow) DataBuffer);
  if (m_result == nullptr) return nullptr;
  m_result->setSecure(m_secure);
  m_result->clear();
  DataBuffer range;
  range.borrowData(const_cast<unsigned char*>(getDataAt(index)),
                   narrow(index < getSize() ? std::min(n, getSize() - index) : 0));
  StringBuffer text;
  text.setSecureBuf(m_secure);
  const bool made = encoding == nullptr ? m_result->append(range)
                                        : range.encodeDB(encoding, text) && m_result->append(text);
  return made && m_result->appendChar('\0') ? reinterpret_cast<const char*>(m_result->getData2())
                                            : nullptr;
}

const char* CkByteData::getRangeStr(unsigned long index, unsigned long n) {
  return resultOf(index, n, nullptr);
}

const char* CkByteData::getEncodedRange(const char* encoding, unsigned long index,
                                        unsigned long n) {
  return resultOf(index, n, encoding == nullptr ? "" : encoding);
}

const char* CkByteData::getEncoded(const char* encoding) {
  return getEncodedRange(encoding, 0, getSize());
}

const char* CkByteData::to_s() { return getRangeStr(0, getSize()); }

void CkByteData::encode(const char* encoding, CkString& out) const {
  if (m_impl == nullptr) return;
  StringBuffer text;
  text.setSecureBuf(m_secure);
  if (m_impl->encodeDB(encoding, text)) {
    out.setStringUtf8(text.getString());
  } else if (out.getImpl() != nullptr) {
    out.getImpl()->noteShortage();
  }
}

bool CkByteData::equals(const CkByteData& other) const {
  return other.m_impl != nullptr && equals2(other.m_impl->getData2(), other.getSize());
}

bool CkByteData::equals2(const void* p, unsigned long n) const {
  return m_impl != nullptr && n == m_impl->getSize() && m_impl->equals2(p, narrow(n));
}

bool CkByteData::beginsWith(const CkByteData& other) const {
  return other.m_impl != nullptr && beginsWith2(other.m_impl->getData2(), other.getSize());
}

bool CkByteData::beginsWith2(const void* p, unsigned long n) const {
  return m_impl != nullptr && n <= m_impl->getSize() && m_impl->beginsWith(p, narrow(n));
}

int CkByteData::findBytes(const CkByteData& wanted) const {
  return wanted.m_impl == nullptr
             ? -1
             : static_cast<int>(findBytes2(wanted.m_impl->getData2(), wanted.getSize()));
}

unsigned long CkByteData::findBytes2(const void* p, unsigned long n) const {
  return m_impl == nullptr ? DataBuffer::kNotFound : m_impl->findBytes2(p, narrow(n));
}

bool CkByteData::is7bit() const { return m_impl != nullptr && m_impl->is7bit(); }

// Reshaping ------------------------------------------------------------------------------------

void CkByteData::shorten(unsigned long n) {
  if (m_impl != nullptr) m_impl->shorten(narrow(n));
}

void CkByteData::removeChunk(unsigned long index, unsigned long n) {
  constexpr unsigned long kMost = std::numeric_limits<int>::max();
  if (m_impl != nullptr && index <= kMost) {
    m_impl->removeChunk(static_cast<int>(index), static_cast<int>(std::min(n, kMost)));
  }
}

void CkByteData::replaceChar(unsigned char from, unsigned char to) {
  if (m_impl != nullptr) m_impl->replaceChar(from, to);
}

void CkByteData::byteSwap4321() {
  if (m_impl != nullptr) m_impl->byteSwap4321();
}

void CkByteData::takeByteData(CkByteData& other) {
  DataBuffer* const bytes = writable();
  if (bytes != nullptr && other.m_impl != nullptr) bytes->takeData(*other.m_impl);
}

bool CkByteData::loadFile(const char* path) {
  DataBuffer* const bytes = writable();
  return bytes != nullptr && load(path, *bytes);
}

bool CkByteData::load(const char* path, DataBuffer& out) const {
  XString text;
  text.setFromDual(path, m_utf8);
  const char* const utf8 = text.getUtf8();
  return text.isWhole() && out.loadFileUtf8(utf8, nullptr);
}

bool CkByteData::saveFile(const char* path) const {
  XString text;
  text.setFromDual(path, m_utf8);
  const char* const utf8 = text.getUtf8();
  return text.isWhole() && m_impl != nullptr && m_impl->saveToFileUtf8(utf8, nullptr);
}
