#include "FrameRows.h"

#include <algorithm>
#include <array>
#include <climits>

namespace {

// One row a line, so that a driver's table can be read down its columns.
// clang-format off

constexpr auto kAskAgain = Outcome::Next::AskAgain;
constexpr auto kHangUp = Outcome::Next::HangUp;
constexpr Says kRefused = {.good = false};

constexpr auto kRows = std::to_array<FrameRow>({
    // Binary digits, units first: weight, price, cost.
    {0, "00 05 02 01 00 00 | 00 00 05 02 00 00 | 05 02 01 03 00 00", "1250 g at 25.00 cost 31.25", {1250, 2500, 3125, 1}},
    {0, "09 09 09 09 09 09 | 09 09 09 09 09 09 | 08 09 09 09 09 09", "all places full", {999999, 999999, 999998, 1}},
    {0, "00 00 00 00 00 00 | 00 00 00 00 00 00 | 00 00 00 00 00 00", "an empty pan: weight and cost agree, and so does the price", {.stable = 1}},
    {0, "00 00 00 01 00 00 | 00 00 00 01 00 00 | 00 00 00 01 00 00", "weight equals cost: 1 kg at 10.00", {1000, 1000, 1000, 1}},
    {0, "00 00 00 02 00 00 | 00 00 00 01 00 00 | 00 00 00 02 00 00", "weight equals cost: 2 kg at 10.00", {2000, 1000, 2000, 1}},
    {0, "00 00 05 00 00 00 | 01 00 00 01 00 00 | 00 00 05 00 00 00", "weight equals cost: the product 500.5 is cut", {500, 1001, 500, 1}},
    {0, "00 00 05 00 00 00 | 00 00 01 00 00 00 | 00 00 05 00 00 00", "weight equals cost, and the price doesn't fit: handed out, asked again", {500, 100, 500, 1, kNoConnection, kAskAgain}},
    {0, "00 00 05 00 00 00 | 00 00 01 00 00 00 | 00 00 06 00 00 00", "weight differs from cost: the price isn't held against them", {500, 100, 600, 1}},
    {0, "00 05 0A 01 00 00 | 00 00 00 00 00 00 | 00 00 00 00 00 00", "0A is no digit and ends the number in front of it", {1, 0, 0, 1}},
    {0, "05 00 00 00 00 FD | 00 00 00 00 00 00 | 00 00 00 00 00 00", "30 is added modulo 256, so FD is a minus", {-5, 0, 0, 1}},
    {0, "00 05 02 01 00 00 | 00 00 05 02 00 00 | 05 02 01 03 00", "17 bytes", kRefused},
    {0, "00 05 02 01 00 00 | 00 00 05 02 00 00 | 05 02 01 03 00 00 00", "19 bytes", kRefused},

    // "<", address, six characters, status (03 decimal code, 04 stable), ">".
    {1, "3C 00 '001250' 07 3E", "1250 g, stable", {.weight = 1250, .stable = 1}},
    {1, "3C 00 ' 01234' 03 3E", "a blank counts as a zero; moving", {.weight = 1234}},
    {1, "3C 00 ' 01234' 00 3E", "decimal code 0: kilograms", {.weight = 1234000}},
    {1, "3C 00 '001234' 01 3E", "decimal code 1: tenths", {.weight = 123400}},
    {1, "3C 00 '001234' 02 3E", "decimal code 2: hundredths", {.weight = 12340}},
    {1, "3C 7F '001250' FB 3E", "the address and the other status bits aren't looked at", {.weight = 1250}},
    {1, "3C 00 '-00345' 03 3E", "negative", {.weight = -345}},
    {1, "3C 00 '12-345' 03 3E", "a minus throws away the digits before it", {.weight = -345}},
    {1, "3C 00 '1-2-34' 03 3E", "and does so again", {.weight = -34}},
    {1, "3C 00 'kg1.34' 03 3E", "letters and a point count as zeros", {.weight = 1034}},
    {1, "3C 00 '     -' 03 3E", "a minus and no digit", {.weight = 0}},
    {1, "3D 00 '001250' 07 3E", "wrong start", kRefused},
    {1, "3C 00 '001250' 07 3C", "wrong end", kRefused},

    // "<", address, packed digits, status (03 decimal code, 04 stable, 20 negative), ">".
    {4, "3C 00 00 12 50 07 3E", "1250 g, stable", {.weight = 1250, .stable = 1}},
    {4, "3C 00 01 23 45 00 3E", "decimal code 0: kilograms", {.weight = 12345000}},
    {4, "3C 00 01 23 45 01 3E", "decimal code 1: tenths", {.weight = 1234500}},
    {4, "3C 00 01 23 45 21 3E", "negative", {.weight = -1234500}},
    {4, "3C 7F 99 99 99 26 3E", "decimal code 2: hundredths; negative and stable", {.weight = -9999990, .stable = 1}},
    {4, "3C 00 DF 12 34 03 3E", "nibbles D and F are dark places, zeros", {.weight = 1234}},
    {4, "3C 00 0A 12 34 07 3E", "nibble A ends the poll and the connection; the flag stays as the frame has it", {.stable = 1, .code = kNoAnswer, .next = kHangUp}},
    {4, "3C 00 B0 12 34 03 3E", "nibble B too", {.code = kNoAnswer, .next = kHangUp}},
    {4, "3C 00 00 C2 34 03 3E", "nibble C too", {.code = kNoAnswer, .next = kHangUp}},
    {4, "3C 00 00 12 3E 27 3E", "nibble E too, in the last place", {.stable = 1, .code = kNoAnswer, .next = kHangUp}},
    {4, "3C 00 00 12 50 07 3D", "wrong end: the flag has been taken already", {.stable = 1, .good = false}},
    {4, "3D 00 00 12 50 03 3E", "wrong start", kRefused},
    {4, "3C 00 00 12 50 07", "6 bytes: no flag is taken", kRefused},

    // Blank, eleven characters, line end.
    {2, "20 '     1.250 ' 0D 0A", "1250 g", {.weight = 1250}},
    {2, "20 '   12,345  ' 0D 0A", "a comma for the point", {.weight = 12345}},
    {2, "20 '    -12.345' 0D 0A", "the minus stands behind the blanks", {.weight = -12345}},
    {2, "20 '12.345     ' 0D 0A", "no more blanks in front", {.weight = 12345}},
    {2, "20 '      1.001' 0D 0A", "cut, not rounded: 1.001 times 1000 lies below 1001", {.weight = 1000}},
    {2, "20 '      1.2505' 0D", "twelve characters and a CR alone; the half gram is cut", {.weight = 1250}},
    {2, "20 '      1.250' 0A 0D", "the last CR is enough", {.weight = 1250}},
    {2, "20 '           ' 0D 0A", "nothing but blanks: a good zero", {.weight = 0}},
    {2, "20 '    ERROR  ' 0D 0A", "letters: a good zero", {.weight = 0}},
    {2, "20 '      1.250' 20 0A", "LF without CR", kRefused},
    {2, "20 '      1.250' 0D 20", "CR without LF", kRefused},

    // "R", address, kind, sign and number, line end.
    {3, "'R01W-01.25' 0D 0A", "weight, negative", {.weight = -1.25}},
    {3, "'R01W001.25' 0D 0A", "weight", {.weight = 1.25}},
    {3, "'R01W-01.250' 0D", "seven characters and a CR alone", {.weight = -1.25}},
    {3, "'R99W 12.50' 0D 7F", "the byte behind a CR isn't looked at, nor is the address", {.weight = 12.5}},
    {3, "'R01W--1.25' 0D 0A", "two minus signs cancel", {.weight = 1.25}},
    {3, "'R01N01.250' 0D 0A", "a negative weight by its kind", {.weight = -1.25}},
    {3, "'R01N-1.250' 0D 0A", "and a minus turns it round", {.weight = 1.25}},
    {3, "'R01E01.250' 0D 0A", "an error: the number is handed out with it", {.weight = 1.25, .code = kUnknown}},
    {3, "'R01E-1.250' 0D 0A", "a negative one too", {.weight = -1.25, .code = kUnknown}},
    {3, "'R01?01.250' 0D 0A", "an unknown kind: no number", {.code = kUnknown}},
    {3, "'R01W001.25' 20 0A", "no CR", kRefused},
    {3, "'R01W001.2' 0D 0A", "11 bytes", kRefused},
    {3, "'R01W001.250' 0D 0A", "13 bytes", kRefused},

    // Ten characters, four of the unit, CR LF.
    {9, "'-    1.234 kg ' 0D 0A", "-1234 g", {.weight = -1234, .stable = 1}},
    {9, "'     1.234 kg ' 0D 0A", "1234 g", {.weight = 1234, .stable = 1}},
    {9, "'     1 2.5 kg ' 0D 0A", "a blank inside the number is a zero: 102.5 kg", {.weight = 102500, .stable = 1}},
    {9, "'   1.25 kg    ' 0D 0A", "so are the letters of a unit in the field", {.weight = 1250, .stable = 1}},
    {9, "' 12-  3.45 kg ' 0D 0A", "a minus throws away what is before it", {.weight = -3450, .stable = 1}},
    {9, "'    12,345 kg ' 0D 0A", "a comma is a zero, no point", {.weight = 120345000, .stable = 1}},
    {9, "' 99999.999 kg ' 0D 0A", "all places full", {.weight = 99999999, .stable = 1}},
    {9, "'           kg ' 0D 0A", "nothing but blanks", {.weight = 0, .stable = 1}},
    {9, "'     1.234 kg ' 0A 0D", "LF CR", kRefused},
    {9, "'     1.234 kg ' 0D 20", "no LF", kRefused},

    // STX, address, "D", sign, six digits, decimal code, check, ETX.
    {7, "02 40 'D 0012503' '00' 03", "1250 g", {.weight = 1250}},
    {7, "02 40 'D 0012340' '00' 03", "decimal code 0: kilograms", {.weight = 1234000}},
    {7, "02 40 'D 0012341' '00' 03", "decimal code 1: tenths", {.weight = 123400}},
    {7, "02 40 'D 0012342' '00' 03", "decimal code 2: hundredths", {.weight = 12340}},
    {7, "02 40 'D 001234' 00 '00' 03", "any other decimal code: thousandths", {.weight = 1234}},
    {7, "02 7F 'D-0012343' FF FF 03", "negative; address and check aren't looked at", {.weight = -1234}},
    {7, "02 40 'D-0000003' '00' 03", "minus zero", {.weight = 0}},
    {7, "02 40 'D  012343' '00' 03", "a blank in front leaves no number", {.weight = 0}},
    {7, "02 40 'D 12.3453' '00' 03", "the first byte that is no digit ends the number", {.weight = 12}},
    {7, "02 40 'C 0012503' '00' 03", "not the answer to this request", kRefused},
    {7, "02 40 'D 0012503' '00' 04", "no ETX", kRefused},

    // STX, sign, six characters, decimal code, check, ETX.
    {34, "02 ' 0012503' '00' 03", "1.250 kg", {.weight = 1.25}},
    {34, "02 '-0012503' '00' 03", "negative", {.weight = -1.25}},
    {34, "02 ' 0012500' '00' 03", "decimal code 0", {.weight = 1250}},
    {34, "02 ' 0012501' '00' 03", "decimal code 1", {.weight = 125}},
    {34, "02 ' 0012502' '00' 03", "decimal code 2", {.weight = 12.5}},
    {34, "02 ' 0012504' '00' 03", "decimal code 4", {.weight = 0.125}},
    {34, "02 ' 0012505' '00' 03", "decimal code 5 is none", {.weight = 1250}},
    {34, "02 '  1.2500' '00' 03", "a point of its own: not cut", {.weight = 1.25}},
    {34, "02 '--012503' '00' 03", "a minus in the number turns the sign round", {.weight = 1.25}},
    {34, "02 ' 0012503' FF FF 03", "the check isn't looked at", {.weight = 1.25}},
    {34, "03 ' 0012503' '00' 03", "no STX", kRefused},
    {34, "02 ' 0012503' '00' 02", "no ETX", kRefused},

    // "w", mode, nine characters, CR LF.
    {8, "'ww   1.250 ' 0D 0A", "1250 g", {.weight = 1250, .stable = 1}},
    {8, "'w0  -1.234 ' 0D 0A", "negative, whatever blanks are before it", {.weight = -1234, .stable = 1}},
    {8, "'ww 1.234kg ' 0D 0A", "a unit behind the number", {.weight = 1234, .stable = 1}},
    {8, "'ww    1.001' 0D 0A", "cut, not rounded", {.weight = 1000, .stable = 1}},
    {8, "'ww2147483.6' 0D 0A", "the largest that 32 bits hold", {.weight = 2147483600, .stable = 1}},
    {8, "'ww9999999.9' 0D 0A", "too large for 32 bits: their smallest number", {.weight = INT_MIN, .stable = 1}},
    {8, "'ww         ' 0D 0A", "nothing but blanks", {.weight = 0, .stable = 1}},
    {8, "'ww   1.250 ' 0A 0D", "LF CR", kRefused},
    {8, "'ww   1.250 ' 0D 20", "no LF", kRefused},

    // STX, decimal code, status (02 negative, 04 not valid, 08 moving), ., six digits, tare, CR.
    {31, "02 2D 00 20 '001250' '000000' 0D", "1.250 kg, stable", {.weight = 1.25, .stable = 1}},
    {31, "02 2D 0A 20 '001250' '000000' 0D", "negative and moving", {.weight = -1.25}},
    {31, "02 2D 04 20 '001250' '000000' 0D", "not valid: a good zero in motion", {.weight = 0}},
    {31, "02 2D 06 FF '001250' '999999' 0D", "not valid and negative; what else there is isn't looked at", {.weight = 0}},
    {31, "02 2B 00 20 '001250' '000000' 0D", "one decimal", {.weight = 125, .stable = 1}},
    {31, "02 2C 00 20 '001250' '000000' 0D", "two decimals", {.weight = 12.5, .stable = 1}},
    {31, "02 AC 00 20 '001250' '000000' 0D", "two decimals: the top bit is ignored", {.weight = 12.5, .stable = 1}},
    {31, "02 2E 00 20 '001250' '000000' 0D", "four decimals", {.weight = 0.125, .stable = 1}},
    {31, "02 2A 00 20 '001250' '000000' 0D", "any other code: none", {.weight = 1250, .stable = 1}},
    {31, "02 2F 00 20 '001250' '000000' 0D", "any other code: none", {.weight = 1250, .stable = 1}},
    {31, "02 2D 00 20 ' 1.25-' '000000' 0D", "what is no digit is dropped, and the digits close up", {.weight = 0.125, .stable = 1}},
    {31, "02 2D 00 20 '      ' '000000' 0D", "no digit", {.weight = 0, .stable = 1}},
    {31, "03 2D 00 20 '001250' '000000' 0D", "no STX", kRefused},
    {31, "02 2D 00 20 '001250' '000000' 0A", "no CR", kRefused},

    // STX, address, "D", sign, seven characters, check, ETX.
    {12, "02 'AD 0001250' '00' 03", "1250 kg", {.weight = 1250000}},
    {12, "02 'AD-0001250' FF FF 03", "negative", {.weight = -1250000}},
    {12, "02 'AD 12.345 ' '00' 03", "a point is stepped over, and the digits run together", {.weight = 12345000}},
    {12, "02 'AD 15     ' '00' 03", "two digits", {.weight = 15000}},
    {12, "02 'AD 5      ' '00' 03", "one digit is a good zero", {.weight = 0}},
    {12, "02 'AD-5.     ' '00' 03", "the point is no second digit", {.weight = 0}},
    {12, "02 'AD  001250' '00' 03", "a blank in front leaves no number", {.weight = 0}},
    {12, "02 'AD 12-3456' '00' 03", "the first other byte ends the number", {.weight = 12000}},
    {12, "02 'AC 0001250' '00' 03", "not the answer to this request", kRefused},
    {12, "02 'AD 0001250' '00' 02", "no ETX", kRefused},

    // A signed count, low byte first.
    {10, "E2 04", "1250; price and cost are cleared now", {.weight = 1250}},
    {10, "10 27", "10000", {.weight = 10000}},
    {10, "FF FF", "-1", {.weight = -1}},
    {10, "00 80", "the smallest", {.weight = -32768}},
    {10, "FF 7F", "the largest", {.weight = 32767}},
    {10, "10", "1 byte", kRefused},
    {10, "10 27 00", "3 bytes", kRefused},

    // Nine characters, number, CR LF.
    {11, "'81050027:-   1.250' 0D 0A", "blanks inside are stepped over", {.weight = -1250}},
    {11, "'81050027:   1.250 kg' 0D 0A", "a unit behind the number", {.weight = 1250}},
    {11, "'81050027:1 2 5 0' 0D 0A", "blanks between the digits too", {.weight = 1250000}},
    {11, "'81050027:1.001' 0D 0A", "cut, not rounded", {.weight = 1000}},
    {11, "'81050027:1-2' 0D 0A", "a minus behind a digit ends the number", {.weight = 1000}},
    {11, "'81050027:            1234.56' 0D 0A", "30 bytes", {.weight = 1234560}},
    {11, "'81050027:' 0D 0A", "11 bytes: a line without a number ends the poll", {.code = kNoAnswer}},
    {11, "'81050027:  kg 5' 0D 0A", "so does one with letters first", {.code = kNoAnswer}},
    {11, "'81050027' 0D 0A", "10 bytes", kRefused},
    {11, "'81050027:   1.250' 0A 0D", "LF CR", kRefused},
    {11, "'81050027:   1.250' 0A", "no CR", kRefused},
    {11, "'81050027:             1234.567' 0D", "30 bytes that don't end in CR LF", kRefused},

    // CR, ., status, ., blank, two, blank, sign, ., eleven characters, CR LF.
    {19, "0D 0A 'ST GS -       1.250' 0D 0A", "-1.250 kg, stable", {.weight = -1.25, .stable = 1}},
    {19, "0D 0A 'US GS        1.2505' 0D 0A", "moving; neither scaled nor cut", {.weight = 1.2505}},
    {19, "0D 0A 'ST xx + 1.250 kg   ' 0D 0A", "a blank behind the number ends it", {.weight = 1.25, .stable = 1}},
    {19, "0D 0A 'ST GS  x     -1.250' 0D 0A", "a minus in the text ends the number", {.weight = 0, .stable = 1}},
    {19, "0D 0A 'ST GS              ' 0D 0A", "no digit: a good zero", {.weight = 0, .stable = 1}},
    {19, "0D 0A 'ST GS   2345678.901' 0D 0A", "all places full", {.weight = 2345678.901, .stable = 1}},
    {19, "0D 0A 'ST,GS -       1.250' 0D 0A", "no blank at 04", kRefused},
    {19, "0D 0A 'ST GS,-       1.250' 0D 0A", "no blank at 07", kRefused},
    {19, "0D 0A 'ST GS -       1.250' 0A 0A", "no CR", kRefused},
    {19, "0D 0A 'ST GS -       1.250' 0D 0D", "no LF", kRefused},

    // Characters, units first: weight, price, cost.
    {21, "'432100' | '05210' | '004510'", "1.234 kg at 12.50", {1.234, 12.5, 154, 1}},
    {21, "'999999' | '99999' | '999999'", "all places full", {999.999, 999.99, 9999.99, 1}},
    {21, "04 03 02 01 00 00 | 00 00 00 00 00 | 00 00 00 00 00 00", "binary digits are no digits here", {.stable = 1}},
    {21, "'4321  ' | '0521 ' | '00451 '", "blanks before the first digit", {1.234, 12.5, 154, 1}},
    {21, "'4 2100' | '05210' | '00x510'", "another byte ends the number in front of it", {0.012, 12.5, 0.15, 1}},
    {21, "'43210-' | '05210' | '004510'", "a minus before the first digit", {-1.234, 12.5, 154, 1}},
    {21, "'432100' | '05210' | '00451'", "16 bytes", kRefused},
    {21, "'432100' | '05210' | '0045100'", "18 bytes", kRefused},

    // 06 01 02, status, seven characters, unit, 03 04.
    {13, "06 01 02 'S  1.250' 'kg ' 03 04", "1.250, stable", {.weight = 1.25, .stable = 1}},
    {13, "06 01 02 'U  1.250' 'kg ' 03 04", "moving", {.weight = 1.25}},
    {13, "06 01 02 'S-  1.25' 'kg ' 03 04", "negative", {.weight = -1.25, .stable = 1}},
    {13, "06 01 02 'S  -1.25' 'kg ' 03 04", "negative: the blanks before the minus are dropped", {.weight = -1.25, .stable = 1}},
    {13, "06 01 02 'S1 2k.50' 'kg ' 03 04", "what is no part of a number is dropped, also inside", {.weight = 12.5, .stable = 1}},
    {13, "06 01 02 'S9999999' 'kg ' 03 04", "all places full", {.weight = 9999999, .stable = 1}},
    {13, "06 01 02 'Snothing' 'kg ' 03 04", "letters only: a good zero", {.weight = 0, .stable = 1}},
    {13, "06 01 02 'S       ' '   ' 03 04", "blanks only: a good zero", {.weight = 0, .stable = 1}},
    {13, "06 01 02 'SF      ' 'kg ' 03 04", "overload", {.code = kOverload}},
    {13, "06 01 02 'SF12.345' 'kg ' 03 04", "overload, whatever stands behind it", {.code = kOverload}},
    {13, "06 01 02 'S   F   ' 'kg ' 03 04", "an F in another place is none", {.weight = 0, .stable = 1}},
    {13, "06 02 02 'S  1.250' 'kg ' 03 04", "wrong byte 01", kRefused},
    {13, "06 01 01 'S  1.250' 'kg ' 03 04", "wrong byte 02", kRefused},
    {13, "06 01 02 'S  1.250' 'kg ' 04 04", "wrong byte 14", kRefused},
    {13, "06 01 02 'S  1.250' 'kg ' 03 03", "wrong byte 15", kRefused},

    // The same frame, read otherwise.
    {27, "06 01 02 'S  1.250' 'kg ' 03 04", "blanks are zeros: 001.250", {.weight = 1.25, .stable = 1}},
    {27, "06 01 02 'U-  1.25' 'kg ' 03 04", "negative, moving", {.weight = -1.25}},
    {27, "06 01 02 'S  -1.25' 'kg ' 03 04", "the zeros of the blanks come before the minus and end there", {.weight = 0, .stable = 1}},
    {27, "06 01 02 'S1 2.500' 'kg ' 03 04", "a blank inside the number", {.weight = 102.5, .stable = 1}},
    {27, "06 01 02 'S       ' '   ' 03 04", "blanks only: a good zero", {.weight = 0, .stable = 1}},
    {27, "06 01 02 'Snothing' 'kg ' 03 04", "letters only: an overload that is stable", {.weight = 0, .stable = 1, .code = kOverload}},
    {27, "06 01 02 'Unothing' 'kg ' 03 04", "and one that isn't", {.code = kOverload}},
    {27, "06 01 02 'SF12.345' 'kg ' 03 04", "overload", {.code = kOverload}},
    {27, "06 01 02 'SFxxxxxx' 'kg ' 03 04", "overload by both rules", {.code = kOverload}},
    {27, "06 01 02 'S  1.250' 'kg ' 03 05", "wrong byte 15", kRefused},
    {27, "06 01 03 'S  1.250' 'kg ' 03 04", "wrong byte 02", kRefused},

    // 01 80 AA, status (01 overload, 40 stable, 80 negative), weight, price, cost, four.
    {14, "01 80 AA 40 E2 04 C4 09 00 00 35 0C 00 00 00 00 00 00", "1250 at 2500 cost 3125, stable", {1250, 2500, 3125, 1}},
    {14, "01 80 AA C0 10 27 00 00 00 00 00 00 00 00 FF FF FF FF", "negative, stable", {.weight = -10000, .stable = 1}},
    {14, "01 80 AA 3E FF FF FF FF FF FF 00 00 00 80 00 00 00 00", "moving; weight without sign, price and cost with one", {65535, -1, INT_MIN}},
    {14, "01 80 AA 00 00 00 04 03 02 01 FF FF FF 7F 00 00 00 00", "low byte first", {0, 16909060, INT_MAX}},
    {14, "01 80 AA C1 10 27 01 00 00 00 01 00 00 00 00 00 00 00", "overload: nothing else counts", {.code = kOverload}},
    {14, "01 81 AA 40 E2 04 C4 09 00 00 35 0C 00 00 00 00 00 00", "wrong byte 01", kRefused},
    {14, "01 80 AB 40 E2 04 C4 09 00 00 35 0C 00 00 00 00 00 00", "wrong byte 02", kRefused},

    // Binary digits, units first: weight, price, cost. Asked three times whatever comes.
    {28, "00 05 02 01 00 00 | 00 00 05 02 00 00 | 05 02 01 03 00 00", "1.250 kg at 25.00 cost 31.25", {.weight = 1.25, .price = 25, .cost = 31.25, .next = kAskAgain}},
    {28, "09 09 09 09 09 09 | 09 09 09 09 09 09 | 09 09 09 09 09 09", "all places full", {.weight = 999.999, .price = 9999.99, .cost = 9999.99, .next = kAskAgain}},
    {28, "00 00 00 00 00 00 | 00 00 00 00 00 00 | 00 00 00 00 00 00", "zero", {.next = kAskAgain}},
    {28, "00 05 0A 01 00 00 | 00 00 05 02 00 00 | '521300'", "a byte above 09 ends the number in front of it", {.weight = 0.001, .price = 25, .next = kAskAgain}},
    {28, "00 05 02 01 00 00 | 00 00 05 02 00 00 | 05 02 01 03 00", "17 bytes", kRefused},
    {28, "00 05 02 01 00 00 | 00 00 05 02 00 00 | 05 02 01 03 00 00 00", "19 bytes", kRefused},

    // STX, "NW:", text, ETX.
    {16, "02 'NW:0001.50kg' 03", "1.5, a unit behind it", {.weight = 1.5, .stable = 1}},
    {16, "02 'NW:  -12.5' 03", "negative", {.weight = -12.5, .stable = 1}},
    {16, "02 'NW:001.50' 03", "11 bytes, the shortest", {.weight = 1.5, .stable = 1}},
    {16, "02 'NW:000000000000000012.5' 03", "a long one", {.weight = 12.5, .stable = 1}},
    {16, "02 'NW:001.50' 03 '99' 03", "a first ETX ends the number, the last one the answer", {.weight = 1.5, .stable = 1}},
    {16, "02 'NW:kg   9' 03", "letters first: a good zero", {.weight = 0, .stable = 1}},
    {16, "02 'NW:1.5' 03", "8 bytes, however well formed", kRefused},
    {16, "02 'NW:01.50' 03", "10 bytes", kRefused},
    {16, "02 'NW:001.50' 03 '9'", "no ETX at the end", kRefused},
    {16, "03 'NW:001.50' 03", "no STX", kRefused},
    {16, "02 'GW:001.50' 03", "gross weight", kRefused},
    {16, "02 'NN:001.50' 03", "wrong byte 02", kRefused},
    {16, "02 'NW=001.50' 03", "no colon", kRefused},

    // STX, address, "D", sign, seven characters, check, ETX.
    {38, "02 'AD-0012.50' '00' 03", "-12.5", {.weight = -12.5}},
    {38, "02 'AD  012.50' FF FF 03", "12.5; the check isn't looked at", {.weight = 12.5}},
    {38, "02 'AD--12.500' '00' 03", "a minus in the text too cancels the sign", {.weight = 12.5}},
    {38, "02 'AD 0012,50' '00' 03", "a comma for the point", {.weight = 12.5}},
    {38, "02 'AD 1234567' '89' 03", "the text ends before the check", {.weight = 1234567}},
    {38, "02 'AE-0012.50' '00' 03", "not the answer to this request", kRefused},
    {38, "02 'AD-0012.50' '00' 04", "no ETX", kRefused},

    // 01 03, byte count, seven characters, decimals, CRC.
    {40, "01 03 08 '0012500' '3' C0 F3", "12.5", {.weight = 12.5}},
    {40, "01 03 FF ' -12500' '3' 00 00", "negative; byte count and CRC aren't looked at", {.weight = -12.5}},
    {40, "01 03 08 '0012500' '0' 00 00", "no decimals", {.weight = 12500}},
    {40, "01 03 08 '0012500' '1' 00 00", "one decimal", {.weight = 1250}},
    {40, "01 03 08 '0012500' '2' 00 00", "two decimals", {.weight = 125}},
    {40, "01 03 08 '0012500' '4' 00 00", "four decimals", {.weight = 1.25}},
    {40, "01 03 08 '0012500' '5' 00 00", "five decimals", {.weight = 0.125}},
    {40, "01 03 08 '0012500' '6' 00 00", "six are none", {.weight = 12500}},
    {40, "01 03 08 '0012500' 03 00 00", "nor is a binary number of decimals one", {.weight = 12500}},
    {40, "01 03 08 '12.5   ' '1' 00 00", "a point and decimals", {.weight = 1.25}},
    {40, "02 03 08 '0012500' '3' C0 F3", "another station", kRefused},
    {40, "01 83 08 '0012500' '3' C0 F3", "an error of the station", kRefused},

    // "=", seven characters written backwards.
    {29, "'=521.000'", "000.125", {.weight = 0.125}},
    {29, "'=005.21-'", "-12.500", {.weight = -12.5}},
    {29, "'=0021   '", "blanks in front", {.weight = 1200}},
    {29, "'=521.00k'", "a letter in front leaves no number", {.weight = 0}},
    {29, "'=9999999'", "all places full", {.weight = 9999999}},
    {29, "'=521.00'", "7 bytes", kRefused},
    {29, "'=521.0000'", "9 bytes", kRefused},

    // Characters, units first: weight, price, cost.
    {17, "'521000' | '00521' | '265100'", "0.125 kg at 125.00 cost 15.62", {0.125, 125, 15.62, 1}},
    {17, "'521000' | '00521' | '006200'", "the numbers aren't held against each other", {0.125, 125, 26, 1}},
    {17, "'999999' | '99999' | '999999'", "all places full", {999.999, 999.99, 9999.99, 1}},
    {17, "00 00 00 00 00 00 | 00 00 00 00 00 | 00 00 00 00 00 00", "three empty texts", {.stable = 1}},
    {17, "'52100-' | '00521' | '002600'", "a minus before the first digit", {-0.125, 125, 62, 1}},
    {17, "'521000' | '00521' | '00260'", "16 bytes", kRefused},
    {17, "'521000' | '00521' | '0026000'", "18 bytes", kRefused},

    // 7F, ., five characters, units first, flags (01 stable), exclusive or.
    {18, "7F 30 '052!0' 01 17", "01.250, stable", {.weight = 1.25, .stable = 1}},
    {18, "7F 00 '052!-' 00 3B", "negative, moving", {.weight = -1.25}},
    {18, "7F 00 '05.10' 01 2B", "a real point is dropped: 0150", {.weight = 150, .stable = 1}},
    {18, "7F 00 '05 !0' FE CA", "so is a blank; the other flags don't count", {.weight = 1.5}},
    {18, "7F 00 '0-2!0' 00 3E", "a minus behind a digit ends the number: 01.2", {.weight = 1.2}},
    {18, "7F 00 '052)0' 00 2E", "00.250", {.weight = 0.25}},
    {18, "7F 00 '052@0' 00 47", "02.250", {.weight = 2.25}},
    {18, "7F 00 '052#0' 00 24", "03.250", {.weight = 3.25}},
    {18, "7F 00 '052$0' 00 23", "04.250", {.weight = 4.25}},
    {18, "7F 00 '052%0' 00 22", "05.250", {.weight = 5.25}},
    {18, "7F 00 '052^0' 00 59", "06.250", {.weight = 6.25}},
    {18, "7F 00 '052&0' 00 21", "07.250", {.weight = 7.25}},
    {18, "7F 00 '052*0' 00 2D", "08.250", {.weight = 8.25}},
    {18, "7F 00 '052(0' 00 2F", "09.250", {.weight = 9.25}},
    {18, "7F 30 '052!0' 01 16", "wrong exclusive or", kRefused},
    {18, "7F 31 '052!0' 01 17", "the byte that isn't looked at is under the checksum", kRefused},
    {18, "7E 30 '052!0' 01 17", "wrong start", kRefused},

    // ., status (02 stable, 04 negative), CR, "0", six characters, CR, anything, LF.
    {23, "30 42 0D '0001.25' 0D 0A", "1.25, stable", {.weight = 1.25, .stable = 1}},
    {23, "30 46 0D '0001.25' 0D 0A", "negative, stable", {.weight = -1.25, .stable = 1}},
    {23, "30 44 0D '0--1.25' 0D 0A", "negative, moving; dashes are zeros", {.weight = -1.25}},
    {23, "30 40 0D '0--1.25' 0D 0A", "dashes are no signs", {.weight = 1.25}},
    {23, "30 40 0D '0  1.25' 0D 0A", "blanks in front", {.weight = 1.25}},
    {23, "30 42 0D '0001.25' 0D '4000.00' 0D 0A", "more records behind the weight", {.weight = 1.25, .stable = 1}},
    {23, "30 42 0D '0001.25' 0D '4000.00' 0D", "no LF", kRefused},
    {23, "30 42 0D '0001.25' 0A", "11 bytes: LF where the CR belongs", kRefused},
    {23, "30 42 0D '0001.2' 0D 0A", "11 bytes: the CR is a place too early", kRefused},
    {23, "30 42 0A '0001.25' 0D 0A", "no CR before the record", kRefused},
    {23, "30 42 0D '1001.25' 0D 0A", "another record", kRefused},

    // CR, ., status, four, sign, seven characters, unit, CR LF.
    {25, "0D 0A 'ST,GS-   1.25 kg' 0D 0A", "-1.25, stable", {.weight = -1.25, .stable = 1}},
    {25, "0D 0A 'US,GS    1.25 kg' 0D 0A", "moving", {.weight = 1.25}},
    {25, "0D 0A 'ST,NT+1 25    kg' 0D 0A", "a blank behind a digit ends the number", {.weight = 1, .stable = 1}},
    {25, "0D 0A 'ST,GS   -1.25 kg' 0D 0A", "so does a minus in the text", {.weight = 0, .stable = 1}},
    {25, "0D 0A 'ST,GS         kg' 0D 0A", "no digit", {.weight = 0, .stable = 1}},
    {25, "0D 0A 'ST,GS 1234.56789' 0D 0A", "the text ends before the unit", {.weight = 1234.56, .stable = 1}},
    {25, "0D 0A 'ST,GS-   1.25 kg' 0A 0A", "no CR", kRefused},
    {25, "0D 0A 'ST,GS-   1.25 kg' 0D 0D", "no LF", kRefused},

    // "XN" CR LF, two characters, LF, six characters, two, CR LF.
    {24, "'XN' 0D 0A '  ' 0A '  1.25' ' k' 0D 0A", "blanks are zeros: 00001.25", {.weight = 1.25, .stable = 1}},
    {24, "'XN' 0D 0A '12' 0A '34.500' 'kg' 0D 0A", "the number runs on behind the LF", {.weight = 1234.5, .stable = 1}},
    {24, "'XN' 0D 0A '- ' 0A '  1.25' ' k' 0D 0A", "negative", {.weight = -1.25, .stable = 1}},
    {24, "'XN' 0D 0A '  ' 0A ' -1.25' ' k' 0D 0A", "the zeros of the blanks come before the minus and end there", {.weight = 0, .stable = 1}},
    {24, "'XN' 0D 0A '  ' 0A '1,25 k' 'g ' 0D 0A", "a comma and letters are zeros", {.weight = 102500, .stable = 1}},
    {24, "'XM' 0D 0A '  ' 0A '  1.25' ' k' 0D 0A", "wrong byte 01", kRefused},
    {24, "'XN' 0A 0A '  ' 0A '  1.25' ' k' 0D 0A", "wrong byte 02", kRefused},
    {24, "'XN' 0D 0D '  ' 0A '  1.25' ' k' 0D 0A", "wrong byte 03", kRefused},
    {24, "'XN' 0D 0A '  ' 20 '  1.25' ' k' 0D 0A", "wrong byte 06", kRefused},
    {24, "'XN' 0D 0A '  ' 0A '  1.25' ' k' 0A 0A", "wrong byte 15", kRefused},
    {24, "'XN' 0D 0A '  ' 0A '  1.25' ' k' 0D 0D", "wrong byte 16", kRefused},

    // Any six bytes.
    {26, "'-12.5' 0D 0A", "the minus becomes a zero and a mark: 012.5", {.weight = -12.5}},
    {26, "'-  12.5' 0D 0A", "blanks are zeros", {.weight = -12.5}},
    {26, "'12.5-' 0D", "a dash behind the number makes it negative too", {.weight = -12.5}},
    {26, "' 1 2.5' 0A", "a blank inside the number: 0102.5", {.weight = 102.5}},
    {26, "'0012.5'", "taken without a line end", {.weight = 12.5}},
    {26, "'ERROR-' 0D 0A", "letters: a good zero", {.weight = 0}},
    {26, "'12.5' 0D", "5 bytes, however well it ends", kRefused},
    {26, "", "nothing", kRefused},

    // Characters, units first: weight, price, cost. Asked three times whatever comes.
    {30, "'521000' | '521000' | '610000'", "0.125 kg at 125 cost 16", {.weight = 0.125, .price = 125, .cost = 16, .stable = 1, .next = kAskAgain}},
    {30, "'521000' | '521000' | '000000'", "price and cost as counted", {.weight = 0.125, .price = 125, .cost = 0, .stable = 1, .next = kAskAgain}},
    {30, "'999999' | '999999' | '999999'", "all places full", {.weight = 999.999, .price = 999999, .cost = 999999, .stable = 1, .next = kAskAgain}},
    {30, "05 02 01 00 00 00 | '521000' | '000000'", "binary digits are no digits here", {.weight = 0, .price = 125, .stable = 1, .next = kAskAgain}},
    {30, "'521000' | '521000' | '00000'", "17 bytes", kRefused},
    {30, "'521000' | '521000' | '0000000'", "19 bytes", kRefused},

    // "SUI", status, ., sign, nine characters, unit, CR LF.
    {35, "'SUI  -    1.250 kg ' 0D 0A", "-1.250, stable", {.weight = -1.25, .stable = 1}},
    {35, "'SUI?      1.250 kg ' 0D 0A", "moving: the weight counts all the same", {.weight = 1.25}},
    {35, "'SUI ?     1.250 kg ' 0D 0A", "the byte behind the status isn't looked at", {.weight = 1.25, .stable = 1}},
    {35, "'SUI^ -   -1.250 kg ' 0D 0A", "a minus in the text cancels the sign", {.weight = 1.25, .stable = 1}},
    {35, "'SUI   123456789 kg ' 0D 0A", "all places full", {.weight = 123456789, .stable = 1}},
    {35, "'SUE  -    1.250 kg ' 0D 0A", "wrong byte 02", kRefused},
    {35, "'SVI  -    1.250 kg ' 0D 0A", "wrong byte 01", kRefused},
    {35, "'XUI  -    1.250 kg ' 0D 0A", "wrong byte 00", kRefused},
    {35, "'SUI  -    1.250 kg ' 0A 0A", "no CR", kRefused},
    {35, "'SUI  -    1.250 kg ' 0D 0D", "no LF", kRefused},

    // STX, sign, seven characters, unit, blank for stable, CR.
    {33, "02 '-001.250' 'kg' 20 0D", "-1.250, stable", {.weight = -1.25, .stable = 1}},
    {33, "02 '-0001250' 'kg' 20 0D", "no point is thought of", {.weight = -1250, .stable = 1}},
    {33, "02 ' 001.250' 'kg' 'M' 0D", "moving", {.weight = 1.25}},
    {33, "02 '- -1.250' 'kg' 20 0D", "a minus in the text cancels the sign", {.weight = 1.25, .stable = 1}},
    {33, "02 ' 1234567' '89' 20 0D", "the text ends before the unit", {.weight = 1234567, .stable = 1}},
    {33, "03 '-001.250' 'kg' 20 0D", "no STX", kRefused},
    {33, "02 '-001.250' 'kg' 20 0A", "no CR", kRefused},

    // Sign, five characters, CR; the digit before the point has its top bit set.
    {36, "2D 30 B1 32 35 30 0D", "-01.250", {.weight = -1.25, .stable = 1}},
    {36, "2B 31 32 33 34 35 0D", "12345", {.weight = 12345, .stable = 1}},
    {36, "2B 30 30 30 B9 35 0D", "0009.5", {.weight = 9.5, .stable = 1}},
    {36, "2B 30 30 B0 35 30 0D", "000.50", {.weight = 0.5, .stable = 1}},
    {36, "2B B1 B2 33 34 35 0D", "1.2. ends at the second point", {.weight = 1.2, .stable = 1}},
    {36, "2B 31 AF 32 33 34 0D", "AF is no digit and ends the number", {.weight = 1, .stable = 1}},
    {36, "2B 31 80 32 33 34 0D", "80 neither", {.weight = 1, .stable = 1}},
    {36, "2B 31 FF 32 33 34 0D", "FF is 7F and a point, and ends it too", {.weight = 1, .stable = 1}},
    {36, "20 31 32 33 34 35 0D", "no sign", kRefused},
    {36, "2B 31 32 33 34 35 0A", "no CR", kRefused},

    // Ten characters, CR LF.
    {37, "'   -1.250 ' 0D 0A", "-1.250", {.weight = -1.25}},
    {37, "'  1.250 kg' 0D 0A", "a unit behind it", {.weight = 1.25}},
    {37, "'1234567890' 0D 0A", "all places full", {.weight = 1234567890}},
    {37, "'  12' 0D '34567' 0D 0A", "a CR ends the number", {.weight = 12}},
    {37, "'abcdefghij' 0D 0A", "letters only: a good zero", {.weight = 0}},
    {37, "'   -1.250 ' 0A 0A", "no CR", kRefused},
    {37, "'   -1.250 ' 0D 0D", "no LF", kRefused},

    // LF, "ST", four, eight characters, unit, CR.
    {39, "0A 'ST,GS,- 12.345kg' 0D", "-12.345, stable", {.weight = -12.345, .stable = 1}},
    {39, "0A 'US,GS,  12.345kg' 0D", "moving", {.weight = 12.345}},
    {39, "0A 'SU,GS,  12.345kg' 0D", "half of the word isn't enough", {.weight = 12.345}},
    {39, "0A 'ST,GS,1234567890' 0D", "the text ends before the unit", {.weight = 12345678, .stable = 1}},
    {39, "0A 'ST,GS,OVERLOADkg' 0D", "letters: a good zero", {.weight = 0, .stable = 1}},
    {39, "0D 'ST,GS,- 12.345kg' 0D", "no LF", kRefused},
    {39, "0A 'ST,GS,- 12.345kg' 0A", "no CR", kRefused},

    // 01 03 06, signed weight, status (20 stable), ., CRC.
    {41, "01 03 06 00 00 04 E2 20 00 99 B3", "1250, stable", {.weight = 1250, .stable = 1}},
    {41, "01 03 06 FF FF FF FE DF FF 00 00", "-2, moving; CRC and the rest aren't looked at", {.weight = -2}},
    {41, "01 03 06 01 02 03 04 FF 00 00 00", "high byte first", {.weight = 16909060, .stable = 1}},
    {41, "01 03 06 80 00 00 00 00 00 00 00", "the smallest", {.weight = INT_MIN}},
    {41, "01 03 06 7F FF FF FF 20 00 00 00", "the largest", {.weight = INT_MAX, .stable = 1}},
    {41, "02 03 06 00 00 04 E2 20 00 99 B3", "another station", kRefused},
    {41, "01 83 06 00 00 04 E2 20 00 99 B3", "an error of the station", kRefused},
    {41, "01 03 05 00 00 04 E2 20 00 99 B3", "another number of bytes", kRefused},
});

// clang-format on

}  // namespace

std::span<const FrameRow> frameRowsOf(int model) {
  const auto isOf = [model](const FrameRow& row) { return row.model == model; };
  const auto first = std::find_if(kRows.begin(), kRows.end(), isOf);
  const auto last = std::find_if_not(first, kRows.end(), isOf);
  return {first, last};
}
