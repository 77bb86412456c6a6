#include "ClsFileAccess.h"

#include <new>

#include "FileSys.h"

ClsFileAccess* ClsFileAccess::createNewCls() {
  try {
    return new ClsFileAccess;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

int ClsFileAccess::FileType(XString& path) {
  const CritSecExitor lock(this);
  m_log.ClearLog();
  const LogContextExitor context(m_log, "FileType");
  logKestrumVersion(m_log);
  return FileSys::filePathType(path, false, m_log);
}
