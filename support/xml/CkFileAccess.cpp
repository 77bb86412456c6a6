#include "CkFileAccess.h"

#include "ClsFileAccess.h"
#include "XString.h"

CkFileAccess::CkFileAccess() : CkMultiByteBase(ClsFileAccess::createNewCls()) {}

CkFileAccess::~CkFileAccess() = default;

int CkFileAccess::FileType(const char* path) {
  auto* const impl = static_cast<ClsFileAccess*>(aliveBase());
  if (impl == nullptr) return -1;
  XString text;
  return setArgument(text, path) ? impl->FileType(text) : -1;
}
