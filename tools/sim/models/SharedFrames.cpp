#include "SharedFrames.h"

#include "FrameBuilder.h"

namespace sim {

Bytes unitsFirstFrame(const Display& display, int priceDigits, char zero) {
  constexpr int kWeightDigits = 6;
  constexpr int kCostDigits = 6;
  return FrameBuilder()
      .digitsUnitsFirst(display.weight, kWeightDigits, zero)
      .digitsUnitsFirst(display.price, priceDigits, zero)
      .digitsUnitsFirst(display.cost, kCostDigits, zero)
      .take();
}

Bytes addressedFrame(const Display& display, char plus) {
  constexpr std::size_t kWeightPlaces = 7;
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  const std::string number = decimalText(display.magnitude(), display.decimals);
  FrameBuilder frame;
  frame.byte(STX)
      .text("AD")
      .character(display.negative() ? '-' : plus)
      .text(rightAligned(number, kWeightPlaces, '0'));
  const std::uint8_t sum = frame.xorFrom(1);
  return frame.character(kHexDigits[sum >> 4U]).character(kHexDigits[sum & 0x0FU]).byte(ETX).take();
}

}  // namespace sim
