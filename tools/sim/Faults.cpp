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

Bytes garbageOf(std::size_t count) {
  Bytes garbage(count);
  for (std::size_t i = 0; i < count; ++i) garbage[i] = kGarbage[i % kGarbage.size()];
  return garbage;
}

}  // namespace

Transmission Misbehaviour::transmit(const ScaleModel& model, Bytes frame) {
  using std::chrono::milliseconds;
  const int number = framesSeen_++;
  if (faults_.frames > 0 && number >= faults_.frames) return {{{milliseconds{0}, frame}}, false};
  Transmission out;
  out.hangUp = faults_.hangUpAfter > 0 && (number + 1) % faults_.hangUpAfter == 0;
  if (faults_.silent) return out;
  if (faults_.corruptEvery > 0 && number % faults_.corruptEvery == 0) damage(model, frame);
  if (faults_.cut) frame.resize(std::min(frame.size(), *faults_.cut));
  Bytes all = garbageOf(faults_.garbage);
  all.insert(all.end(), frame.begin(), frame.end());
  if (faults_.dribble == milliseconds{0}) {
    out.pieces.push_back({milliseconds{0}, std::move(all)});
  } else {
    for (const std::uint8_t byte : all) out.pieces.push_back({faults_.dribble, Bytes{byte}});
  }
  return out;
}

Bytes Misbehaviour::endless(const Bytes& frame, std::size_t count) const {
  const bool garbage = faults_.endless == Faults::Endless::Garbage;
  const std::span<const std::uint8_t> row =
      garbage ? std::span<const std::uint8_t>(kGarbage) : std::span<const std::uint8_t>(frame);
  Bytes bytes(count);
  for (std::size_t i = 0; i < count; ++i) bytes[i] = row[(endlessSent_ + i) % row.size()];
  return bytes;
}

}  // namespace sim
