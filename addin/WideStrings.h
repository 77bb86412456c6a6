#pragma once

#include <memory>

// The platform's texts have 16-bit units, `wchar_t` has 32 bits. A character above U+FFFF stays
// a pair of surrogates on the way in, one `wchar_t` each, and doesn't fit on the way out.

/// Units before the NUL; 0 for a null pointer.
unsigned getLenShortWcharStr(const unsigned short* source);

/// Converts `len` units (0: the whole text with its NUL) into `*dest`, which is allocated with
/// array new if it is null and must hold `len` units otherwise. Returns what was converted by.
unsigned convToShortWchar(unsigned short** dest, const wchar_t* source, unsigned len);
unsigned convFromShortWchar(wchar_t** dest, const unsigned short* source, unsigned len);

/// One text in both forms; both null for a null text.
class WcharWrapper {
 public:
  explicit WcharWrapper(const unsigned short* text);
  explicit WcharWrapper(const wchar_t* text);
  operator const unsigned short*() const { return m_str_utf16.get(); }
  const wchar_t* wide() const { return m_str_wide.get(); }

 private:
  std::unique_ptr<unsigned short[]> m_str_utf16;
  std::unique_ptr<wchar_t[]> m_str_wide;
};
