#include "SettingsFile.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "Texts.h"

namespace {

/// By its root a file of ours is known again.
constexpr std::string_view kRoot = "SCALESIM";

}  // namespace

void refuseForeignSettings(const std::filesystem::path& folder) {
  const std::filesystem::path path = folder / kSettingsFile;
  std::ifstream file(path);
  if (!file) return;
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  if (text.find("<" + std::string(kRoot) + ">") == std::string::npos) {
    throw std::runtime_error(fill(texts::kForeignSettings, {path.string()}));
  }
}

SettingsFile::SettingsFile(const std::filesystem::path& folder,
                           const std::vector<SettingsEntry>& entries)
    : path_(folder / kSettingsFile) {
  if (entries.size() > kMostSettingsEntries) throw std::runtime_error("more than 100 scales");
  refuseForeignSettings(folder);
  // By way of a second name, so that whoever waits for the file finds it whole.
  const std::filesystem::path fresh = path_.string() + ".new";
  {
    std::ofstream file(fresh);
    file << settingsDocument(kRoot, entries) << std::flush;
    if (!file) throw std::system_error(errno, std::generic_category(), fresh.string());
  }
  std::filesystem::rename(fresh, path_);
}

SettingsFile::~SettingsFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}
