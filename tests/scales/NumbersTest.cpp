#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "DataFile.h"
#include "HexBytes.h"
#include "Numbers.h"

namespace {

TEST(Numbers, IGatofReadsWhatScalesAndPeopleWrite) {
  std::vector<std::pair<std::string, double>> rows = {
      {std::string(49, ' ') + "7", 7.0},
      {std::string(50, ' ') + "7", 0.0},
      {std::string(48, ' ') + "789", 78.0},
      {std::string(60, '1'), 1.1111111111111111e49},
      {"0." + std::string(60, '1'), 1111111111.0 / 1e10 + 1.11111111e-11}};
  for (const fixture::DataRow& row : fixture::dataRows("numbers.txt")) {
    rows.emplace_back(fixture::characters(row.left), std::stod(row.right));
  }
  for (const auto& [text, value] : rows) {
    EXPECT_DOUBLE_EQ(iGatof(text.c_str()), value) << '"' << text << '"';
    EXPECT_DOUBLE_EQ(iGatof(std::string_view(text)), value) << '"' << text << '"';
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
