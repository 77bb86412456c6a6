#pragma once

/// Tells a live object from one that has ended or was overwritten: the member is `kAlive` from
/// construction on, and its destructor leaves `kGone` in the memory. One of `Word`'s size, to be
/// asked at the entry of what a stale pointer may call. A copied object has a word of its own.
template <typename Word, Word kAlive, Word kGone = Word{0}>
class ValidityWord {
 public:
  ValidityWord() = default;
  ValidityWord(const ValidityWord& /*other*/) noexcept {}
  ValidityWord& operator=(const ValidityWord& /*other*/) noexcept { return *this; }
  // A plain store into an object that ends, and a load that could only see what the constructor
  // has stored, may be dropped by the compiler; volatile ones may not.
  ~ValidityWord() { *const_cast<volatile Word*>(&m_word) = kGone; }

  bool isAlive() const noexcept { return *const_cast<const volatile Word*>(&m_word) == kAlive; }

 private:
  Word m_word = kAlive;
};
