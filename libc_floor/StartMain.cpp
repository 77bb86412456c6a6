// How a program begins. Since 2.34 libc runs a program's constructors itself; before, a piece of
// libc inside the program did and was handed over at the start. The start-up object of the building
// machine hands nothing over, so this stands between it and libc. A newer libc takes what it is
// given and leaves the constructors to it.

extern "C" {

using Main = int (*)(int, char**, char**);
using Constructor = void (*)(int, char**, char**);

// The bounds of the list of constructors; the linker sets them.
[[gnu::visibility("hidden")]] extern Constructor __init_array_start[];
[[gnu::visibility("hidden")]] extern Constructor __init_array_end[];

int __real___libc_start_main(Main main, int count, char** arguments, Constructor begin,
                             void (*end)(), void (*endOfLoader)(), void* stackEnd);

namespace {
void runConstructors(int count, char** arguments, char** environment) {
  for (Constructor* each = __init_array_start; each != __init_array_end; ++each) {
    (*each)(count, arguments, environment);
  }
}
}  // namespace

/// In the place of __libc_start_main, by the linker's --wrap.
[[gnu::visibility("hidden")]] int __wrap___libc_start_main(Main main, int count, char** arguments,
                                                           Constructor /*begin*/, void (*end)(),
                                                           void (*endOfLoader)(), void* stackEnd) {
  return __real___libc_start_main(main, count, arguments, runConstructors, end, endOfLoader,
                                  stackEnd);
}
}
