#include "WholeText.h"

#include <new>

#include "CkString.h"

namespace {

/// A copy of a form of `text`.
template <typename Unit>
std::basic_string<Unit> copied(const CkString& text, const Unit* form) {
  if (!text.isWhole()) throw std::bad_alloc();
  return form;
}

}  // namespace

std::string ansiOf(const CkString& text) { return copied(text, text.getAnsi()); }

std::string utf8Of(const CkString& text) { return copied(text, text.getUtf8()); }

std::string ansiOf(const std::string& utf8) {
  CkString text;
  text.setStringUtf8(utf8.c_str());
  return ansiOf(text);
}

std::wstring wideOf(const std::string& utf8) {
  CkString text;
  text.setStringUtf8(utf8.c_str());
  return copied(text, text.getUnicode());
}
