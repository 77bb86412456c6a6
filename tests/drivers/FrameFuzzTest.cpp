#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string_view>
#include <variant>

#include <gtest/gtest.h>

#include "FrameRows.h"
#include "ModelsUnderTest.h"

// Whatever bytes come in: no driver reads outside them, none takes a frame of a wrong length, and
// each says something that a caller can live with.

namespace {

/// The lengths that a read style can bring and a check may take.
bool mayBeGood(const ReadStyle& style, std::size_t length) {
  if (const auto* read = std::get_if<TerminatorRead>(&style)) {
    return length >= read->minLength && length <= read->capacity;
  }
  return std::visit(
      [&](const auto& read) {
        if constexpr (requires { read.length; }) return length == read.length;
        return false;
      },
      style);
}

class FrameFuzz : public testing::TestWithParam<int> {
 protected:
  const ProtocolSheet& sheet_ = sheetOf(GetParam());
  std::mt19937 random_{static_cast<unsigned>(GetParam())};

  unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
  std::uint8_t anyByte() { return static_cast<std::uint8_t>(below(256)); }

  fixture::Bytes goodFrame() const { return fixture::bytes(frameRowsOf(GetParam()).front().frame); }

  void judge(const fixture::Bytes& bytes) {
    const TightFrame frame(bytes);
    SCOPED_TRACE("model " + std::to_string(GetParam()) + ": " + fixture::hex(frame));
    Reading reading;
    if (sheet_.glance != nullptr) sheet_.glance(frame, reading);
    if (!sheet_.isGood(frame)) return;
    ASSERT_TRUE(mayBeGood(sheet_.read, bytes.size()));
    const Outcome outcome = sheet_.parse(frame, reading);
    EXPECT_TRUE(std::isfinite(reading.weight) && std::isfinite(reading.price) &&
                std::isfinite(reading.cost));
    EXPECT_TRUE(reading.stable == 0 || reading.stable == 1);
    constexpr std::array kCodes = {kSuccess, kNoConnection, kNoAnswer, kOverload, kUnknown};
    EXPECT_NE(std::find(kCodes.begin(), kCodes.end(), outcome.code), kCodes.end());
  }
};

TEST_P(FrameFuzz, PartsOfFramesAndMore) {
  for (const FrameRow& row : frameRowsOf(GetParam())) {
    fixture::Bytes bytes = fixture::bytes(row.frame);
    bytes.push_back('0');
    for (; !bytes.empty(); bytes.pop_back()) judge(bytes);
    judge(bytes);
  }
}

TEST_P(FrameFuzz, EveryByteDamaged) {
  fixture::Bytes bytes = goodFrame();
  for (std::uint8_t& byte : bytes) {
    const std::uint8_t sound = byte;
    for (int value = 0; value < 256; ++value) {
      byte = static_cast<std::uint8_t>(value);
      judge(bytes);
    }
    byte = sound;
  }
}

TEST_P(FrameFuzz, RandomBytesOfEveryLength) {
  for (std::size_t length = 0; length <= kMaxFrame; ++length) {
    for (int i = 0; i < 3; ++i) {
      fixture::Bytes bytes(length);
      for (std::uint8_t& byte : bytes) byte = anyByte();
      judge(bytes);
    }
  }
}

/// Bytes that no check looks at may be anything. They are mostly what numbers are made of, so that
/// every branch of a parse is met.
TEST_P(FrameFuzz, RandomBytesBetweenTheFixedOnes) {
  constexpr std::string_view kUsual = "0123456789-., +=?F";
  const fixture::Bytes good = goodFrame();
  std::vector<std::size_t> free;
  for (std::size_t i = 0; i < good.size(); ++i) {
    fixture::Bytes bytes = good;
    bytes[i] ^= 0x55;
    if (sheet_.isGood(TightFrame(bytes))) free.push_back(i);
  }
  // Under a checksum no byte is free by itself.
  const bool underChecksum = free.empty();
  for (std::size_t i = 1; underChecksum && i < good.size(); ++i) free.push_back(i);

  for (int i = 0; i < (underChecksum ? 20000 : 1000); ++i) {
    fixture::Bytes bytes = good;
    for (const std::size_t position : free) {
      bytes[position] =
          below(4) == 0 ? anyByte() : static_cast<std::uint8_t>(kUsual[below(kUsual.size())]);
    }
    if (const auto* read = std::get_if<TerminatorRead>(&sheet_.read)) {
      bytes.insert(bytes.end() - 2, below(read->capacity + 1 - bytes.size()), anyByte());
    }
    judge(bytes);
  }
}

INSTANTIATE_TEST_SUITE_P(Model, FrameFuzz, testing::ValuesIn(modelsWithSheet()), numberOfModel);

}  // namespace
