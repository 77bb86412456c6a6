#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

struct archive;

namespace weigh {

/// A .tar.gz that is there when it is whole: until `finish` it grows under another name, and
/// without it nothing is left.
class SupportArchive {
 public:
  /// Throws Failure, as all of these do, where the file can't be written.
  explicit SupportArchive(std::filesystem::path file);
  ~SupportArchive();
  SupportArchive(const SupportArchive&) = delete;
  SupportArchive& operator=(const SupportArchive&) = delete;

  /// Adds a file with this content; only its owner may read it when it is unpacked.
  void add(const std::string& name, std::string_view content);
  void finish();

 private:
  struct Free {
    void operator()(archive* writer) const;
  };

  /// Throws what libarchive says, unless `result` is good.
  void require(long result);

  std::filesystem::path file_;
  std::filesystem::path part_;
  std::unique_ptr<archive, Free> writer_;
};

}  // namespace weigh
