#include "ExchangeLog.h"

#include <fstream>
#include <iostream>
#include <system_error>

#include "Failure.h"
#include "Texts.h"

namespace weigh {

namespace fs = std::filesystem;

namespace {

constexpr const char* kMarker = "log.txt";
constexpr const char* kLogPrefix = "log_scales_";
constexpr const char* kLogSuffix = ".log";

[[noreturn]] void giveUp(const fs::path& folder, const std::error_code& why) {
  throw Failure(kWrongUsage, fill(text::kLogFolderFails, {folder.string(), why.message()}),
                say(text::kLogFolderRemedy));
}

fs::path absoluteFolder(const fs::path& folder) {
  std::error_code error;
  fs::path absolute = fs::absolute(folder, error);
  if (error) giveUp(folder, error);
  return absolute;
}

}  // namespace

ExchangeLog::ExchangeLog(const fs::path& folder) : folder_(absoluteFolder(folder)) {
  std::error_code error;
  fs::create_directories(folder_, error);
  if (error) giveUp(folder, error);
  before_ = logs();
  const fs::path marker = folder_ / kMarker;
  if (fs::exists(marker, error)) return;
  if (!std::ofstream(marker)) giveUp(folder, {errno, std::generic_category()});
  ownMarker_ = true;
}

ExchangeLog::~ExchangeLog() {
  std::error_code error;
  if (ownMarker_) fs::remove(folder_ / kMarker, error);
  bool any = false;
  for (const auto& [log, size] : logs()) {
    const auto old = before_.find(log);
    if (old != before_.end() && old->second == size) continue;
    std::cerr << fill(text::kLogWritten, {log.string()}) << '\n';
    any = true;
  }
  if (!any) std::cerr << fill(text::kLogNotWritten, {folder_.string()}) << '\n';
}

ExchangeLog::Sizes ExchangeLog::logs() const {
  Sizes sizes;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder_, error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(kLogPrefix) || !name.ends_with(kLogSuffix)) continue;
    const auto size = entry.file_size(error);
    if (!error) sizes.emplace(entry.path(), size);
  }
  return sizes;
}

}  // namespace weigh
