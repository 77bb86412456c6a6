#pragma once

#include "PublicApi.h"

/// Questions about paths.
class ORBELO_PUBLIC CkFileAccess {
 public:
  /// Whether paths are read as UTF-8; otherwise they are in the ANSI code page.
  void put_Utf8(bool utf8) { utf8_ = utf8; }
  /// What `path` names: 1 file, 2 directory, 99 other, 0 absent, -1 error.
  int FileType(const char* path);

 private:
  bool utf8_ = false;
};
