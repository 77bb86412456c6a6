// Linked into a test program, this makes it one on a Russian system, where the bytes of ids, port
// names and hosts are windows-1251. The code page is read once, on its first need.

#include <cstdlib>

namespace {

[[maybe_unused]] const int set = ::setenv("LANG", "ru_RU.UTF-8", 1);

}  // namespace
