#pragma once

#include "CkMultiByteBase.h"
#include "PublicApi.h"

class CkString;
class ClsXml;

/// A cursor on a parsed document. It begins on an empty document with the root "unnamed". What an
/// operation did and why it failed stands in lastErrorText().
///
/// `const char*` arguments are ANSI, or UTF-8 after put_Utf8(true); null counts as an empty text.
/// A handle without its inner object answers each call with the failure value.
class ORBELO_PUBLIC CkXml : public CkMultiByteBase {
 public:
  CkXml();
  ~CkXml() override;

  /// Reads a document and moves to its root. It may be UTF-8, or UTF-16 or UTF-32 with its mark
  /// or its NUL bytes, or what its declaration names. Broken documents give what can be read of
  /// them. False, with the cursor where it was, if the file can't be read or is empty.
  bool LoadXmlFile(const char* path);
  /// Moves to the root.
  void GetRoot2();
  /// Moves to the first direct child of that tag; false leaves the cursor where it is.
  bool FindChild2(const char* tag);
  /// Gives an attribute's text. True also for an empty value; false, with `out` empty, if there
  /// is no such attribute.
  bool GetAttrValue(const char* name, CkString& out);
  /// The number that the attribute's text begins with; 0 if it doesn't or there is no such
  /// attribute, -1 on a handle without its inner object.
  int GetAttrValueInt(const char* name);

 private:
  ClsXml* impl() const;
};
