#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include <gtest/gtest.h>

#include "DataFile.h"
#include "HexBytes.h"
#include "ModelsUnderTest.h"

// Every driver against its table of frames, and against what else may come.

namespace {

/// In a heap block of just its length, so that the address sanitizer sees a read of the first byte
/// behind it.
fixture::Bytes tight(Frame bytes) { return {bytes.begin(), bytes.end()}; }

/// The rows of a model in tests/data/frames.txt; the first one is good. Wrong lengths stand there
/// only where length is nearly all that is checked: the tests below try them with every model.
std::vector<fixture::DataRow> rowsOf(int model) {
  static const std::vector<fixture::DataRow> all = fixture::dataRows("frames.txt");
  std::vector<fixture::DataRow> rows;
  std::ranges::copy_if(all, std::back_inserter(rows), [&](const fixture::DataRow& row) {
    return row.heading == "model " + std::to_string(model);
  });
  return rows;
}

class FrameTable : public testing::TestWithParam<int> {
 protected:
  const ProtocolSheet& sheet_ = sheetOf(GetParam());

  /// Whatever bytes come: nothing outside them is read, no frame of a wrong length is taken, and
  /// the caller gets something to live with.
  void judge(const fixture::Bytes& bytes) {
    const fixture::Bytes frame = tight(bytes);
    if (!isGood(sheet_, frame)) return;
    SCOPED_TRACE(fixture::hex(frame));
    ASSERT_GE(bytes.size(), shortestFrame(sheet_));
    Outputs outputs;
    const Outcome outcome = parse(sheet_, frame, outputs);
    EXPECT_TRUE(std::isfinite(outputs.weight) && std::isfinite(outputs.price) &&
                std::isfinite(outputs.cost));
    constexpr std::array kCodes = {kSuccess, kNoConnection, kNoAnswer, kOverload, kUnknown};
    EXPECT_TRUE(std::ranges::count(kCodes, outcome.code) == 1);
  }
};

TEST_P(FrameTable, SaysWhatTheProtocolSays) {
  constexpr double kOfCaller = -77.5;
  int bad = 0;
  for (const fixture::DataRow& row : rowsOf(GetParam())) {
    SCOPED_TRACE(row.left + " (" + row.remark + ")");
    const fixture::Bytes frame = tight(fixture::bytes(row.left));
    auto says = fixture::dataFields(row.right);
    Outputs outputs = outputsAtEntry(sheet_, {kOfCaller, kOfCaller, kOfCaller});
    Outputs expected = outputs;
    takeMotionOfAnyFrame(sheet_, frame, outputs);
    ASSERT_EQ(isGood(sheet_, frame), !says.contains("refused"));
    if (says.contains("refused")) {
      ++bad;
      expected.stable = expected.stable || says.contains("stable");
    } else {
      const Outcome outcome = parse(sheet_, frame, outputs);
      EXPECT_EQ(outcome.code, says.contains("code") ? std::stoi(says["code"]) : 0);
      EXPECT_EQ(outcome.next == Outcome::Next::AskAgain, says.contains("ask"));
      EXPECT_EQ(outcome.next == Outcome::Next::HangUp, says.contains("hang"));
      const auto number = [&](const char* name) {
        return says.contains(name) ? std::stod(says[name]) : 0.0;
      };
      expected = {number("weight"), number("price"), number("cost"), says.contains("stable")};
      // What a driver doesn't speak of stays as it was.
      if (sheet_.atEntry != AtEntry::AllZero && !sheet_.price.exists() && sheet_.judge == nullptr) {
        expected.price = expected.cost = kOfCaller;
      }
    }
    EXPECT_DOUBLE_EQ(outputs.weight, expected.weight);
    EXPECT_DOUBLE_EQ(outputs.price, expected.price);
    EXPECT_DOUBLE_EQ(outputs.cost, expected.cost);
    EXPECT_EQ(outputs.stable, expected.stable);
  }
  EXPECT_GE(bad, 2) << "a driver without frames to prove it";
}

TEST_P(FrameTable, PartsOfFramesAndMore) {
  for (const fixture::DataRow& row : rowsOf(GetParam())) {
    fixture::Bytes bytes = fixture::bytes(row.left);
    bytes.push_back('0');
    for (; !bytes.empty(); bytes.pop_back()) judge(bytes);
    judge(bytes);
  }
}

TEST_P(FrameTable, EveryByteDamaged) {
  fixture::Bytes bytes = fixture::bytes(rowsOf(GetParam()).front().left);
  for (std::uint8_t& byte : bytes) {
    const std::uint8_t sound = byte;
    for (int value = 0; value < 256; ++value) {
      byte = static_cast<std::uint8_t>(value);
      judge(bytes);
    }
    byte = sound;
  }
}

INSTANTIATE_TEST_SUITE_P(Model, FrameTable, testing::ValuesIn(modelsWithSheet()), numberOfModel);

/// Of a text longer than any number the first 50 characters count. In model 26 a dash makes it
/// negative even from behind them.
TEST(LongAnswers, CountWithTheirHead) {
  fixture::Bytes keli = fixture::bytes("02 'NW:'");
  keli.resize(299, '1');
  keli.push_back(0x03);
  fixture::Bytes hbm(300, ' ');
  hbm[49] = '7';
  hbm[50] = '5';
  hbm[299] = '-';
  const struct {
    int model;
    const fixture::Bytes& bytes;
    double weight;
  } rows[] = {{16, keli, 11111111111111111111111111111111111111111111111111.0}, {26, hbm, -7.0}};
  for (const auto& row : rows) {
    const fixture::Bytes frame = tight(row.bytes);
    Outputs outputs;
    ASSERT_TRUE(isGood(sheetOf(row.model), frame));
    parse(sheetOf(row.model), frame, outputs);
    EXPECT_DOUBLE_EQ(outputs.weight, row.weight);
  }
}

std::string sourceOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The answers that are drawn over the sheets are the first of each model's rows.
TEST(DrawnAnswers, AreTheFirstRows) {
  std::set<std::string> drawn;
  static const std::regex kDrawing(R"(\n// \w+: (?:.*\n//)*?   < ([0-9A-F ]+)\n)");
  for (const auto& file : std::filesystem::directory_iterator(ORBELO_DRIVERS)) {
    const std::string text = sourceOf(file.path());
    for (std::sregex_iterator at(text.begin(), text.end(), kDrawing), end; at != end; ++at) {
      drawn.insert((*at)[1]);
    }
  }
  std::set<std::string> first;
  for (const int model : modelsWithSheet()) {
    first.insert(fixture::hex(fixture::bytes(rowsOf(model).front().left)));
  }
  EXPECT_EQ(drawn, first);
}

}  // namespace
