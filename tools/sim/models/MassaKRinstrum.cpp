// Models 10, 11: scales of Масса-К and indicators of Rinstrum.

#include "FrameBuilder.h"
#include "ModelGroups.h"
#include "Readings.h"

namespace sim {

namespace {

/// The weight in 16 bits with sign, low byte first.
Bytes massaKFrame(const Display& display) {
  return FrameBuilder().littleEndian(static_cast<std::uint64_t>(display.weight), 2).take();
}

/// "81050027:-    1.250 kg" CR LF: header, sign, nine places of weight text, unit.
Bytes rinstrumFrame(const Display& display) {
  constexpr std::size_t kWeightPlaces = 9;
  return FrameBuilder()
      .text("81050027:")
      .character(display.negative() ? '-' : ' ')
      .text(rightAligned(decimalText(display.magnitude(), display.decimals), kWeightPlaces))
      .text(" kg")
      .byte(CR)
      .byte(LF)
      .take();
}

constexpr Text kRinstrumNoTcp = {
    "the component asks for 30 bytes and the indicator's line is shorter; over TCP it gets all "
    "the bytes that it asked for or none",
    "компонента запрашивает 30 байт, а строка индикатора короче; по TCP она получает либо все "
    "запрошенные байты, либо ни одного"};

}  // namespace

std::vector<ScaleModel> massaKAndRinstrumModels() {
  constexpr std::string_view kRinstrumRequest = "20050027:\r\n";
  return {
      {// Масса-К (МК_ТВ, МК_ТН)
       .number = 10,
       .line = {.parity = Parity::Even},
       .commands = {{Action::Weigh, {'E'}}},
       .weight = {.binary = {-0x8000, 0x7FFF}},
       .decimals = {.fewest = 0, .most = 3, .usual = 3},
       .build = massaKFrame,
       .unit = WeightUnit::Count,
       .readWeight = rawCount,
       .stableReading = StableReading::AlwaysMoving},
      {// Rinstrum R320,R420
       .number = 11,
       .commands = {{Action::Weigh, {kRinstrumRequest.begin(), kRinstrumRequest.end()}}},
       .weight = {.places = 9, .sign = Sign::Beside, .pointInside = true},
       .decimals = {.fewest = 0, .most = 4, .usual = 3},
       .build = rinstrumFrame,
       .checkedByte = -1,
       .unit = WeightUnit::Grams,
       .readWeight = gramsCut,
       .stableReading = StableReading::AlwaysMoving,
       .noTcp = &kRinstrumNoTcp},
  };
}

}  // namespace sim
