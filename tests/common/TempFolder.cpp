#include "TempFolder.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "Descriptor.h"

namespace fixture {

TempFolder::TempFolder() {
  std::string pattern = std::filesystem::temp_directory_path() / "orbelo-test-XXXXXX";
  if (::mkdtemp(pattern.data()) == nullptr) throwErrno("mkdtemp");
  path_ = pattern + "/";
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::makeFolder(std::string_view name) const {
  std::filesystem::create_directories(file(name));
  return file(name) + "/";
}

std::string TempFolder::write(std::string_view name, std::string_view content) const {
  std::ofstream(file(name), std::ios::binary) << content;
  return file(name);
}

std::string TempFolder::read(std::string_view name) const {
  std::ifstream stream(file(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

bool TempFolder::has(std::string_view name) const { return std::filesystem::exists(file(name)); }

}  // namespace fixture
