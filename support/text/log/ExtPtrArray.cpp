#include "ExtPtrArray.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "Psdk.h"

ExtPtrArray::~ExtPtrArray() {
  if (m_ownsObjects) {
    m_keepObjects = false;
    removeAllObjects();
  }
}

KestrumObject* ExtPtrArray::elementAt(int i) const {
  if (!isKestrumObject() || !isIndex(i)) return nullptr;
  KestrumObject* object = m_items[static_cast<std::size_t>(i)];
  if (object != nullptr && !object->isKestrumObject()) {
    Psdk::badObjectFound();
    return nullptr;
  }
  return object;
}

// The step follows the capacity, so that the array doubles until it grows by 100,000 at a time.
bool ExtPtrArray::incrementSize() {
  if (m_size < m_capacity) {
    ++m_size;
    return true;
  }
  int capacity = kFirstCapacity;
  if (m_items != nullptr) {
    if (m_capacity > std::numeric_limits<int>::max() - m_growStep) return false;
    capacity = std::max(m_capacity + m_growStep, m_size + 2);
  }
  std::unique_ptr<KestrumObject*[]> larger(
      new (std::nothrow) KestrumObject*[static_cast<std::size_t>(capacity)]());
  if (larger == nullptr) return false;
  const bool grew = m_items != nullptr;
  std::copy_n(m_items.get(), m_size, larger.get());
  m_items = std::move(larger);
  m_capacity = capacity;
  if (grew && m_growStep < kLargestStep) m_growStep = std::min(m_capacity, kLargestStep);
  ++m_size;
  return true;
}

bool ExtPtrArray::appendPtr(KestrumObject* object) {
  if (!incrementSize()) return false;
  if (object != nullptr && !object->isKestrumObject()) {
    Psdk::badObjectFound();
    return false;
  }
  m_items[static_cast<std::size_t>(m_size - 1)] = object;
  return true;
}

bool ExtPtrArray::insertAt(int i, KestrumObject* object) {
  if (i < 0 || !appendPtr(object)) return false;
  if (i >= m_size - 1) return true;
  KestrumObject** items = m_items.get();
  std::rotate(items + i, items + m_size - 1, items + m_size);
  return true;
}

bool ExtPtrArray::setAt(int i, KestrumObject* object) {
  if (!isIndex(i) || (object != nullptr && !object->isKestrumObject())) return false;
  m_items[static_cast<std::size_t>(i)] = object;
  return true;
}

KestrumObject* ExtPtrArray::removeAt(int i) {
  if (!isKestrumObject() || !isIndex(i)) return nullptr;
  KestrumObject** items = m_items.get();
  KestrumObject* object = elementAt(i);
  std::copy(items + i + 1, items + m_size, items + i);
  items[--m_size] = nullptr;
  return object;
}

void ExtPtrArray::discardFirstN(int n) {
  n = std::clamp(n, 0, m_size);
  KestrumObject** items = m_items.get();
  std::copy(items + n, items + m_size, items);
  std::fill(items + m_size - n, items + m_size, nullptr);
  m_size -= n;
}

void ExtPtrArray::trimNulls() {
  KestrumObject** items = m_items.get();
  KestrumObject** end = std::remove(items, items + m_size, nullptr);
  std::fill(end, items + m_size, nullptr);
  m_size = static_cast<int>(end - items);
}

void ExtPtrArray::removeAll() {
  std::fill_n(m_items.get(), m_size, nullptr);
  m_size = 0;
}

void ExtPtrArray::removeAllObjects() {
  if (!m_keepObjects) {
    for (int i = 0; i < m_size; ++i) {
      // A destructor may look at the array: it finds no pointer to what is being deleted.
      deleteObject(std::exchange(m_items[static_cast<std::size_t>(i)], nullptr));
    }
  }
  removeAll();
}

bool ExtPtrArray::transferPtrs(ExtPtrArray& source) {
  if (&source == this) return true;
  for (int i = 0; i < source.m_size; ++i) {
    const int before = m_size;
    if (!appendPtr(source.m_items[static_cast<std::size_t>(i)])) {
      m_size = before;  // without the place of an object that was refused
      source.discardFirstN(i);
      return false;
    }
  }
  source.removeAll();
  return true;
}

bool ExtPtrArray::swap(int a, int b) {
  if (!isIndex(a) || !isIndex(b)) return false;
  std::swap(m_items[static_cast<std::size_t>(a)], m_items[static_cast<std::size_t>(b)]);
  return true;
}

bool ExtPtrArray::movePtr(int from, int to) {
  if (!isIndex(from) || !isIndex(to)) return false;
  KestrumObject** items = m_items.get();
  if (from < to) {
    std::rotate(items + from, items + from + 1, items + to + 1);
  } else {
    std::rotate(items + to, items + from, items + from + 1);
  }
  return true;
}

void ExtPtrArray::sortExtArray(Less less) {
  std::stable_sort(m_items.get(), m_items.get() + m_size, less);
}
