#include <sys/stat.h>

#include <new>
#include <string>

#include <gtest/gtest.h>

#include "CkByteData.h"
#include "CkString.h"
#include "DataBuffer.h"
#include "DataFile.h"
#include "HexBytes.h"
#include "StringBuffer.h"
#include "TempFolder.h"
#include "TextTesting.h"

namespace {

TEST(DataBufferTest, GrowsByTheLadder) {
  struct Step {
    std::uint32_t size, piece, capacity;
  };
  const Step steps[] = {{0, 1, 20'000},
                        {0, 20'000, 20'000},
                        {0, 20'001, 20'001},
                        {50'000, 1, 100'000},
                        {60'000, 55'000, 115'000},
                        {100'000, 1, 200'000},
                        {999'999, 1, 1'099'999},
                        {1'000'000, 1, 2'000'000},
                        {1'000'000, 2'500'000, 3'500'000},
                        {12'000'000, 1, 24'000'000}};
  for (const Step& step : steps) {
    DataBuffer buffer;
    ASSERT_TRUE(buffer.ensureBuffer(step.size) || step.size == 0);
    ASSERT_TRUE(buffer.appendCharN('x', 0));
    buffer.setDataSize_CAUTION(step.size);
    const std::string piece(step.piece, 'y');
    ASSERT_TRUE(buffer.append(piece.data(), piece.size()));
    EXPECT_EQ(buffer.getBufSize(), step.capacity) << step.size << " + " << step.piece;
    EXPECT_EQ(buffer.getSize(), step.size + step.piece);
  }
}

TEST(DataBufferTest, RefusesSizesBeyond32Bits) {
  DataBuffer buffer;
  buffer.append("abc", 3);
  const char byte = 'x';
  EXPECT_FALSE(buffer.append(&byte, std::size_t{1} << 32));
  EXPECT_FALSE(buffer.append(&byte, 0xFFFFFFFF));
  EXPECT_EQ(buffer.getAppendPtr(0xFFFFFFFD), nullptr);
  EXPECT_FALSE(buffer.appendCharN('x', 0xFFFFFFFD));
  EXPECT_EQ(toString(buffer), "abc");
}

TEST(DataBufferTest, BorrowedMemoryIsReadInPlaceAndNeverFreed) {
  char memory[] = "borrowed";
  DataBuffer buffer;
  buffer.append("own", 3);
  buffer.borrowData(memory, 8);
  EXPECT_EQ(buffer.getData2(), reinterpret_cast<unsigned char*>(memory));
  ASSERT_TRUE(buffer.append("!", 1));
  EXPECT_NE(buffer.getData2(), reinterpret_cast<unsigned char*>(memory));
  EXPECT_EQ(toString(buffer), "borrowed!");

  buffer.borrowData(memory, 8);
  buffer.clear();
  EXPECT_EQ(buffer.getData2(), nullptr);
  EXPECT_EQ(buffer.getBufSize(), 0U);

  buffer.borrowData(memory, 0);
  EXPECT_EQ(buffer.getData2(), reinterpret_cast<unsigned char*>(memory));

  // A text that takes a borrowed block over gets a copy, a secure one too.
  char terminated[] = "text";
  buffer.setSecure(true);
  buffer.borrowData(terminated, sizeof terminated - 1);
  StringBuffer text;
  EXPECT_TRUE(text.takeFromDb(buffer));
  EXPECT_STREQ(text.getString(), "text");
  EXPECT_STREQ(terminated, "text");
  EXPECT_STREQ(memory, "borrowed");
}

TEST(DataBufferTest, AnObjectThatHasEndedIsNotWritten) {
  alignas(DataBuffer) unsigned char memory[sizeof(DataBuffer)];
  auto* const bytes = new (memory) DataBuffer;
  bytes->~DataBuffer();
  EXPECT_FALSE(bytes->append("x", 1));
  EXPECT_FALSE(bytes->ensureBuffer(1));
  EXPECT_FALSE(bytes->copyData("x", 1));
  EXPECT_FALSE(bytes->resize(1));
  EXPECT_EQ(bytes->getAppendPtr(1), nullptr);
  EXPECT_FALSE(bytes->loadFileUtf8("/dev/null", nullptr));
  bytes->takeData(ckNewUnsignedChar(1), 1);
  EXPECT_EQ(bytes->getData2(), nullptr);
}

TEST(DataBufferTest, RecognisesObviousEncodings) {
  const auto detected = [](const std::string& bytes) {
    DataBuffer buffer;
    buffer.append(bytes.data(), bytes.size());
    return buffer.detectObviousCodePage();
  };
  for (const fixture::DataRow& row : fixture::dataRows("obvious_code_pages.txt")) {
    EXPECT_EQ(detected(fixture::characters(row.left)), std::stoi(row.right)) << row.left;
  }
  // More than 32 NUL bytes settle it, however many others there are.
  for (const std::size_t first : {0U, 1U}) {
    std::string bytes(800, 'a');
    for (std::size_t i = first; i < 66; i += 2) bytes[i] = '\0';
    EXPECT_EQ(detected(bytes), first == 1 ? 1200 : 1201);
  }
}

TEST(CkByteDataTest, GivesAPointerEvenWhenEmpty) {
  CkByteData bytes;
  EXPECT_NE(bytes.getBytes(), nullptr);
  EXPECT_EQ(bytes.getSize(), 0U);
  EXPECT_TRUE(bytes.append2(nullptr, 5));
  EXPECT_TRUE(bytes.append2("x", 0));
  EXPECT_TRUE(bytes.append2("x", 1));
  bytes.clear();
  EXPECT_EQ(bytes.getImpl()->getBufSize(), 0U);
  EXPECT_TRUE(bytes.append2("x", 1));
  EXPECT_EQ(bytes.getImpl()->getBufSize(), 20'000U);
}

TEST(CkByteDataTest, WritesAndReshapes) {
  const auto after = [](auto change) {
    CkByteData bytes;
    bytes.append2("abcde", 5);
    CkByteData other;
    other.append2("01234", 5);
    change(bytes, other);
    return std::string(bytes.getData(), bytes.getSize());
  };
  using Data = CkByteData;
  EXPECT_EQ(after([](Data& b, Data& o) { b.appendRange(o, 3, 9); }), "abcde34");
  EXPECT_EQ(after([](Data& b, Data& o) { b.appendRange(o, 5, 1); }), "abcde");
  EXPECT_EQ(after([](Data& b, Data& o) { b.takeByteData(o), b.append(o); }), "01234");
  EXPECT_EQ(after([](Data& b, Data&) { b.setImpl(nullptr); }), "abcde");
  EXPECT_EQ(after([](Data& b, Data& o) { o.getRange(3, 9, b); }), "34");
  EXPECT_EQ(after([](Data& b, Data& o) { o.getRange(5, 1, b); }), "");
  EXPECT_EQ(after([](Data& b, Data&) { EXPECT_FALSE(b.ensureBuffer(1UL << 32)); }), "abcde");
}

TEST(CkByteDataTest, GoesToAFileAndBack) {
  const fixture::TempFolder folder;
  CkByteData bytes;
  bytes.append2("a\0b", 3);
  ASSERT_TRUE(bytes.saveFile(folder.file("saved").c_str()));
  EXPECT_TRUE(bytes.appendFile(folder.file("saved").c_str()));
  EXPECT_FALSE(bytes.appendFile(folder.file("missing").c_str()));
  EXPECT_FALSE(bytes.saveFile(folder.path().c_str()));
  EXPECT_TRUE(bytes.equals2("a\0ba\0b", 6));
  EXPECT_TRUE(bytes.loadFile(folder.file("saved").c_str()));
  EXPECT_TRUE(bytes.equals2("a\0b", 3));

  // What isn't there, a pipe that no one writes to, files that give more and less than their size
  // says.
  const std::string pipe = folder.file("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& path : {folder.file("missing"), pipe, std::string("/proc/self/maps"),
                                  std::string("/sys/devices/system/cpu/online")}) {
    EXPECT_FALSE(bytes.loadFile(path.c_str())) << path;
    EXPECT_TRUE(bytes.equals2("a\0b", 3)) << path;
  }

  const AnsiIs ansi(1251);
  ASSERT_TRUE(bytes.saveFile(folder.file("\xC2\xE5\xF1").c_str()));
  bytes.put_Utf8(true);
  EXPECT_TRUE(bytes.loadFile(folder.file("Вес").c_str()));
}

TEST(CkByteDataTest, ReadsNumbersAndRanges) {
  CkByteData bytes;
  bytes.append2("\x01\x02\x03\x04\xFF", 5);
  EXPECT_EQ(bytes.getInt(2), 0);
  EXPECT_EQ(bytes.getShort(3), static_cast<short>(0xFF04));
  EXPECT_EQ(bytes.getByte(4), 0xFF);
  EXPECT_EQ(bytes.getByte(5), 0);
  EXPECT_EQ(bytes.getDataAt(5), nullptr);
  EXPECT_EQ(bytes.getUInt(0xFFFFFFFFFFFFFFFE), 0U);
  EXPECT_STREQ(bytes.getEncoded("hex"), "01020304FF");
  EXPECT_STREQ(bytes.getEncodedRange("hex", 9, 3), "");
  EXPECT_EQ(bytes.findBytes2("\x03\x04", 2), 2U);
  EXPECT_EQ(bytes.findBytes2("\x05", 1), 0xFFFFFFFFU);
  CkByteData part;
  part.append2("\x01\x02", 2);
  EXPECT_EQ(bytes.findBytes(part), 0);
  EXPECT_EQ(part.findBytes(bytes), -1);
  bytes.append(part);
  bytes.byteSwap4321();
  EXPECT_STREQ(bytes.getEncoded("hex"), "04030201FF0102");  // a rest stays
}

}  // namespace
