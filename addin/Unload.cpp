// The library brings a C++ runtime of its own, which sets 71 KiB aside at loading, for exceptions
// thrown when memory is short. It gives them back only when asked: without this each unloading
// would cost the platform's process as much.

namespace __gnu_cxx {  // NOLINT(bugprone-reserved-identifier): libstdc++'s name
void __freeres();      // NOLINT(bugprone-reserved-identifier): declared in none of its headers
}  // namespace __gnu_cxx

namespace {

/// The lowest number that is free to use runs last, when nothing of the library can throw any more.
[[gnu::destructor(101)]] void giveBackExceptionPool() { __gnu_cxx::__freeres(); }

}  // namespace
