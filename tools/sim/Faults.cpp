#include "Faults.h"

#include <algorithm>
#include <array>

namespace sim {

namespace {

constexpr std::array<std::uint8_t, 4> kGarbage = {0xFF, 0x55, 0xAA, 0xFE};

void damage(const ScaleModel& model, Bytes& frame) {
  if (frame.empty()) return;
  const int offset = model.checkedByte.value_or(0);
  const auto size = static_cast<int>(frame.size());
  const auto index = static_cast<std::size_t>(offset < 0 ? size + offset : offset);
  frame.at(index) ^= 0xFF;
}

/// So many bytes of an endless row of these, from `begin` on.
Bytes again(std::span<const std::uint8_t> row, std::size_t begin, std::size_t count) {
  Bytes bytes(count);
  for (std::size_t i = 0; i < count; ++i) bytes[i] = row[(begin + i) % row.size()];
  return bytes;
}

}  // namespace

Transmission Misbehaviour::transmit(const ScaleModel& model, Bytes frame) {
  const int number = framesSeen_++;
  if (faults_.frames > 0 && number >= faults_.frames) return {.bytes = std::move(frame)};
  Transmission out{.bytes = {}, .byteByByte = faults_.dribble};
  out.hangUp = faults_.hangUpAfter > 0 && (number + 1) % faults_.hangUpAfter == 0;
  if (faults_.silent) return out;
  if (faults_.corruptEvery > 0 && number % faults_.corruptEvery == 0) damage(model, frame);
  if (faults_.cut) frame.resize(std::min(frame.size(), *faults_.cut));
  out.bytes = again(kGarbage, 0, faults_.garbage);
  out.bytes.insert(out.bytes.end(), frame.begin(), frame.end());
  return out;
}

Bytes Misbehaviour::endless(const Bytes& frame, std::size_t count) const {
  if (faults_.endless == Faults::Endless::Garbage) return again(kGarbage, endlessSent_, count);
  return again(frame, endlessSent_, count);
}

}  // namespace sim
