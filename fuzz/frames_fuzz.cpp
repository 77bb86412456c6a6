// Every driver's frame functions on any bytes. The first byte chooses the model, the second how
// the outputs stand before and whether the frame is made a good one, the rest is the frame.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

#include "Models.h"

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

bool isKnown(int code) {
  return code == kSuccess || code == kNoConnection || code == kNoAnswer || code == kOverload ||
         code == kUnknown;
}

/// Puts in all that a frame is held against, so that what is behind it is tried, too.
void makeGood(const ProtocolSheet& sheet, std::span<std::uint8_t> frame, std::uint8_t choice) {
  if (frame.size() < shortestFrame(sheet)) return;
  for (const FixedByte& byte : sheet.fixed.view()) {
    const Frame values = byte.oneOf.view();
    frame[byte.placeIn(frame.size())] = values[choice % values.size()];
  }
  if (sheet.checksum.of != nullptr) frame[sheet.checksum.at] = sheet.checksum.of(frame);
}

void checkFrame(const ProtocolSheet& sheet, Frame frame, Outputs outputs) {
  takeMotionOfAnyFrame(sheet, frame, outputs);
  if (!isGood(sheet, frame)) return;
  const Outcome outcome = parse(sheet, frame, outputs);
  check(isKnown(outcome.code));
  check(std::isfinite(outputs.weight) && std::isfinite(outputs.price) &&
        std::isfinite(outputs.cost));
}

void checkPrice(const ProtocolSheet& sheet, Frame bytes) {
  unsigned long price = 0;
  for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), sizeof price))) {
    price = price << 8 | byte;
  }
  const auto command = sheet.commands.ofPrice(static_cast<long>(price));
  check(!command || command->bytes.size() < ByteRow::kCapacity);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kChoices = 2;
  if (size < kChoices || size - kChoices > kMaxFrame) return 0;
  const auto models = scalesModels();
  const ProtocolSheet* sheet = models[data[0] % models.size()].sheet;
  if (sheet == nullptr) return 0;
  const double before = data[1];

  // At the end of its own block, so that the first byte too far is seen.
  const std::size_t length = size - kChoices;
  const auto block = std::make_unique<std::uint8_t[]>(length);
  std::copy_n(data + kChoices, length, block.get());
  const std::span frame(block.get(), length);
  constexpr std::uint8_t kGood = 0x80;
  if ((data[1] & kGood) != 0) makeGood(*sheet, frame, data[1]);
  checkFrame(*sheet, frame, {before, before, before, data[1] % 2 == 0});
  checkPrice(*sheet, frame);
  return 0;
}
