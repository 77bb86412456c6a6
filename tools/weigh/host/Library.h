#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "Platform.h"

namespace host {

/// Why a component can't be used.
class LoadError : public std::runtime_error {
 public:
  enum class Reason {
    /// There is no file of that name.
    Missing,
    /// The loader refuses the file; `detail` is what it says.
    NotLoadable,
    /// A library, but without the export that `detail` names.
    NoExport,
    /// It makes no object, or the object refuses what the platform offers.
    NoObject,
  };

  LoadError(Reason why, std::filesystem::path file, const std::string& what)
      : std::runtime_error(file.string() + ": " + what),
        reason(why),
        path(std::move(file)),
        detail(what) {}

  Reason reason;
  std::filesystem::path path;
  std::string detail;
};

/// A loaded add-in and its four exports. All objects made by it must be gone before it goes.
class Library {
 public:
  /// The file's name without a folder.
  static constexpr const char* kFileName = "OrbeloScalesLin64.so";
  /// The library in the folder of the running program.
  static std::filesystem::path besideProgram();

  /// Throws LoadError.
  explicit Library(const std::filesystem::path& file);
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  GetClassObjectFn getClassObject = nullptr;
  DestroyObjectFn destroyObject = nullptr;
  GetClassNamesFn getClassNames = nullptr;
  SetPlatformCapabilitiesFn setPlatformCapabilities = nullptr;

 private:
  void* symbol(const std::filesystem::path& file, const char* name) const;

  void* handle_;
};

}  // namespace host
