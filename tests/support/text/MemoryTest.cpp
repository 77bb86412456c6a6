// Looks at blocks when they are freed, counts them, and refuses them on demand.

#include <new>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "CkByteData.h"
#include "CkString.h"
#include "ClsEncode.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "MemoryWatch.h"
#include "Psdk.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

using fixture::MemoryShortage;
using fixture::memoryWatch;

constexpr const char* kSecret = "the PIN of the till is 4711";

/// Counts blocks freed with the secret in them while `use` runs.
template <typename Use>
int leaks(Use use) {
  memoryWatch().secret = "PIN of the till";
  memoryWatch().secretsFreed = 0;
  use();
  memoryWatch().secret = {};
  return memoryWatch().secretsFreed;
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
              EXPECT_TRUE(text.get_SecureClear());
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
              bytes.getEncoded("qp");
              bytes.appendEncoded(secret.c_str(), "qp");
              CkString text;
              text.put_SecureClear(true);
              bytes.encode("qp", text);
            }),
            0);
}

constexpr int kTextPages[] = {1251,  932,   949,   1200,  12000, 20127,
                              50220, 50222, 50225, 55000, 65000};

TEST(WipingTest, ConversionsAndCodersLeaveNoSecret) {
  std::string secret;
  for (int i = 0; i < 30; ++i) secret += longSecret();
  LogNull log;
  for (const int page : kTextPages) {
    EXPECT_EQ(leaks([&] {
                DataBuffer there;
                DataBuffer back;
                there.setSecure(true);
                back.setSecure(true);
                EncodingConvert().EncConvert(65001, page, secret.data(), secret.size(), there, log);
                EncodingConvert().EncConvert(page, 65001, there.getData2(), there.getSize(), back,
                                             log);
              }),
              0)
        << page;
  }
  for (int encoding = 1; encoding <= 26; ++encoding) {
    EXPECT_EQ(leaks([&] {
                DataBuffer bytes;
                bytes.setSecure(true);
                bytes.append(secret.data(), secret.size());
                XString text;
                text.setSecureX(true);
                _clsEncode coder;
                coder.put_EncodingModeInt(encoding);
                coder.encodeBinary(bytes, text, false, log);
                coder.decodeBinary(text, bytes, false, log);
              }),
              0)
        << encoding;
  }
}

/// Runs `use` with memory for 0, 1, 2, ... allocations until there was enough: nothing may
/// crash, throw or leak on the way.
template <typename Use>
void withShrinkingMemory(Use use) {
  for (int available = 0; available < 1000; ++available) {
    EncodingConvert::cleanupMemory();  // so that each round needs the same
    const MemoryShortage shortage(available);
    use();
    if (!shortage.isHit()) return;
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

TEST(AllocationTest, WhatLacksMemoryIsNoSuccess) {
  const std::string text(3000, 'x');
  LogNull log;
  const auto isText = [&](const DataBuffer& bytes) { return bytes.equals2(text.data(), 3000); };
  for (const int page : kTextPages) {
    bool honest = true;
    withShrinkingMemory([&] {
      DataBuffer there;
      DataBuffer back;
      const bool whole =
          EncodingConvert().EncConvert(65001, page, text.data(), text.size(), there, log) &&
          EncodingConvert().EncConvert(page, 65001, there.getData2(), there.getSize(), back, log);
      honest = honest && (!whole || isText(back));
    });
    EXPECT_TRUE(honest) << page;
  }
  for (int encoding = 1; encoding <= 26; ++encoding) {
    bool honest = true;
    withShrinkingMemory([&] {
      DataBuffer bytes;
      XString encoded;
      _clsEncode coder;
      coder.put_EncodingModeInt(encoding);
      const bool whole = bytes.append(text.data(), text.size()) &&
                         coder.encodeBinary(bytes, encoded, false, log) &&
                         coder.decodeBinary(encoded, bytes, false, log);
      honest = honest && (!whole || isText(bytes));
    });
    EXPECT_TRUE(honest) << encoding;
  }
}

/// Cut perhaps, or not there, yet with an end: what lies behind the block is no part of the text.
template <typename Char>
void holdsOnly(Char expected, const Char* text) {
  if (text == nullptr) return;
  const std::basic_string_view<Char> characters = text;
  EXPECT_EQ(characters.find_first_not_of(expected), characters.npos);
}

TEST(AllocationTest, StringsLiveOnWithoutMemory) {
  Psdk::setAnsiCodePage(1251);
  const std::string piece(500, '\xC2');
  withShrinkingMemory([&] {
    CkString text(piece.c_str());
    CkString copy(text);
    copy.appendStr(text);
    copy.getUtf8();
    holdsOnly(L'\u0412', copy.getUnicode());
    holdsOnly(u'\u0412', reinterpret_cast<const char16_t*>(copy.getUtf16()));
    copy.getEnc("koi8-r");
    copy.base64Encode("utf-8");
    copy.base64Decode("utf-8");
    copy.compareStr(text);
    holdsOnly(L'\u0412', text.getUnicode());
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
  {
    const MemoryShortage shortage(1);
    EXPECT_TRUE(bytes.append("abc", 3));
    EXPECT_EQ(bytes.getBufSize(), 20'000U);
    EXPECT_FALSE(bytes.appendCharN('x', 30'000));
  }
  EXPECT_EQ(bytes.getSize(), 3U);
}

}  // namespace
