// Status of files whose name may have come in another encoding than the file system's.

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "DataBuffer.h"
#include "Psdk.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

using Stat = int (*)(const char*, struct stat*);

/// Bytes above 7 bits are looked for in this much of a path.
constexpr std::size_t kLookForHighBytesIn = 400;

bool hasHighBytes(std::string_view path) {
  path = path.substr(0, kLookForHighBytesIn);
  return std::any_of(path.begin(), path.end(),
                     [](char c) { return static_cast<unsigned char>(c) > 0x7F; });
}

/// One look after the other while the name leads nowhere; any other failure is final.
int statInAnyEncoding(Stat stat, const char* path, struct stat* out) {
  if (path == nullptr || out == nullptr) return -1;
  const auto settled = [stat, out](const char* name, int& result) {
    result = stat(name, out);
    return result == 0 || errno != ENOENT;
  };
  int result = -1;
  if (settled(path, result)) return result;

  // A path from a text field may bring its line end along.
  const std::string_view whole = path;
  StringBuffer firstLine;
  XString text;
  if (!firstLine.append(whole.substr(0, whole.find('\r'))) || !text.setFromSbUtf8(firstLine)) {
    errno = ENOMEM;
    return -1;
  }
  if (firstLine.getSize() < whole.size() && settled(firstLine.getString(), result)) return result;
  if (!hasHighBytes(firstLine.view())) return result;

  if (settled(text.getAnsi(), result)) return result;

  DataBuffer oem;
  text.getConverted_cp(Psdk::getOemCodePage(), oem);
  oem.appendChar('\0');
  settled(reinterpret_cast<const char*>(oem.getData2()), result);
  return result;
}

}  // namespace

int Psdk::ck_stat(const char* path, struct stat* out) {
  return statInAnyEncoding(&::stat, path, out);
}

int Psdk::ck_lstat(const char* path, struct stat* out) {
  return statInAnyEncoding(&::lstat, path, out);
}
