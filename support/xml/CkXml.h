#pragma once

#include "CkMultiByteBase.h"
#include "PublicApi.h"

class CkString;
class ClsXml;

/// A cursor on a parsed document. It begins on an empty document with the root "unnamed".
///
///     CkXml xml;
///     CkString host;
///     if (xml.LoadXmlFile("settings.xml") && xml.FindChild2("SCALES1")) {
///       xml.GetAttrValue("fHost", host);
///       const int port = xml.GetAttrValueInt("fTCPPort");
///     }
///
/// The handle owns the document, and the next successful LoadXmlFile() or the destructor frees it;
/// what is read is copied into the caller's own objects. No call requires another one first, and
/// none throws: one that finds no memory fails. What the last call did, and why it failed, stands
/// in lastErrorText().
///
/// `const char*` arguments are ANSI, or UTF-8 after put_Utf8(true); null counts as an empty text.
/// White space around a path, tag or name doesn't count. A handle without its inner object answers
/// each call with the failure value. One thread at a time.
class ORBELO_PUBLIC CkXml : public CkMultiByteBase {
 public:
  CkXml();
  ~CkXml() override;

  /// Reads a document and moves to its root. It may be UTF-8, UTF-16 with its byte order mark, or
  /// in the character set that its declaration names. Broken documents give what can be read of
  /// them, down to an empty root "empty". False, with the cursor where it was, only if the file
  /// can't be read or has no byte.
  bool LoadXmlFile(const char* path);
  /// Moves to the root.
  void GetRoot2();
  /// Moves to the first direct child of that tag, whose case counts; false leaves the cursor where
  /// it is.
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
