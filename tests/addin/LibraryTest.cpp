// What the delivered file shows to the process that loads it, and what it needs from it.

#include <dlfcn.h>
#include <malloc.h>

#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"

namespace {

/// The lines that a command prints.
std::vector<std::string> linesOf(const std::string& command) {
  fixture::Program shell({"sh", "-c", command}, fixture::Program::Errors::Apart);
  std::istringstream output(shell.rest());
  std::vector<std::string> lines;
  for (std::string line; std::getline(output, line);) lines.push_back(line);
  return lines;
}

/// What `pattern` captures in each line that it matches.
std::set<std::string> captured(const std::vector<std::string>& lines, const char* pattern) {
  const std::regex regex(pattern);
  std::set<std::string> result;
  std::smatch match;
  for (const std::string& line : lines) {
    if (std::regex_search(line, match, regex)) result.insert(match[1]);
  }
  return result;
}

TEST(Library, ShowsTheExportsAndThePublicClassesOnly) {
  const auto symbols =
      captured(linesOf(ORBELO_NM " --dynamic --defined-only --demangle " ORBELO_COMPONENT),
               "^[0-9a-f]+ . (.*)$");
  std::set<std::string> exports;
  std::set<std::string> classes;
  const std::regex ofPublicClass(
      "^(?:vtable for |typeinfo for |typeinfo name for )?(Ck(?:String|ByteData|Socket|Xml|"
      "FileAccess|Object|MultiByteBase))\\b.*$");
  std::smatch match;
  for (const std::string& symbol : symbols) {
    if (std::regex_match(symbol, match, ofPublicClass)) {
      classes.insert(match[1]);
    } else {
      exports.insert(symbol);
    }
  }
  EXPECT_THAT(exports, testing::ElementsAre("DestroyObject", "GetClassNames", "GetClassObject",
                                            "SetPlatformCapabilities"));
  EXPECT_THAT(classes, testing::IsSupersetOf(
                           {"CkByteData", "CkFileAccess", "CkSocket", "CkString", "CkXml"}));
  for (const std::string name : {"CkByteData", "CkString", "CkMultiByteBase"}) {
    EXPECT_THAT(symbols,
                testing::IsSupersetOf({name + "::put_Utf8(bool)", name + "::get_Utf8() const"}));
  }
  EXPECT_THAT(symbols, testing::IsSupersetOf({"CkByteData::get_SecureClear() const",
                                              "CkString::get_SecureClear() const",
                                              "CkObject::objcUtf8(char const*)"}));
}

TEST(Library, NeedsNothingButTheSystemsLibc) {
  const auto needed = captured(linesOf(ORBELO_READELF " --wide --dynamic " ORBELO_COMPONENT),
                               "\\(NEEDED\\).*\\[(.*)\\]");
  EXPECT_THAT(needed, testing::Contains("libc.so.6"));
  EXPECT_THAT(needed, testing::Each(testing::AnyOf("libc.so.6", "libm.so.6", "libpthread.so.0",
                                                   "libdl.so.2", "ld-linux-x86-64.so.2")));
}

TEST(Library, LeavesNoMemoryBehindWhenItIsUnloaded) {
  constexpr std::size_t kMost = 4096;
  const auto loadAndUnload = [] {
    void* library = ::dlopen(ORBELO_COMPONENT, RTLD_NOW);
    ASSERT_NE(library, nullptr) << ::dlerror();
    ::dlclose(library);
  };
  // The first time the loader keeps something for itself.
  loadAndUnload();
  const std::size_t before = ::mallinfo2().uordblks;
  for (int i = 0; i < 10; ++i) loadAndUnload();
  EXPECT_LT(::mallinfo2().uordblks, before + kMost);
}

TEST(Library, CallsItsOwnClassesWhateverTheProcessHolds) {
  // Another add-in may bring classes of the same names; the loader must not mix them.
  EXPECT_FALSE(captured(linesOf(ORBELO_READELF " --wide --dynamic " ORBELO_COMPONENT),
                        "(\\(SYMBOLIC\\)|FLAGS.* SYMBOLIC)")
                   .empty());
}

}  // namespace
