#pragma once

#include <memory>

#include "KestrumObject.h"

/// A growable array of pointers to objects, null allowed. It owns what it points to only if it is
/// told so. Not locked: one thread at a time.
///
/// The log and the document tree append, read and pop; what moves, sorts and inserts is called by
/// nobody here yet.
class ExtPtrArray : public NonRefCountedObj {
 public:
  ExtPtrArray() = default;
  ~ExtPtrArray() override;

  /// The destructor deletes the objects.
  bool m_ownsObjects = false;
  /// removeAllObjects() forgets the objects instead of deleting them.
  bool m_keepObjects = false;

  // Reading: null for an index out of range, also for an object without its validity word --------

  int getSize() const { return m_size; }
  KestrumObject* elementAt(int i) const;
  KestrumObject* lastElement() const { return elementAt(m_size - 1); }

  // Adding: false if memory is short or the object has lost its validity word --------------------

  /// A pointer that is refused leaves a null in its place.
  bool appendPtr(KestrumObject* object);
  bool appendObject(KestrumObject* object) { return appendPtr(object); }
  /// A position past the end appends.
  bool insertAt(int i, KestrumObject* object);
  /// Puts the pointer into an existing place; what stood there is forgotten, not deleted.
  bool setAt(int i, KestrumObject* object);

  // Taking out: nothing is deleted but by removeAllObjects() -------------------------------------

  /// Returns the pointer and closes the gap.
  KestrumObject* removeAt(int i);
  KestrumObject* pop() { return removeAt(m_size - 1); }
  void discardFirstN(int n);
  void trimNulls();
  /// Forgets all pointers.
  void removeAll();
  /// Deletes all objects.
  void removeAllObjects();
  /// Appends all pointers of the other array, which is left empty.
  bool transferPtrs(ExtPtrArray& source);

  // Rearranging ---------------------------------------------------------------------------------

  bool swap(int a, int b);
  /// Takes the pointer out and puts it in again so that it stands at `to`.
  bool movePtr(int from, int to);
  /// Sorts by `less(a, b)`; equal objects keep their order.
  using Less = bool (*)(const KestrumObject* a, const KestrumObject* b);
  void sortExtArray(Less less);

 private:
  static constexpr int kFirstCapacity = 5;
  static constexpr int kLargestStep = 100'000;

  bool isIndex(int i) const { return i >= 0 && i < m_size; }
  bool incrementSize();

  int m_growStep = kFirstCapacity;
  int m_capacity = 0;
  int m_size = 0;
  std::unique_ptr<KestrumObject*[]> m_items;
};
