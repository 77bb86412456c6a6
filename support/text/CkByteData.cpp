#include "CkByteData.h"

void CkByteData::clear() { bytes_.clear(); }

unsigned long CkByteData::getSize() const { return bytes_.size(); }

const unsigned char* CkByteData::getBytes() const {
  static constexpr unsigned char kNothing = 0;
  return bytes_.empty() ? &kNothing : bytes_.data();
}

void CkByteData::append2(const void* p, unsigned long n) {
  if (p == nullptr) return;
  const auto* first = static_cast<const unsigned char*>(p);
  bytes_.insert(bytes_.end(), first, first + n);
}
