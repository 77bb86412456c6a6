// What the C++ runtime and the layers call in the building machine's libc and what older ones lack,
// made of what these have. Hidden, so that no other library of the process meets it; and members of
// an archive, so that only what is called goes in.

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

#define ORBELO_HIDDEN [[gnu::visibility("hidden")]]

extern "C" {

// Since 2.32 the runtime counts references without locks while this says that there is one thread.
// Nothing tells a library on an older system when there are more, so there always may be.
ORBELO_HIDDEN char __libc_single_threaded = 0;

// Until 2.33 the calls for a file's status were told the layout that the caller knows.
int __xstat(int layout, const char* path, struct stat* status);
int __lxstat(int layout, const char* path, struct stat* status);
int __fxstat(int layout, int file, struct stat* status);
int __fxstat64(int layout, int file, struct stat64* status);
namespace {
/// The only one that x86-64 has ever had.
constexpr int kStatusLayout = 1;
}  // namespace

ORBELO_HIDDEN int stat(const char* path, struct stat* status) noexcept {
  return __xstat(kStatusLayout, path, status);
}
ORBELO_HIDDEN int lstat(const char* path, struct stat* status) noexcept {
  return __lxstat(kStatusLayout, path, status);
}
ORBELO_HIDDEN int fstat(int file, struct stat* status) noexcept {
  return __fxstat(kStatusLayout, file, status);
}
ORBELO_HIDDEN int fstat64(int file, struct stat64* status) noexcept {
  return __fxstat64(kStatusLayout, file, status);
}

// 2.25. The compiler may not know that nobody reads the block any more. The second is what a build
// with _FORTIFY_SOURCE makes of each call of the first.
namespace {
void wipe(void* block, size_t size) {
  std::memset(block, 0, size);
  asm volatile("" : : "r"(block) : "memory");
}
}  // namespace
ORBELO_HIDDEN void explicit_bzero(void* block, size_t size) noexcept { wipe(block, size); }
ORBELO_HIDDEN void __explicit_bzero_chk(void* block, size_t size, size_t room) noexcept {
  if (size > room) std::abort();
  wipe(block, size);
}

// 2.25. Kernels before 3.17 don't have the call, but the same bytes as a device.
ORBELO_HIDDEN ssize_t getrandom(void* block, size_t size, unsigned flags) {
  const long got = ::syscall(SYS_getrandom, block, size, flags);
  if (got >= 0 || errno != ENOSYS) return got;
  const int device = ::open("/dev/urandom", O_RDONLY | O_CLOEXEC);
  if (device < 0) return -1;
  const ssize_t read = ::read(device, block, size);
  ::close(device);
  return read;
}

// 2.25. All of the bytes or an error; at most 256, which come in one piece.
ORBELO_HIDDEN int getentropy(void* block, size_t size) {
  constexpr size_t kMost = 256;
  if (size <= kMost && getrandom(block, size, 0) == static_cast<ssize_t>(size)) return 0;
  errno = EIO;
  return -1;
}

// 2.36. Knows no error.
ORBELO_HIDDEN std::uint32_t arc4random() noexcept {
  std::uint32_t number = 0;
  if (getentropy(&number, sizeof number) != 0) std::abort();
  return number;
}

// 2.35. Whose code an address is, and where its tables for exceptions begin: the unwinder asks for
// each frame that an exception crosses. Most frames are of the object that this is linked into, and
// they are found without the walk over all objects, which takes the loader's lock.
extern const ElfW(Ehdr) __ehdr_start [[gnu::visibility("hidden")]];
namespace {
using Address = ElfW(Addr);
using Header = ElfW(Phdr);
using Headers = std::span<const Header>;

/// Where the object's addresses count from: its first segment begins with the file's header.
Address ownBase(Headers headers) {
  const auto first = std::ranges::find(headers, unsigned{PT_LOAD}, &Header::p_type);
  return reinterpret_cast<Address>(&__ehdr_start) - first->p_vaddr;
}

/// Whether the object holds the address; it is described in `found`, if so.
bool findIn(Address base, Headers headers, Address address, dl_find_object& found) {
  found = {};
  bool holds = false;
  for (const Header& header : headers) {
    const Address begin = base + header.p_vaddr;
    if (header.p_type == PT_GNU_EH_FRAME) {
      found.dlfo_eh_frame = reinterpret_cast<void*>(begin);
    } else if (header.p_type == PT_LOAD && address - begin < header.p_memsz) {
      holds = true;
      found.dlfo_map_start = reinterpret_cast<void*>(begin);
      found.dlfo_map_end = reinterpret_cast<void*>(begin + header.p_memsz);
    }
  }
  return holds;
}
}  // namespace
ORBELO_HIDDEN int _dl_find_object(void* address, dl_find_object* found) noexcept {
  struct Search {
    Address address;
    dl_find_object& found;
  } search{reinterpret_cast<Address>(address), *found};
  const auto look = [](dl_phdr_info* object, size_t, void* data) {
    const auto& [wanted, result] = *static_cast<Search*>(data);
    const Headers headers(object->dlpi_phdr, object->dlpi_phnum);
    return findIn(object->dlpi_addr, headers, wanted, result) ? 1 : 0;
  };
  const auto* const file = reinterpret_cast<const std::byte*>(&__ehdr_start);
  const Headers own(reinterpret_cast<const Header*>(file + __ehdr_start.e_phoff),
                    __ehdr_start.e_phnum);
  const bool held =
      findIn(ownBase(own), own, search.address, *found) || ::dl_iterate_phdr(look, &search) != 0;
  return held && found->dlfo_eh_frame != nullptr ? 0 : -1;
}

}  // extern "C"
