#include "Drivers.h"

// ScalesCAS: ENQ, a pause, DC1, and a frame of text between control bytes. What is no part of a
// number is dropped; a frame without a number is a good zero.
//
//   > 05 ... 11
//   < 06 01 02 53 20 20 31 2E 32 35 30 6B 67 20 03 04
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15
//     fixed    |  weight: "  1.250"    -- -- -- fixed
//              |  `- 46 "F" overload
//              `- 53 "S" stable
constinit const ProtocolSheet kSheetOfCAS = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = {0x05}, .pause_ms = 150, .second = {0x11}},
    .read = StartByteRead{.length = 16, .start = {0x06}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{1, 0x01}, {2, 0x02}, {14, 0x03}, {15, 0x04}},
    .weight = {.at = 4,
               .size = 7,
               .written = TextNotation{.blank = Take::Drop, .other = Take::Drop}},
    .motion = atRestIf(byteIs(3, 'S')),
    .overload = byteIs(4, 'F'),
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// ScalesBTHE_SDL_07: the frame of ScalesCAS, in which a blank is a zero, and a frame without a
// number an overload that may be stable.
constinit const ProtocolSheet kSheetOfBTHE_SDL_07 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = {0x05}, .pause_ms = 150, .second = {0x11}},
    .read = StartByteRead{.length = 16, .start = {0x06}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{1, 0x01}, {2, 0x02}, {14, 0x03}, {15, 0x04}},
    .weight = {.at = 4,
               .size = 7,
               .written = TextNotation{.blank = Take::Zero, .other = Take::Drop}},
    .motion = atRestIf(byteIs(3, 'S')),
    .overload = byteIs(4, 'F'),
    .withoutWeight = kOverload,
    .weightUnit = WeightUnit::Kilogram,
    .commands = kNoCommands,
};

// ScalesCASLP16: binary fields, low byte first.
//
//   > 01 ... 89
//   < 01 80 AA 40 E2 04 C4 09 00 00 35 0C 00 00 00 00 00 00
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17
//     fixed    |  1250  price: 2500 cost: 3125  -- -- -- --
//              `- 01 overload, 40 stable, 80 negative
constinit const ProtocolSheet kSheetOfCASLP16 = {
    .line = k8N1,
    .atEntry = AtEntry::AllZero,
    .drainSize = kSmallDrain,
    .request = {.first = {0x01}, .pause_ms = 150, .second = {0x89}},
    .read = StartByteRead{.length = 18, .start = {0x01}, .wrongByte = kCostsAsSilence},
    .asking = kThreeTimes_500ms,
    .fixed = {{1, 0x80}, {2, 0xAA}},
    .weight = {.at = 4,
               .size = 2,
               .written = BinaryNotation{std::endian::little, false},
               .negative = bitOf(3, 0x80)},
    .price = {.at = 6, .size = 4, .written = BinaryNotation{std::endian::little, true}},
    .cost = {.at = 10, .size = 4, .written = BinaryNotation{std::endian::little, true}},
    .motion = atRestIf(bitOf(3, 0x40)),
    .overload = bitOf(3, 0x01),
    .weightUnit = WeightUnit::AsShown,
    .moneyUnit = MoneyUnit::AsCounted,
    .commands = kNoCommands,
};

// ScalesBTHE_UNS_2: bare binary digits, units first. `stable` isn't the scale's word: it is 1 until
// a frame has come and 0 from then on.
//
//   > 2A 03
//   < 00 05 02 01 00 00 00 00 05 02 00 00 05 02 01 03 00 00
//     00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17
//     weight: 1.250     price: 25.00      cost: 31.25
constinit const ProtocolSheet kSheetOfBTHE_UNS_2 = {
    .line = k8N1,
    .atEntry = AtEntry::Stable,
    .drainSize = kLargeDrain,
    .request = {.first = {0x2A, 0x03}},
    .read = LengthRead{.length = 18},
    .asking = kAlwaysThreeTimes_300ms,
    .fixed = kNothingFixed,
    .weight = {.at = 0, .size = 6, .written = kValuesUnitsFirst, .step = 0.001},
    .price = {.at = 6, .size = 6, .written = kValuesUnitsFirst, .step = 0.01},
    .cost = {.at = 12, .size = 6, .written = kValuesUnitsFirst, .step = 0.01},
    .motion = kAlwaysMoving,
    .weightUnit = WeightUnit::Kilogram,
    .moneyUnit = MoneyUnit::Whole,
    .commands = {.tare = Command{.bytes = {0x2A, 0x01}, .pause_ms = 150},
                 .price = PriceCommand{.head = {.bytes = {0x2A, 0x02}, .pause_ms = 0}, .zero = 0}},
};
