// Every frame as the makers' protocols have it, written out by hand, and what the component reads
// from it. Checksums were worked out apart from the code.

#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "ScaleModel.h"

namespace sim {
namespace {

using namespace std::string_literals;

struct FrameCase {
  int model;
  ScaleState state;
  std::string frame;
  Reading reading;
};

std::ostream& operator<<(std::ostream& out, const FrameCase& c) {
  return out << "model " << c.model << ", " << c.state.weight << " kg";
}

std::string hex(const std::string& bytes) {
  std::ostringstream text;
  for (const char c : bytes) {
    text << std::hex << std::setw(2) << std::setfill('0') << int{static_cast<unsigned char>(c)}
         << ' ';
  }
  return text.str();
}

class Frames : public testing::TestWithParam<FrameCase> {};

TEST_P(Frames, AreBuiltAndReadAsTheProtocolSays) {
  const FrameCase& expected = GetParam();
  const ScaleModel* model = findScaleModel(expected.model);
  ASSERT_NE(model, nullptr);
  const Bytes frame = model->frame(expected.state);
  EXPECT_EQ(hex({frame.begin(), frame.end()}), hex(expected.frame));
  const Reading reading = model->expectedReading(expected.state);
  EXPECT_DOUBLE_EQ(reading.weight, expected.reading.weight);
  EXPECT_DOUBLE_EQ(reading.price, expected.reading.price);
  EXPECT_DOUBLE_EQ(reading.cost, expected.reading.cost);
  EXPECT_EQ(reading.stable, expected.reading.stable);
  EXPECT_EQ(reading.code, expected.reading.code);
}

constexpr bool kMoving = false;
constexpr bool kStable = true;

const FrameCase kFrames[] = {
    {0,
     {.weight = 1.25, .price = 12.5},
     "\0\5\2\1\0\0"
     "\0\5\2\1\0\0"
     "\3\6\5\1\0\0"s,
     {1250, 1250, 1563, kStable}},
    // No sign in the frame; a zero cost equals the zero weight and holds.
    {0, {.weight = -1.25}, std::string(18, '\0'), {0, 0, 0, kStable}},
    // 1.001 times 10.00 comes to just below 1001 hundredths, and the numbers don't agree.
    {0,
     {.weight = 1.001, .price = 10},
     "\1\0\0\1\0\0"
     "\0\0\0\1\0\0"
     "\1\0\0\1\0\0"s,
     {1001, 1000, 1001, kStable, 1}},

    {1, {.weight = 1.25}, "<\0  1250\x07>"s, {1250, 0, 0, kStable}},
    {1, {.weight = -1.25, .stable = false}, "<\0 -1250\x03>"s, {-1250, 0, 0, kMoving}},
    {1, {.weight = 12, .decimals = 0}, "<\0    12\x04>"s, {12000, 0, 0, kStable}},

    {2, {.weight = 1.25}, "       1.250\r\n", {1250, 0, 0, kMoving}},
    {2, {.weight = -1.001}, "      -1.001\r\n", {-1000, 0, 0, kMoving}},

    {3, {.weight = 1.25}, "R01W01.250\r\n", {1.25, 0, 0, kMoving}},
    {3, {.weight = -1.25}, "R01N01.250\r\n", {-1.25, 0, 0, kMoving}},
    {3, {.weight = 1.25, .overload = true}, "R01E01.250\r\n", {1.25, 0, 0, kMoving, 1099}},

    {4, {.weight = 1.25, .decimals = 2}, "<\0\0\x01\x25\x06>"s, {1250, 0, 0, kStable}},
    {4, {.weight = -1.25, .stable = false}, "<\0\0\x12\x50\x23>"s, {-1250, 0, 0, kMoving}},

    {7, {.weight = 1.25}, "\x02@D 0012503\1\1\3", {1250, 0, 0, kMoving}},
    {7, {.weight = -12.5, .decimals = 2}, "\x02@D-0012502\1\x0D\3", {-12500, 0, 0, kMoving}},

    {8, {.weight = 1.25}, "w0    1.250\r\n", {1250, 0, 0, kStable}},
    {8, {.weight = -1.25}, "w0   -1.250\r\n", {-1250, 0, 0, kStable}},

    {9, {.weight = 1.25}, "     1.250 kg \r\n", {1250, 0, 0, kStable}},
    {9, {.weight = -1.25}, "-    1.250 kg \r\n", {-1250, 0, 0, kStable}},

    {10, {.weight = 1.25}, "\xE2\x04", {1250, 0, 0, kMoving}},
    {10, {.weight = -0.001}, "\xFF\xFF", {-1, 0, 0, kMoving}},
    {10, {.weight = 40}, "\xFF\x7F", {32767, 0, 0, kMoving}},

    {11, {.weight = 1.25}, "81050027:     1.250 kg\r\n", {1250, 0, 0, kMoving}},
    {11, {.weight = -1.25}, "81050027:-    1.250 kg\r\n", {-1250, 0, 0, kMoving}},

    {12,
     {.weight = 25, .decimals = 0},
     "\x02"
     "AD 000002512\3",
     {25000, 0, 0, kMoving}},
    // With a point the digits run together.
    {12,
     {.weight = -1.25},
     "\x02"
     "AD-001.25000\3",
     {-1250000, 0, 0, kMoving}},

    {13, {.weight = 1.25}, "\6\1\2S  1.250kg\x77\3\4", {1.25, 0, 0, kStable}},
    {13, {.weight = -1.25, .stable = false}, "\6\1\2U-01.250kg\x6C\3\4", {-1.25, 0, 0, kMoving}},
    {13, {.overload = true}, "\6\1\2SF      kg\x19\3\4", {0, 0, 0, kMoving, 7}},
    // What the display can't hold is an overload too.
    {13, {.weight = 1000}, "\6\1\2SF      kg\x19\3\4", {0, 0, 0, kMoving, 7}},

    {14,
     {.weight = 1.25, .price = 12.5},
     "\x01\x80\xAA\x40\xE2\x04\xE2\x04\0\0\x1B\x06\0\0\0\0\0\0"s,
     {1250, 1250, 1563, kStable}},
    {14,
     {.weight = -10, .stable = false},
     "\x01\x80\xAA\x80\x10\x27\0\0\0\0\0\0\0\0\0\0\0\0"s,
     {-10000, 0, 0, kMoving}},
    {14,
     {.weight = 1, .overload = true},
     "\x01\x80\xAA\x41\xE8\x03\0\0\0\0\0\0\0\0\0\0\0\0"s,
     {0, 0, 0, kMoving, 7}},

    {16, {.weight = 1.25}, "\2NW:  1.250kg\3", {1.25, 0, 0, kStable}},
    {16, {.weight = -1.25}, "\2NW:-01.250kg\3", {-1.25, 0, 0, kStable}},

    {17,
     {.weight = 1.25, .price = 12.5},
     "052100"
     "05210"
     "365100",
     {1.25, 12.5, 15.63, kStable}},

    {18,
     {.weight = 1.25},
     "\x7F\1"
     "052!0\1\x26",
     {1.25, 0, 0, kStable}},
    {18,
     {.weight = -1.25, .stable = false},
     "\x7F\1"
     "052!-\0\x3A"s,
     {-1.25, 0, 0, kMoving}},

    {19, {.weight = 1.25}, "\r\nST GS +    1.250 kg\r\n", {1.25, 0, 0, kStable}},
    {19,
     {.weight = -1, .stable = false, .tare = 0.25},
     "\r\nUS NT -    1.250 kg\r\n",
     {-1.25, 0, 0, kMoving}},

    {21,
     {.weight = 1.25, .price = 12.5},
     "052100"
     "05210"
     "365100",
     {1.25, 12.5, 15.63, kStable}},

    {23, {.weight = 1.25}, "\x02\x42\r001.250\r\n", {1.25, 0, 0, kStable}},
    {23, {.weight = -1.25, .stable = false}, "\x02\x44\r001.250\r\n", {-1.25, 0, 0, kMoving}},

    {24, {.weight = 1.25}, "XN\r\n  \n 1.250kg\r\n", {1.25, 0, 0, kStable}},
    // Zeros behind the minus: blanks would count as digits before it.
    {24, {.weight = -1.25}, "XN\r\n-0\n01.250kg\r\n", {-1.25, 0, 0, kStable}},

    {25, {.weight = 1.25}, "\r\nST,GS+  1.250 kg\r\n", {1.25, 0, 0, kStable}},
    {25, {.weight = -1.25, .stable = false}, "\r\nUS,GS-  1.250 kg\r\n", {-1.25, 0, 0, kMoving}},

    {26, {.weight = 1.25}, "   1.250\r\n", {1.25, 0, 0, kMoving}},
    {26, {.weight = -1.25}, "  -1.250\r\n", {-1.25, 0, 0, kMoving}},

    {27, {.weight = 1.25}, "\6\1\2S  1.250kg\x77\3\4", {1.25, 0, 0, kStable}},
    {27, {.overload = true}, "\6\1\2SF      kg\x19\3\4", {0, 0, 0, kMoving, 7}},

    {28,
     {.weight = 1.25, .price = 12.5},
     "\0\5\2\1\0\0"
     "\0\5\2\1\0\0"
     "\3\6\5\1\0\0"s,
     {1.25, 12.5, 15.63, kMoving}},

    {29, {.weight = 1.25}, "=052.100", {1.25, 0, 0, kMoving}},
    {29, {.weight = -1.25}, "=052.10-", {-1.25, 0, 0, kMoving}},

    {30,
     {.weight = 1.25, .price = 12.5},
     "052100"
     "052100"
     "365100",
     {1.25, 1250, 1563, kStable}},

    {31, {.weight = 1.5, .tare = 0.25}, "\x02\x2D\x20 001250000250\r", {1.25, 0, 0, kStable}},
    {31,
     {.weight = -1.25, .decimals = 2, .stable = false},
     "\x02\x2C\x2A 000125000000\r",
     {-1.25, 0, 0, kMoving}},
    // A weight that is not valid is a good zero to the component.
    {31, {.weight = 1.25, .overload = true}, "\x02\x2D\x24 001250000000\r", {0, 0, 0, kMoving}},

    {33, {.weight = 1.25}, "\2 001.250kg \r", {1.25, 0, 0, kStable}},
    {33, {.weight = -1.25, .stable = false}, "\2-001.250kgM\r", {-1.25, 0, 0, kMoving}},

    {34, {.weight = 1.25}, "\2 0012503\1\5\3", {1.25, 0, 0, kMoving}},
    {34, {.weight = -1.25}, "\2-0012503\1\x08\3", {-1.25, 0, 0, kMoving}},

    {35, {.weight = 1.25}, "SUI       1.250 kg \r\n", {1.25, 0, 0, kStable}},
    {35, {.weight = -1.25, .stable = false}, "SUI? -    1.250 kg \r\n", {-1.25, 0, 0, kMoving}},

    {36,
     {.weight = 1.25},
     "+0\xB1"
     "250\r",
     {1.25, 0, 0, kStable}},
    {36, {.weight = -125, .decimals = 0}, "-00125\r", {-125, 0, 0, kStable}},

    {37, {.weight = 1.25}, "     1.250\r\n", {1.25, 0, 0, kMoving}},
    {37, {.weight = -1.25}, "    -1.250\r\n", {-1.25, 0, 0, kMoving}},

    {38,
     {.weight = 1.25},
     "\x02"
     "AD+001.25006\3",
     {1.25, 0, 0, kMoving}},
    {38,
     {.weight = -1.25},
     "\x02"
     "AD-001.25000\3",
     {-1.25, 0, 0, kMoving}},

    {39, {.weight = 1.25}, "\nST,GS,   1.250kg\r", {1.25, 0, 0, kStable}},
    {39, {.weight = -1.25, .stable = false}, "\nUS,GS,  -1.250kg\r", {-1.25, 0, 0, kMoving}},

    {40,
     {.weight = 1.25},
     "\1\3\x08"
     "00012503\x94\x57",
     {1.25, 0, 0, kMoving}},
    {40, {.weight = -12.5, .decimals = 2}, "\1\3\x08-0012502\x95\x02", {-12.5, 0, 0, kMoving}},

    {41, {.weight = 1.25}, "\1\3\6\0\0\x04\xE2\x20\0\x99\xB3"s, {1250, 0, 0, kStable}},
    {41,
     {.weight = -2, .decimals = 0, .stable = false},
     "\1\3\6\xFF\xFF\xFF\xFE\0\0\x70\x8A"s,
     {-2, 0, 0, kMoving}},
};

INSTANTIATE_TEST_SUITE_P(OfAllModels, Frames, testing::ValuesIn(kFrames));

}  // namespace
}  // namespace sim
