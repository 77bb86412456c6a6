#include "FileSys.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "LogBase.h"
#include "Psdk.h"
#include "XString.h"

int FileSys::filePathType(XString& path, bool noFollowLinks, LogBase& log) {
  struct stat info = {};
  const char* const utf8 = path.getUtf8();
  const int result = noFollowLinks ? Psdk::ck_lstat(utf8, &info) : Psdk::ck_stat(utf8, &info);
  if (result != 0) {
    log.LogLastErrorOS();
    bool failed = false;
    const bool exists = fileExistsX(path, failed, &log) != 0;
    return exists || failed ? kPathUnknown : kNoPath;
  }
  if (S_ISREG(info.st_mode)) return kPathFile;
  if (S_ISDIR(info.st_mode)) return kPathDirectory;
  return S_ISLNK(info.st_mode) ? kPathLink : kPathOther;
}

int FileSys::fileExistsX(XString& path, bool& failed, LogBase* log) {
  failed = false;
  if (path.isEmpty()) return 0;
  struct stat info = {};
  if (Psdk::ck_stat(path.getUtf8(), &info) == 0) return 1;
  if (errno == ENOENT) {
    if (log != nullptr) log->LogInfo("File not found using utf-8 filepath");
    return 0;
  }
  // Without blocking: the path may lead to a pipe.
  const int file = ::open(path.getUtf8(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file >= 0) {
    ::close(file);
    return 1;
  }
  failed = true;
  if (log != nullptr) log->LogError("Unable to open the file for read-only");
  return 0;
}
