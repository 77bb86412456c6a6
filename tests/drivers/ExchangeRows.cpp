#include "ExchangeRows.h"

#include <array>

namespace {

constexpr const char* kEven = "Even\\8\\1";

// clang-format off
constexpr auto kRows = std::to_array<ExchangeRow>({
    {.model = 0, .request = "00 00 03", .silence_ms = 900, .atEntry = AtEntry::Stable, .line = kEven, .tare = {"00 00 01", 150}, .price = {"00 00 02 00 05 02 01 00 00"}, .longPrice = "00 00 02 07 06 05 04 03 00"},
    {.model = 1, .request = "3C 00 21 3E", .tare = {"3C 00 54 3E", 150}},
    {.model = 2, .request = "'G1' 0D 0A", .tare = {"'ST' 0D 0A", 150}},
    {.model = 3, .request = "'G01W' 0D 0A", .tare = {"'S01T' 0D 0A", 150}},
    {.model = 4, .request = "3C 00 21 3E", .tare = {"3C 00 54 3E", 150}},
    {.model = 7, .request = "02 40 44 00 04 03"},
    {.model = 8, .request = "'R' 00 00 00", .tare = {"'T'"}, .zero = {"'Z'"}},
    {.model = 9, .request = "'SI' 0D 0A", .attempts = 2, .silence_ms = 1000, .tare = {"'ST' 0D 0A", 150}},
    {.model = 10, .request = "'E'", .silence_ms = 900, .atEntry = AtEntry::Moving, .line = kEven},
    {.model = 11, .request = "'20050027:' 0D 0A"},
    {.model = 12, .request = "02 'AD05' 03"},
    {.model = 13, .request = "05 11", .silence_ms = 3 * (150 + 500)},
    {.model = 14, .request = "01 89", .silence_ms = 3 * (150 + 500)},
    {.model = 16, .request = "02 42 03", .attempts = 2, .silence_ms = 1000, .zero = {"02 45 03"}},
    {.model = 17, .request = "00 00 03 00 00 00 00 00", .silence_ms = 900, .atEntry = AtEntry::Stable, .line = "Even\\8\\2"},
    {.model = 18},
    {.model = 19, .silence_ms = 500},
    {.model = 21, .request = "00 00 03 00 00 00 00 00", .silence_ms = 900, .atEntry = AtEntry::Stable, .tare = {"00 00 01", 150}, .price = {"00 00 02 00 05 02 01 00 00 | 00 00 02 00 05 02 01 00 00", 400}, .longPrice = "00 00 02 07 06 05 04 03 00 | 00 00 02 07 06 05 04 03 00"},
    {.model = 23, .request = "05", .attempts = 2, .silence_ms = 1000},
    {.model = 24, .request = "'XN' 0D 0A", .tare = {"'KTARE' 0D 0A", 150}},
    {.model = 25, .silence_ms = 500},
    {.model = 26, .request = "'S1;MSV?;'", .attempts = 2, .silence_ms = 1000, .tare = {"'S1;TAR;'", 150}},
    {.model = 27, .request = "05 11", .silence_ms = 3 * (150 + 500)},
    {.model = 28, .request = "2A 03", .silence_ms = 900, .atEntry = AtEntry::Stable, .tare = {"2A 01", 150}, .price = {"2A 02 00 05 02 01 00 00"}, .longPrice = "2A 02 07 06 05 04 03 00"},
    {.model = 29, .silence_ms = 500},
    {.model = 30, .request = "00 00 03", .silence_ms = 900, .atEntry = AtEntry::Stable, .line = kEven, .tare = {"00 00 01", 150}, .price = {"00 00 02 '052100'"}, .longPrice = "00 00 02 '765430'"},
    {.model = 31},
    {.model = 33},
    {.model = 34},
    {.model = 35, .request = "'SUI' 0D 0A", .tare = {"'I' 0D 0A", 600}},
    {.model = 36},
    {.model = 37, .request = "'W' 0D", .tare = {"'T' 0D", 150}},
    {.model = 38, .request = "02 'AD05' 03"},
    {.model = 39},
    {.model = 40, .request = "01 03 00 03 00 04 B4 09", .tare = {"01 06 00 01 00 17 98 04", 150}, .zero = {"01 06 00 01 00 17 98 04", 150}},
    {.model = 41, .request = "01 03 00 02 00 03 A4 0B", .silence_ms = 900, .tare = {"01 06 00 07 A5 0B 02 9C", 150}},
});
// clang-format on

}  // namespace

std::span<const ExchangeRow> exchangeRows() { return kRows; }
