#include "Checks.h"

#include <algorithm>
#include <set>
#include <vector>

#include "Fields.h"

namespace recognise {

namespace {

std::set<std::size_t> bytesInUse(const ProtocolSheet& sheet, Frame frame) {
  std::set<std::size_t> used;
  for (const FrameField& field : fieldsOf(sheet, frame)) {
    used.insert(field.bytes.begin(), field.bytes.end());
  }
  for (const NumberField* field : {&sheet.weight, &sheet.price, &sheet.cost}) {
    for (const std::size_t place : placesOf(*field, frame)) {
      if (!isRead(*field, frame, place)) used.erase(place);
    }
  }
  return used;
}

}  // namespace

Checks checksOf(const ProtocolSheet& sheet, Frame frame) {
  Checks checks{.size = frame.size()};
  const std::set<std::size_t> used = bytesInUse(sheet, frame);
  std::vector<std::uint8_t> changed(frame.begin(), frame.end());
  for (std::size_t place = 0; place < frame.size(); ++place) {
    // What is wanted of a byte is never its opposite, too.
    changed[place] = static_cast<std::uint8_t>(~frame[place]);
    const bool guarded = !isTaken(sheet, changed);
    changed[place] = frame[place];
    checks.guarded += guarded ? 1 : 0;
    checks.used += guarded || used.contains(place) ? 1 : 0;
  }
  return checks;
}

}  // namespace recognise
