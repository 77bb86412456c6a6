// Takes the place of the memory functions: looks at blocks when they are freed, counts them, and
// refuses them on demand.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "CkByteData.h"
#include "CkString.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "Psdk.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

struct Watch {
  bool counting = false;
  int allocations = 0;
  /// Allocations that still succeed; negative for all.
  int left = -1;
  /// Blocks that were freed with this text in them.
  std::string_view secret;
  int secretsFreed = 0;
};

thread_local Watch g_watch;

constexpr std::size_t kHeader = alignof(std::max_align_t);

void* take(std::size_t n) noexcept {
  if (g_watch.left == 0) return nullptr;
  if (g_watch.left > 0) --g_watch.left;
  if (g_watch.counting) ++g_watch.allocations;
  void* const block = std::malloc(n + kHeader);
  if (block == nullptr) return nullptr;
  std::memcpy(block, &n, sizeof n);
  return static_cast<char*>(block) + kHeader;
}

void give(void* p) noexcept {
  if (p == nullptr) return;
  char* const block = static_cast<char*>(p) - kHeader;
  if (!g_watch.secret.empty()) {
    std::size_t n = 0;
    std::memcpy(&n, block, sizeof n);
    const std::string_view bytes(static_cast<const char*>(p), n);
    if (bytes.find(g_watch.secret) != bytes.npos) ++g_watch.secretsFreed;
  }
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

constexpr const char* kSecret = "the PIN of the till is 4711";

/// Counts blocks freed with the secret in them while `use` runs.
template <typename Use>
int leaks(Use use) {
  g_watch.secret = "PIN of the till";
  g_watch.secretsFreed = 0;
  use();
  g_watch.secret = {};
  return g_watch.secretsFreed;
}

std::string longSecret() { return kSecret + std::string(200, '.'); }

TEST(WipingTest, TheWatchSeesWhatIsNotWiped) {
  const std::string secret = longSecret();
  EXPECT_EQ(leaks([&] { StringBuffer(secret.c_str()).strongClear(); }), 1);
  EXPECT_EQ(leaks([&] { CkString(secret.c_str()).clear(); }), 1);
}

TEST(WipingTest, SecureBuffersWipeBeforeTheyFree) {
  const std::string secret = longSecret();
  EXPECT_EQ(leaks([&] {
              StringBuffer text;
              text.setSecureBuf(true);
              text.append(secret.c_str());
              for (int i = 0; i < 10; ++i) text.append("grows and moves, ");
              for (int i = 0; i < 200; ++i) text.append("grows and moves, ");
              text.replaceAllOccurances("moves", "stays");
              text.replaceFirstOccurance("stays", "is", false);
              text.minimizeMemoryUsage();
            }),
            0);
  EXPECT_EQ(leaks([&] {
              DataBuffer bytes;
              bytes.setSecure(true);
              bytes.append(secret.data(), secret.size());
            }),
            0);
  EXPECT_EQ(leaks([&] {
              DataBuffer bytes;
              bytes.append(secret.data(), secret.size());
              bytes.secureClearWithDeallocate();
              bytes.append(secret.data(), secret.size());
              bytes.secureClear();
            }),
            0);
}

TEST(WipingTest, ShortTextsInsideTheObjectAreWipedToo) {
  alignas(StringBuffer) unsigned char memory[sizeof(StringBuffer)];
  const auto holdsSecret = [&] {
    const std::string_view bytes(reinterpret_cast<const char*>(memory), sizeof memory);
    return bytes.find(kSecret) != bytes.npos;
  };
  auto* text = new (memory) StringBuffer(kSecret);
  text->setSecureBuf(true);
  EXPECT_TRUE(holdsSecret());
  text->~StringBuffer();
  EXPECT_FALSE(holdsSecret());

  text = new (memory) StringBuffer(kSecret);
  text->secureClear();
  EXPECT_FALSE(holdsSecret());
  text->setSecureBuf(true);
  text->append(kSecret);
  text->weakClear();
  text->append("x");
  EXPECT_TRUE(holdsSecret() || text->getSize() == 1);  // weakClear() doesn't wipe
  text->strongClear();
  text->append(kSecret);
  text->expectNumBytes(1000);  // moves to the heap and leaves nothing behind
  EXPECT_FALSE(holdsSecret());
  text->~StringBuffer();
}

TEST(WipingTest, SecureStringsWipeEveryForm) {
  Psdk::setAnsiCodePage(1251);
  const std::string secret = longSecret();
  EXPECT_EQ(leaks([&] {
              XString text;
              text.setSecureX(true);
              text.setFromUtf8(secret.c_str());
              text.getAnsi();
              text.getUtf16_xe();
              text.getWideStr();
              text.appendAnsi(secret.c_str());
              text.getAnsi();
              text.setFromAnsi(secret.c_str());
              text.getUtf8();
              text.trim();
              text.minimizeMemory();
              text.replaceAllOccurancesUtf8("PIN", "PIN ", false);
              text.clear();
              text.setFromUtf8(secret.c_str());
            }),
            0);
  EXPECT_EQ(leaks([&] {
              CkString text;
              text.put_SecureClear(true);
              text.setStringUtf8(secret.c_str());
              text.getEnc("windows-1251");
              text.getEnc("utf-8");
              text.hexEncode("utf-8");
              text.hexDecode("utf-8");
              text.appendAnsi(secret.c_str());
            }),
            0);
  EXPECT_EQ(leaks([&] {
              CkByteData bytes;
              bytes.put_SecureClear(true);
              bytes.append2(secret.data(), secret.size());
              bytes.to_s();
            }),
            0);
}

TEST(AllocationTest, TheRoadFromThePlatformIsShort) {
  Psdk::setAnsiCodePage(1251);
  const char16_t* const id = u"Весы кассы 12345 №7";
  CkString text;
  text.setStringUtf16(reinterpret_cast<const unsigned short*>(id));
  text.getAnsi();  // builds the table
  text.clear();
  g_watch.allocations = 0;
  g_watch.counting = true;
  text.setStringUtf16(reinterpret_cast<const unsigned short*>(id));
  const char* const ansi = text.getAnsi();
  g_watch.counting = false;
  EXPECT_LE(g_watch.allocations, 3);
  EXPECT_STREQ(ansi,
               "\xC2\xE5\xF1\xFB \xEA\xE0\xF1\xF1\xFB 12345 \xB9"
               "7");
}

TEST(AllocationTest, ShortTextsCostNothing) {
  g_watch.allocations = 0;
  g_watch.counting = true;
  {
    StringBuffer text;
    for (int i = 0; i < 81; ++i) text.appendChar('x');
    text.replaceAllOccurances("x", "y");
  }
  g_watch.counting = false;
  EXPECT_EQ(g_watch.allocations, 0);
}

/// Runs `use` with memory for 0, 1, 2, ... allocations until there was enough: nothing may
/// crash, throw or leak on the way.
template <typename Use>
void withShrinkingMemory(Use use) {
  EncodingConvert::cleanupMemory();
  for (int available = 0; available < 200; ++available) {
    g_watch.left = available;
    use();
    const bool enough = g_watch.left > 0;
    g_watch.left = -1;
    if (enough) return;
  }
  ADD_FAILURE() << "never had enough memory";
}

TEST(AllocationTest, FailuresLeaveTheOldContent) {
  const std::string piece(1000, 'x');
  withShrinkingMemory([&] {
    StringBuffer text;
    text.append("short");
    EXPECT_TRUE(text.append(piece.c_str()) || text.view() == "short");
    DataBuffer bytes;
    EXPECT_TRUE(bytes.append(piece.data(), piece.size()) || bytes.empty());
    EXPECT_TRUE(bytes.appendCharN('y', 100'000) || bytes.getSize() % 1000 == 0);
    StringBuffer base64;
    EXPECT_TRUE(ContentCoding::encodeBase64_noCrLf(piece.data(), piece.size(), base64) ||
                base64.empty());
  });
}

TEST(AllocationTest, StringsLiveOnWithoutMemory) {
  Psdk::setAnsiCodePage(1251);
  const std::string piece(500, '\xC2');
  withShrinkingMemory([&] {
    CkString text(piece.c_str());
    CkString copy(text);
    copy.appendStr(text);
    copy.getUtf8();
    copy.getUnicode();
    copy.getUtf16();
    copy.getEnc("koi8-r");
    copy.base64Encode("utf-8");
    copy.base64Decode("utf-8");
    copy.compareStr(text);
    copy.replaceAll(text, copy);
    copy.trim();
    copy.setStringU(L"wide");
    copy.getAnsi();
    CkByteData bytes;
    bytes.append2(piece.data(), piece.size());
    bytes.getEncoded("hex");
    bytes.getBytes();
  });
}

TEST(AllocationTest, TheLastResortOfALargeBuffer) {
  // The ladder asks for 20,000 bytes; if they aren't to be had, the piece and 400 bytes do.
  DataBuffer bytes;
  g_watch.left = 1;
  EXPECT_TRUE(bytes.append("abc", 3));
  EXPECT_EQ(bytes.getBufSize(), 20'000U);
  g_watch.left = 0;
  EXPECT_FALSE(bytes.appendCharN('x', 30'000));
  g_watch.left = -1;
  EXPECT_EQ(bytes.getSize(), 3U);
}

}  // namespace
