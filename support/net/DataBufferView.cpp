#include "DataBufferView.h"

#include <algorithm>

bool DataBufferView::append(const void* p, std::uint32_t n) {
  if (m_taken != 0) {
    m_bytes.removeHead(m_taken);
    m_taken = 0;
  }
  return m_bytes.append(p, n);
}

bool DataBufferView::takeFront(std::uint32_t n, DataBuffer& out) {
  n = std::min(n, getViewSize());
  if (n == 0) return true;
  if (!out.append(m_bytes.getDataAt2(m_taken), n)) return false;
  m_taken += n;
  if (getViewSize() == 0) clear();
  return true;
}

void DataBufferView::clear() {
  m_bytes.clear();
  m_taken = 0;
}
