// Takes the place of the memory functions: measures what a document takes, and refuses memory at
// every point of a load.

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "CkString.h"
#include "CkXml.h"
#include "ParseEngine.h"
#include "TempFolder.h"
#include "TreeNode.h"
#include "XmlDocuments.h"

namespace {

struct Watch {
  std::size_t inUse = 0;
  std::size_t peak = 0;
  /// Allocations that still succeed; negative for all.
  int left = -1;
};

thread_local Watch g_watch;

/// Lets so many allocations succeed, and no more while it lives.
class Shortage {
 public:
  explicit Shortage(int allocations) { g_watch.left = allocations; }
  ~Shortage() { g_watch.left = -1; }
  Shortage(const Shortage&) = delete;
  Shortage& operator=(const Shortage&) = delete;

  static bool isHit() { return g_watch.left == 0; }
};

/// What the allocator adds to a block.
constexpr std::size_t kOverhead = 16;
constexpr std::size_t kHeader = alignof(std::max_align_t);

void* take(std::size_t n) noexcept {
  if (g_watch.left == 0) return nullptr;
  if (g_watch.left > 0) --g_watch.left;
  void* const block = std::malloc(n + kHeader);
  if (block == nullptr) return nullptr;
  std::memcpy(block, &n, sizeof n);
  g_watch.inUse += n + kOverhead;
  g_watch.peak = std::max(g_watch.peak, g_watch.inUse);
  return static_cast<char*>(block) + kHeader;
}

void give(void* p) noexcept {
  if (p == nullptr) return;
  char* const block = static_cast<char*>(p) - kHeader;
  std::size_t n = 0;
  std::memcpy(&n, block, sizeof n);
  g_watch.inUse -= n + kOverhead;
  std::free(block);
}

void* takeOrThrow(std::size_t n) {
  void* const p = take(n);
  if (p == nullptr) throw std::bad_alloc();
  return p;
}

}  // namespace

void* operator new(std::size_t n) { return takeOrThrow(n); }
void* operator new[](std::size_t n) { return takeOrThrow(n); }
void* operator new(std::size_t n, const std::nothrow_t&) noexcept { return take(n); }
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept { return take(n); }
void operator delete(void* p) noexcept { give(p); }
void operator delete[](void* p) noexcept { give(p); }
void operator delete(void* p, std::size_t) noexcept { give(p); }
void operator delete[](void* p, std::size_t) noexcept { give(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { give(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { give(p); }

namespace {

TEST(XmlMemory, IsAFewTimesTheSettingsFile) {
  const std::string text = documents::settings(100);
  const fixture::TempFolder folder;
  const std::string path = folder.write("settings.xml", text);
  const std::size_t before = g_watch.inUse;
  g_watch.peak = before;
  const UncountedTree tree = TreeNode::customParseFile(path.c_str(), nullptr, true, false, false);
  EXPECT_LE(g_watch.inUse - before, 3 * text.size());
  EXPECT_LE(g_watch.peak - before, 4 * text.size());
}

TEST(XmlMemory, ComesBack) {
  const std::size_t before = g_watch.inUse;
  {
    const std::string text = documents::settings(3) + documents::catalogue(1);
    for (std::size_t n = 0; n <= text.size(); n += 7) {
      ParseEngine engine(std::string_view(text).substr(0, n));
      EXPECT_NE(TreeNode::customParse(engine, nullptr, true, false, false), nullptr);
    }
  }
  EXPECT_EQ(g_watch.inUse, before);
}

// Memory that runs short at the first, second ... request: the parse ends, and what it read by
// then stands.
TEST(XmlMemory, MayRunShortAnywhereInAParse) {
  const std::string text =
      "<!DOCTYPE a><?xml-stylesheet x?><?pi x?><root-with-a-long-name one='1 &amp;' two=\"2\">"
      "text &amp; text <child/> more <![CDATA[text]]><child x='1'><b/></child></root>";
  const std::size_t before = g_watch.inUse;
  int allocations = 0;
  bool finished = false;
  for (; !finished && allocations < 1000; ++allocations) {
    ParseEngine engine(text);
    UncountedTree tree;
    {
      const Shortage shortage(allocations);
      tree = TreeNode::customParse(engine, nullptr, true, false, false);
      finished = !Shortage::isHit();
    }
    if (tree != nullptr) {
      EXPECT_EQ(tree->getRoot(), tree.get());
      EXPECT_LE(tree->getNumChildren(), 2);
    }
    tree.reset();
    EXPECT_EQ(g_watch.inUse, before) << allocations;
  }
  EXPECT_TRUE(finished);
  EXPECT_GT(allocations, 10);
}

TEST(XmlMemory, MayRunShortAnywhereInALoad) {
  const fixture::TempFolder folder;
  const std::string path = folder.write("settings.xml", documents::settings(2));
  bool finished = false;
  for (int allocations = 0; !finished && allocations < 1000; ++allocations) {
    const Shortage shortage(allocations);
    CkXml xml;
    CkString value;
    const bool found = xml.LoadXmlFile(path.c_str()) && xml.FindChild2("SCALES1");
    xml.GetAttrValue("fHost", value);
    finished = found && xml.GetAttrValueInt("fType") == 20 && !Shortage::isHit();
  }
  EXPECT_TRUE(finished);
}

}  // namespace
