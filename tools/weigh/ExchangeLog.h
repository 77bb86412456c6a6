#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace weigh {

/// Switches the exchange log on for one run: sets the marker file in a folder, takes it away again
/// if it wasn't there, and says at the end which logs grew. Make it before the component and let it
/// go after: the last record of a scale is written when the scale ends.
class ExchangeLog {
 public:
  /// Makes the folder too. Throws Failure where that fails.
  explicit ExchangeLog(const std::filesystem::path& folder);
  ~ExchangeLog();
  ExchangeLog(const ExchangeLog&) = delete;
  ExchangeLog& operator=(const ExchangeLog&) = delete;

  const std::filesystem::path& folder() const { return folder_; }

 private:
  using Sizes = std::map<std::filesystem::path, std::uintmax_t>;
  Sizes logs() const;

  std::filesystem::path folder_;
  bool ownMarker_ = false;
  Sizes before_;
};

}  // namespace weigh
