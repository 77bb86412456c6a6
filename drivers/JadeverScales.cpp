#include "Drivers.h"

// ScalesJADEVER_SNUGII: the scale transmits lines by itself; the CR in front is the end of the
// line before.
//
//   < 0D 0A 53 54 20 47 53 20 2D 20 20 20 20 20 20 20 31 2E 32 35 30 0D 0A
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17 18 19 20 21 22
//     CR -- |  -- bl -- -- bl |  -- weight: "      1.250"           CR LF
//           `- 53 stable      `- 2D negative
constinit const ProtocolSheet kSheetOfJADEVER_SNUGII = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kLargeDrain,
    .request = kNoRequest,
    .read = StartByteRead{.length = 23, .start = {'\r'}, .wrongByte = kCostsOne_ms},
    .asking = kThreeTimesIn_500ms,
    .fixed = {{4, ' '}, {7, ' '}, {21, '\r'}, {22, '\n'}},
    .weight = {.at = 10, .size = 11, .written = kUnsignedText, .negative = byteIs(8, '-')},
    .motion = atRestIf(byteIs(2, 'S')),
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// ScalesJADEVER_JPL_N: bare digits as characters, units first. The reader asks on for nothing, so
// that a good poll, too, lasts its whole budget.
//
//   > 00 00 03 00 00 00 00 00
//   < 34 33 32 31 30 30 30 35 32 31 30 30 30 34 35 31 30
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16
//     weight: 1.234     price: 12.50   cost: 154.00
constinit const ProtocolSheet kSheetOfJADEVER_JPL_N = {
    .line = k8N1,
    .atEntry = AtEntry::Stable,
    .drainSize = kLargeDrain,
    .request = {.first = {0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x00, 0x00}},
    .read = LengthRead{.length = 17, .asksOn = true},
    .asking = kThreeTimes_300ms,
    .fixed = kNothingFixed,
    .weight = {.at = 0, .size = 6, .written = kDigitsUnitsFirst, .step = 0.001},
    .price = {.at = 6, .size = 5, .written = kDigitsUnitsFirst, .step = 0.01},
    .cost = {.at = 11, .size = 6, .written = kDigitsUnitsFirst, .step = 0.01},
    .motion = kAlwaysAtRest,
    .weightUnit = WeightUnit::Kilogram,
    .moneyUnit = MoneyUnit::Whole,
    .commands = {.tare = Command{.bytes = {0x00, 0x00, 0x01}, .pause_ms = 150},
                 // A scale that misses the first still gets the price, and one that gets both sees
                 // the same price twice.
                 .price = PriceCommand{.head = {.bytes = {0x00, 0x00, 0x02},
                                                .pause_ms = 200,
                                                .times = 2,
                                                .afterwards = Command::Afterwards::ReadOnce},
                                       .zero = 0}},
};
