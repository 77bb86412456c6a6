#include "RequestedSettings.h"

#include <dlfcn.h>

#include <cerrno>

namespace fixture {

namespace {

RequestedSettings* current = nullptr;

}  // namespace

RequestedSettings::RequestedSettings() { current = this; }
RequestedSettings::~RequestedSettings() { current = nullptr; }

bool RequestedSettings::take(const termios& settings) {
  requests_.push_back(settings);
  return !refusing_;
}

}  // namespace fixture

/// Stands before libc's own for this program.
extern "C" int tcsetattr(int fd, int actions, const termios* settings) noexcept {
  using Function = int (*)(int, int, const termios*);
  static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "tcsetattr"));
  if (fixture::current != nullptr && !fixture::current->take(*settings)) {
    errno = EIO;
    return -1;
  }
  return real(fd, actions, settings);
}
