#pragma once

#include <array>
#include <vector>

#include "ScaleModel.h"

/// The descriptions of all models, and what several makers have in common: fields, frames, and what
/// the component makes of them.
namespace sim {

std::vector<ScaleModel> prompriborModels();
std::vector<ScaleModel> tekhnovagiAndAxisModels();
std::vector<ScaleModel> mirvesovModels();
std::vector<ScaleModel> massaKAndRinstrumModels();
std::vector<ScaleModel> jadeverModels();
std::vector<ScaleModel> casModels();
std::vector<ScaleModel> keliModels();
std::vector<ScaleModel> camryOcsDigiCertusModels();
std::vector<ScaleModel> terminalModels();
std::vector<ScaleModel> smartEsitVisBstModels();

inline constexpr std::array kModelGroups = {
    prompriborModels, tekhnovagiAndAxisModels,
    mirvesovModels,   massaKAndRinstrumModels,
    jadeverModels,    casModels,
    keliModels,       camryOcsDigiCertusModels,
    terminalModels,   smartEsitVisBstModels,
};

inline Fixed lineEnd() { return is(CR, LF); }
inline constexpr Mark kStableOrUnstable = {.usual = "ST", .moving = "US"};
/// A blank or a minus.
inline constexpr Mark kSign = {.usual = " ", .negative = "-"};
inline constexpr Mark kPlusOrMinus = {.usual = "+", .negative = "-"};

inline constexpr Decimals kFixedPoint = {.fewest = 3, .most = 3, .usual = 3};
inline constexpr Decimals kUpToThree = {.fewest = 0, .most = 3, .usual = 3};
inline constexpr Decimals kUpToOne = {.fewest = 0, .most = 1, .usual = 1};
inline constexpr Decimals kNone = {.fewest = 0, .most = 0, .usual = 0};
inline constexpr Unit kGrams = {.name = "g", .inKilogram = 1000.0};

/// Puts the second layout behind the first.
Layout operator+(Layout first, const Layout& second);
/// Weight in six digits, price in `priceDigits`, cost in six, the units first.
Layout unitsFirst(Form form, int priceDigits);
/// The answer to the command AD of the scale with address A: the weight and its checksum.
Layout addressed(const Layout& weight);
/// Sign, six digits, and behind them the number of decimals.
Layout digitsAndDecimals(const Mark& sign);
/// Sign, weight, unit, gross or net, motion: the line of a scale that sends by itself.
Layout streamLine(Layout begin, std::string_view overload = {});

/// Grams of a decimal text in kilograms, cut to whole ones: 1.001 reads as 1000, since it lies just
/// below.
extern const WeightReading kGramsCut;
/// Digits without point and a code for the point's place: exact grams.
extern const WeightReading kGramsByDecimalCode;
/// Digits without point, times 0.1 for each decimal: kilograms.
extern const WeightReading kKilogramsByFactor;
/// The number on the wire as it stands.
extern const WeightReading kRawCount;
/// Overload is result code 7 and leaves all values at zero.
void overloadIsCode7(const Display& display, Reading& reading);

/// A request of up to 300 bytes that waits for an end mark never ends well over TCP.
extern const char* const kEndMarkNeedsSerialLine;

}  // namespace sim
