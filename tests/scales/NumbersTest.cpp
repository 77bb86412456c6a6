#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Numbers.h"

namespace {

TEST(Numbers, IGatofReadsWhatScalesAndPeopleWrite) {
  struct Row {
    std::string text;
    double value;
  };
  const std::vector<Row> rows = {
      {"0", 0.0},
      {"12", 12.0},
      {"12 ", 12.0},
      {"007", 7.0},
      {"1.5", 1.5},
      {"1,5", 1.5},
      {".5", 0.5},
      {",25", 0.25},
      {"5.", 5.0},
      {"  -12,5kg", -12.5},
      {"- 3", -3.0},
      {"--3", -3.0},
      {" - - 3", -3.0},
      {"-.5", -0.5},
      {"1.2.3", 1.2},
      {"1..2", 1.0},
      {"1 2", 1.0},
      {"1-2", 1.0},
      {"1. 2", 1.0},
      {". 5", 0.5},  // before a whole digit blanks are stepped over, also behind the separator
      {".-5", -0.5},
      {".5 5", 0.55},
      {"abc", 0.0},
      {"+1", 0.0},
      {"\t1", 0.0},
      {"", 0.0},
      {"-", 0.0},
      {".", 0.0},
      {"0.001", 0.001},
      {"123456789.125", 123456789.125},
      {std::string(49, ' ') + "7", 7.0},
      {std::string(50, ' ') + "7", 0.0},
      {std::string(48, ' ') + "789", 78.0},
      {std::string(60, '1'), 1.1111111111111111e49},
      {"0." + std::string(60, '1'), 1111111111.0 / 1e10 + 1.11111111e-11},
  };
  for (const Row& row : rows) {
    EXPECT_DOUBLE_EQ(iGatof(row.text.c_str()), row.value) << '"' << row.text << '"';
    EXPECT_DOUBLE_EQ(iGatof(std::string_view(row.text)), row.value) << '"' << row.text << '"';
  }
  EXPECT_EQ(iGatof(nullptr), 0.0);
  EXPECT_TRUE(std::signbit(iGatof("-0")));
}

TEST(Numbers, IGatofStaysWithinItsText) {
  const std::vector<char> noEnd(50, '9');  // nothing behind the 50th character is looked at
  EXPECT_DOUBLE_EQ(iGatof(noEnd.data()), 1e50);
  EXPECT_EQ(iGatof(std::string_view("12\0005", 4)), 12.0);
  EXPECT_EQ(iGatof(std::string_view(noEnd.data(), 2)), 99.0);
}

TEST(Numbers, CutsTowardsZero) {
  constexpr std::int64_t kLowest64 = std::numeric_limits<std::int64_t>::min();
  constexpr std::int32_t kLowest32 = std::numeric_limits<std::int32_t>::min();
  struct Row {
    double value;
    std::int64_t cut64;
    std::int32_t cut32;
  };
  for (const Row& row : {
           Row{0.0, 0, 0},
           Row{3125.9, 3125, 3125},
           Row{-3125.9, -3125, -3125},
           Row{2147483647.5, 2147483647, 2147483647},
           Row{2147483648.0, 2147483648, kLowest32},
           Row{-2147483648.0, -2147483648, kLowest32},
           Row{-2147483649.5, -2147483649, kLowest32},
           Row{9223372036854774784.0, 9223372036854774784, kLowest32},
           Row{9223372036854775808.0, kLowest64, kLowest32},
           Row{1e300, kLowest64, kLowest32},
           Row{-1e300, kLowest64, kLowest32},
           Row{std::numeric_limits<double>::quiet_NaN(), kLowest64, kLowest32},
           Row{std::numeric_limits<double>::infinity(), kLowest64, kLowest32},
       }) {
    EXPECT_EQ(cutTo64(row.value), row.cut64) << row.value;
    EXPECT_EQ(cutTo32(row.value), row.cut32) << row.value;
  }
}

}  // namespace
