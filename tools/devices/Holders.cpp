#include "Holders.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <charconv>
#include <fstream>
#include <optional>

namespace devices {

namespace fs = std::filesystem;

namespace {

/// Device numbers of the line side of pseudo-terminals; 256 of them to each major number.
constexpr unsigned kFirstPtyMajor = 136;
constexpr unsigned kLastPtyMajor = 143;
constexpr unsigned kPtysOfMajor = 256;

/// The number of a pseudo-terminal; none for any other device.
std::optional<unsigned> ptyNumber(const struct stat& device) {
  const unsigned number = major(device.st_rdev);
  if (!S_ISCHR(device.st_mode) || number < kFirstPtyMajor || number > kLastPtyMajor)
    return std::nullopt;
  return (number - kFirstPtyMajor) * kPtysOfMajor + minor(device.st_rdev);
}

std::optional<pid_t> processNumber(const fs::path& folder) {
  const std::string name = folder.filename();
  pid_t pid = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
  if (error != std::errc{} || end != name.data() + name.size()) return std::nullopt;
  return pid;
}

/// Whether an open file is the other end of pseudo-terminal `number`.
bool isOtherEnd(const fs::path& process, const fs::path& file, unsigned number) {
  std::error_code error;
  if (fs::read_symlink(process / "fd" / file, error).filename() != "ptmx") return false;
  std::ifstream facts(process / "fdinfo" / file);
  for (std::string word; facts >> word;) {
    unsigned index = 0;
    if (word == "tty-index:") return facts >> index && index == number;
  }
  return false;
}

bool isSame(const struct stat& left, const struct stat& right) {
  if (S_ISCHR(left.st_mode) && S_ISCHR(right.st_mode)) return left.st_rdev == right.st_rdev;
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

/// Whether a process uses the device; false also if it is the other end of the line.
bool holds(const fs::path& process, const struct stat& device, std::error_code& error) {
  const std::optional<unsigned> pty = ptyNumber(device);
  bool found = false;
  for (const auto& file : fs::directory_iterator(process / "fd", error)) {
    struct stat open = {};
    if (::stat(file.path().c_str(), &open) == 0 && isSame(open, device)) found = true;
    if (pty && isOtherEnd(process, file.path().filename(), *pty)) return false;
  }
  return found;
}

std::string nameOf(const fs::path& process) {
  std::ifstream stream(process / "comm");
  std::string name;
  std::getline(stream, name);
  return name;
}

}  // namespace

Holders holdersOf(const fs::path& device, const Roots& roots) {
  Holders result;
  struct stat info = {};
  if (::stat(device.c_str(), &info) != 0) return result;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(roots.proc, error)) {
    const std::optional<pid_t> pid = processNumber(entry.path());
    if (!pid || *pid == ::getpid()) continue;
    std::error_code denied;
    if (holds(entry.path(), info, denied))
      result.processes.push_back({.pid = *pid, .name = nameOf(entry.path())});
    // A process that ended meanwhile is gone and not hidden.
    if (denied == std::errc::permission_denied) result.complete = false;
  }
  return result;
}

}  // namespace devices
