// Looks at blocks when they are freed, counts them, and refuses them on demand.

#include <memory>
#include <new>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "CkByteData.h"
#include "CkString.h"
#include "ClsEncode.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "MemoryWatch.h"
#include "Psdk.h"
#include "RunningShort.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

using fixture::MemoryShortage;
using fixture::memoryWatch;
using fixture::withMoreAndMoreMemory;

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
  EXPECT_EQ(leaks([&] { CkString(secret.c_str()).clear(); }), 1);
}

TEST(WipingTest, AShortSecretInsideItsObjectIsWiped) {
  using End = void (*)(StringBuffer&);
  for (const End end :
       {End{[](StringBuffer& text) { text.~StringBuffer(); }},
        End{[](StringBuffer& text) { text.strongClear(); }},
        End{[](StringBuffer& text) { text.setSecureBuf(false), text.secureClear(); }},
        End{[](StringBuffer& text) {
          text.expectNumBytes(1000), text.setSecureBuf(false), text.clear();
        }}}) {
    alignas(StringBuffer) unsigned char memory[sizeof(StringBuffer)];
    const std::string_view bytes(reinterpret_cast<const char*>(memory), sizeof memory);
    auto* const text = new (memory) StringBuffer(kSecret);
    text->setSecureBuf(true);
    EXPECT_NE(bytes.find(kSecret), bytes.npos);
    end(*text);
    EXPECT_EQ(bytes.find(kSecret), bytes.npos);
  }
}

TEST(WipingTest, SecureObjectsWipeWhateverTheyFree) {
  Psdk::setAnsiCodePage(1251);
  const std::string secret = longSecret();
  EXPECT_EQ(leaks([&] {
              CkString text;
              text.put_SecureClear(true);
              EXPECT_TRUE(text.get_SecureClear());
              text.setStringUtf8(secret.c_str());
              text.getEnc("windows-1251");
              text.getEnc("utf-7");
              text.hexEncode("utf-8");
              text.hexDecode("utf-8");
              text.appendAnsi(secret.c_str());
            }),
            0);
  // Results that just fill their block, shorter ones behind longer ones, and copies.
  EXPECT_EQ(leaks([&] {
              CkByteData bytes;
              bytes.append2(secret.data(), 64);
              for (int i = 0; i < 64; ++i) bytes.appendChar('.');
              bytes.to_s();
              bytes.put_SecureClear(true);
              bytes.getEncoded("qp");
              bytes.getRangeStr(0, 1);
              bytes.appendEncoded(secret.c_str(), "qp");
              CkByteData copy(bytes);
              copy = bytes;
              CkByteData range;
              range.put_SecureClear(true);
              range.setImpl(std::make_unique<DataBuffer>());
              bytes.getRange(0, 100, range);
              CkString text;
              text.put_SecureClear(true);
              bytes.encode("qp", text);
            }),
            0);
  EXPECT_EQ(leaks([&] {
              DataBuffer document;
              document.setSecure(true);
              document.append("\xFF\xFE", 2);
              for (const char c : secret) document.appendChar2(c, '\0');
              LogNull log;
              document.convertXmlToUtf8(log);
              StringBuffer taken;
              taken.takeFromDb(document);
              StringBuffer again;
              again.takeSb(taken);
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

TEST(AllocationTest, ATextThatCannotBeMadeIsAsBeforeAndSaysSo) {
  Psdk::setAnsiCodePage(1251);
  const std::string ansi(500, '\xC2');
  const std::wstring wide(500, L'\u0412');
  CkString other(ansi.c_str());
  CkString from("old");
  using Write = void (*)(CkString&, const char* ansi, const wchar_t* wide, CkString& other);
  constexpr Write kWrites[] = {
      [](CkString& t, const char* a, const wchar_t*, CkString&) { t.setString(a); },
      [](CkString& t, const char*, const wchar_t* w, CkString&) { t.setStringU(w); },
      [](CkString& t, const char*, const wchar_t*, CkString& o) { t.setStr(o); },
      [](CkString& t, const char*, const wchar_t*, CkString& o) { t = o; },
      [](CkString& t, const char* a, const wchar_t*, CkString&) { t.append(a); },
      [](CkString& t, const char*, const wchar_t* w, CkString&) { t.appendU(w); },
      [](CkString& t, const char*, const wchar_t*, CkString& o) { t.appendStr(o); },
      [](CkString& t, const char*, const wchar_t*, CkString& o) { t.replaceAll(t, o); },
  };
  for (const Write write : kWrites) {
    bool refused = false;
    for (int available = 0; available < 20; ++available) {
      CkString text("old");
      other.setString(ansi.c_str());
      bool whole = false;
      {
        const MemoryShortage shortage(available);
        write(text, ansi.c_str(), wide.c_str(), other);
        whole = text.isWhole();
      }
      EXPECT_EQ(text.getSizeAnsi() < 500, !whole);
      if (!whole) {
        EXPECT_STREQ(text.getAnsi(), "old");
      }
      refused = refused || !whole;
    }
    EXPECT_TRUE(refused) << write;
  }
  // A form, a copy, an object.
  CkString text(ansi.c_str());
  const MemoryShortage shortage(0);
  EXPECT_STREQ(text.getEnc("koi8-r"), "");
  EXPECT_FALSE(text.isWhole());
  EXPECT_NE(text.compareStr(from), 0);
  EXPECT_EQ(text.clone(), nullptr);
  CkString dead;
  EXPECT_FALSE(dead.isWhole());
  EXPECT_FALSE(dead.equalsAscii(""));
  EXPECT_EQ(dead.getAnsi(), nullptr);
  EXPECT_EQ(dead.clone(), nullptr);
  from = dead;
  EXPECT_FALSE(from.isWhole());
  CkByteData bytes;
  EXPECT_EQ(bytes.to_s(), nullptr);
  EXPECT_EQ(bytes.getEncoded("hex"), nullptr);
  EXPECT_EQ(bytes.getRangeStr(0, 1), nullptr);
  EXPECT_EQ(bytes.findBytes(bytes), -1);
}

TEST(AllocationTest, WhatLacksMemoryIsNoSuccess) {
  const std::string text(3000, 'x');
  LogNull log;
  const auto isText = [&](const DataBuffer& bytes) { return bytes.equals2(text.data(), 3000); };
  for (const int page : kTextPages) {
    bool honest = true;
    withMoreAndMoreMemory([&](int allocations) {
      EncodingConvert::cleanupMemory();  // so that each round needs the same
      const MemoryShortage shortage(allocations);
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
    withMoreAndMoreMemory([&](int allocations) {
      EncodingConvert::cleanupMemory();
      const MemoryShortage shortage(allocations);
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
