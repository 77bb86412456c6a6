#include "Usage.h"

#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fixture {

namespace {

std::size_t entriesOf(const char* directory) {
  return static_cast<std::size_t>(
      std::distance(std::filesystem::directory_iterator(directory), {}));
}

std::size_t residentPages() {
  std::size_t all = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return resident;
}

}  // namespace

std::size_t openDescriptors() { return entriesOf("/proc/self/fd"); }

Usage Usage::now() {
  constexpr std::size_t kBytesPerKib = 1024;
  const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  return {openDescriptors(), entriesOf("/proc/self/task"),
          residentPages() * pageSize / kBytesPerKib};
}

std::chrono::nanoseconds threadTime() {
  timespec time = {};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec};
}

}  // namespace fixture
