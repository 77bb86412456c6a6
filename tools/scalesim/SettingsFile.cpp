#include "SettingsFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "FileDescriptor.h"
#include "Messages.h"
#include "Output.h"

namespace {

/// By its root a file of ours is known again.
constexpr std::string_view kRoot = "SCALESIM";

}  // namespace

SettingsFile::SettingsFile(const std::filesystem::path& folder,
                           const std::vector<SettingsEntry>& entries)
    : path_(folder / kSettingsFile) {
  if (entries.size() > kMostSettingsEntries) throw std::runtime_error("more than 100 scales");
  if (std::ifstream old(path_); old) {
    const std::string text{std::istreambuf_iterator<char>(old), {}};
    if (text.find("<" + std::string(kRoot) + ">") == std::string::npos)
      throw Failure(kFailed,
                    say("{0} was not written by scalesim and stays as it is; choose another folder",
                        path_.string()));
  }
  // By way of a second name, so that whoever waits for the file finds it whole.
  std::string fresh = folder / ".scalesim-XXXXXX";
  const sim::FileDescriptor file(::mkstemp(fresh.data()));
  constexpr mode_t kReadableByAll = 0644;
  const std::string document = settingsDocument(kRoot, entries);
  const auto size = static_cast<ssize_t>(document.size());
  if (!file || ::write(file.get(), document.data(), document.size()) != size ||
      ::fchmod(file.get(), kReadableByAll) != 0 || ::rename(fresh.c_str(), path_.c_str()) != 0) {
    const int reason = errno;
    if (file) ::unlink(fresh.c_str());
    throw std::system_error(reason, std::generic_category(), path_.string());
  }
}

SettingsFile::~SettingsFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}
