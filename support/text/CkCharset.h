#pragma once

#include "KestrumObject.h"
#include "StringBuffer.h"

/// A character set by name and number, with the wish for a byte order mark.
class _ckCharset : public KestrumObject {
 public:
  enum class Mark { Unset = 0, Wanted = 1, NotWanted = 2 };

  /// False for an unknown name, which leaves code page 0 and an empty name. A prefix "bom-" or
  /// "no-bom-" sets the wish for a mark. Null means ANSI.
  bool setByName(const char* name);
  bool setByCodePage(int codePage);
  /// 0 for none.
  int getCodePage() const { return m_codePage; }
  const char* getName() const { return m_name.getString(); }
  Mark getMark() const { return m_mark; }
  void clear();
  void copy(const _ckCharset& other);
  bool equals(const _ckCharset& other) const { return m_codePage == other.m_codePage; }

 private:
  StringBuffer m_name;
  int m_codePage = 0;
  Mark m_mark = Mark::Unset;
};
