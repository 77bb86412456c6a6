#pragma once

#include "ClsBase.h"

class XString;

/// Behind CkFileAccess.
class ClsFileAccess : public ClsBase {
 public:
  /// Null if memory is short. End it with deleteSelf().
  static ClsFileAccess* createNewCls();

  /// What the path names (FileSys::PathType); a link counts as what it leads to.
  int FileType(XString& path);

 private:
  ClsFileAccess() = default;
  ~ClsFileAccess() override = default;
};
