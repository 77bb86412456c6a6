#include "Checks.h"

#include <vector>

namespace recognise {

namespace {

constexpr unsigned kByteValues = 256;

bool same(const Said& a, const Said& b) {
  return a.code == b.code && a.reading.weight == b.reading.weight &&
         a.reading.price == b.reading.price && a.reading.cost == b.reading.cost &&
         a.reading.stable == b.reading.stable;
}

}  // namespace

Checks checksOf(const ProtocolSheet& sheet, Frame frame) {
  Checks checks{.size = frame.size()};
  const Said said = readingOf(sheet, frame);
  std::vector<std::uint8_t> changed(frame.begin(), frame.end());
  for (std::uint8_t& byte : changed) {
    const std::uint8_t own = byte;
    std::size_t refused = 0;
    bool used = false;
    for (unsigned value = 0; value < kByteValues; ++value) {
      if (value == own) continue;
      byte = static_cast<std::uint8_t>(value);
      if (!isTaken(sheet, changed)) {
        ++refused;
      } else if (!used && !same(readingOf(sheet, changed), said)) {
        used = true;
      }
    }
    byte = own;
    const bool guarded = 2 * refused >= kByteValues - 1;
    checks.changes += kByteValues - 1;
    checks.refused += refused;
    checks.guarded += guarded ? 1 : 0;
    checks.used += guarded || used ? 1 : 0;
  }
  return checks;
}

}  // namespace recognise
