#pragma once

#include "CkMultiByteBase.h"
#include "PublicApi.h"

/// Questions about paths, without a state of their own:
///
///     if (CkFileAccess().FileType(folder) == 2) ...
///
/// `const char*` arguments are ANSI, or UTF-8 after put_Utf8(true).
class ORBELO_PUBLIC CkFileAccess : public CkMultiByteBase {
 public:
  CkFileAccess();
  ~CkFileAccess() override;

  /// What `path` names: 1 file, 2 directory, 99 other, 0 absent, -1 if it can't be told. A link
  /// counts as what it leads to.
  int FileType(const char* path);
};
