#include "Refusal.h"

#include <variant>

namespace recognise {

Refusal refusalOf(const ProtocolSheet& sheet, Frame frame) {
  Refusal refusal{.size = frame.size(), .wantedSize = shortestFrame(sheet), .wrong = {}};
  if (frame.empty()) return refusal;
  const auto* style = std::get_if<TerminatorRead>(&sheet.read);
  if (style != nullptr && !endsFrame(*style, frame)) {
    refusal.reason = Refusal::Reason::NoEnd;
    return refusal;
  }
  if (frame.size() < refusal.wantedSize) {
    refusal.reason = Refusal::Reason::TooShort;
    return refusal;
  }
  refusal.reason = Refusal::Reason::WrongBytes;
  for (const FixedByte& byte : wrongBytes(sheet, frame)) {
    const std::size_t place = byte.placeIn(frame.size());
    const auto wanted = byte.oneOf.view();
    refusal.wrong.push_back({place, frame[place], {wanted.begin(), wanted.end()}});
  }
  if (refusal.wrong.empty() && sheet.checksum.of != nullptr) {
    const std::size_t place = sheet.checksum.at;
    refusal.reason = Refusal::Reason::Checksum;
    refusal.wrong = {{place, frame[place], {sheet.checksum.of(frame)}}};
  }
  return refusal;
}

}  // namespace recognise
