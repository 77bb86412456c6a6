#pragma once

#include <string>
#include <string_view>

namespace fixture {

/// A folder of the test's own, gone with the object.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  /// Absolute, with "/" at its end.
  const std::string& path() const { return path_; }
  std::string file(std::string_view name) const { return path_ + std::string(name); }
  /// Makes a folder within and returns its path, with "/" at its end.
  std::string makeFolder(std::string_view name) const;
  /// Writes a file and returns its path.
  std::string write(std::string_view name, std::string_view content) const;
  /// The content of a file; empty if there is none.
  std::string read(std::string_view name) const;
  bool has(std::string_view name) const;

 private:
  std::string path_;
};

}  // namespace fixture
