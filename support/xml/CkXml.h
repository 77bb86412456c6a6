#pragma once

#include <memory>
#include <string>

#include "CkString.h"
#include "PublicApi.h"

struct XmlElement;

/// A cursor on a parsed document. Texts of the document are UTF-8.
class ORBELO_PUBLIC CkXml {
 public:
  CkXml();
  ~CkXml();
  CkXml(const CkXml&) = delete;
  CkXml& operator=(const CkXml&) = delete;

  /// Whether `const char*` arguments are read as UTF-8; otherwise they are in the ANSI code page.
  void put_Utf8(bool utf8) { utf8_ = utf8; }

  /// Reads and parses the file. False if it can't be read or holds no element.
  bool LoadXmlFile(const char* path);
  /// Moves the cursor to the root.
  void GetRoot2();
  /// Moves the cursor to the first direct child of that tag; false leaves it where it is.
  bool FindChild2(const char* tag);
  /// Gives an attribute's text; false, with `out` empty, if there is none.
  bool GetAttrValue(const char* name, CkString& out);
  /// The attribute's decimal value, 0 if there is none.
  int GetAttrValueInt(const char* name);

 private:
  std::string toUtf8(const char* text) const;

  bool utf8_ = false;
  std::unique_ptr<XmlElement> root_;
  const XmlElement* cursor_;
};
