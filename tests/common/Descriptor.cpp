#include "Descriptor.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace fixture {

void Descriptor::reset() {
  if (fd_ >= 0) ::close(std::exchange(fd_, -1));
}

void throwErrno(const char* call) { throw std::system_error(errno, std::generic_category(), call); }

Descriptor Descriptor::checked(int fd, const char* call) {
  if (fd < 0) throwErrno(call);
  return Descriptor(fd);
}

StopSignal::StopSignal() : event_(Descriptor::checked(::eventfd(0, EFD_CLOEXEC), "eventfd")) {}

void StopSignal::raise() noexcept { ::eventfd_write(event_.get(), 1); }

}  // namespace fixture
