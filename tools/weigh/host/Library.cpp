#include "Library.h"

#include <dlfcn.h>

namespace host {

namespace fs = std::filesystem;

fs::path Library::besideProgram() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return (error ? fs::current_path(error) : program.parent_path()) / kFileName;
}

Library::Library(const fs::path& file) {
  std::error_code error;
  const fs::path absolute = fs::absolute(file, error);
  if (error || !fs::exists(absolute, error)) {
    throw LoadError(LoadError::Reason::Missing, file, "no such file");
  }
  handle_ = ::dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    const char* why = ::dlerror();
    throw LoadError(LoadError::Reason::NotLoadable, file, why == nullptr ? "" : why);
  }
  try {
    getClassObject = reinterpret_cast<GetClassObjectFn>(symbol(file, "GetClassObject"));
    destroyObject = reinterpret_cast<DestroyObjectFn>(symbol(file, "DestroyObject"));
    getClassNames = reinterpret_cast<GetClassNamesFn>(symbol(file, "GetClassNames"));
    setPlatformCapabilities =
        reinterpret_cast<SetPlatformCapabilitiesFn>(symbol(file, "SetPlatformCapabilities"));
  } catch (...) {
    ::dlclose(handle_);
    throw;
  }
}

Library::~Library() { ::dlclose(handle_); }

void* Library::symbol(const fs::path& file, const char* name) const {
  void* found = ::dlsym(handle_, name);
  if (found == nullptr) throw LoadError(LoadError::Reason::NoExport, file, name);
  return found;
}

}  // namespace host
