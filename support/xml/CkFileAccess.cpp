#include "CkFileAccess.h"

#include <sys/stat.h>

#include <cerrno>

#include "CkString.h"

int CkFileAccess::FileType(const char* path) {
  if (path == nullptr || *path == 0) return 0;
  CkString text;
  if (utf8_) {
    text.setStringUtf8(path);
  } else {
    text.setString(path);
  }
  struct stat info = {};
  if (::stat(text.getUtf8(), &info) != 0) return errno == ENOENT ? 0 : -1;
  if (S_ISREG(info.st_mode)) return 1;
  if (S_ISDIR(info.st_mode)) return 2;
  return 99;
}
