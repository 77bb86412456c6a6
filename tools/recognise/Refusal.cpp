#include "Refusal.h"

#include <array>
#include <variant>

namespace recognise {

namespace {

constexpr unsigned kByteValues = 256;
/// Longer frames aren't searched for two wrong bytes: it would take too long.
constexpr std::size_t kLongestForPairs = 32;

using Frames = std::vector<std::uint8_t>;

/// What can stand at a place, all else being as it is, for the frame to be good.
std::vector<std::uint8_t> mendedBy(const ProtocolSheet& sheet, Frames& frame, std::size_t at) {
  std::vector<std::uint8_t> values;
  const std::uint8_t own = frame[at];
  for (unsigned value = 0; value < kByteValues; ++value) {
    frame[at] = static_cast<std::uint8_t>(value);
    if (value != own && sheet.isGood(frame)) values.push_back(frame[at]);
  }
  frame[at] = own;
  return values;
}

std::vector<Refusal::WrongByte> singleWrong(const ProtocolSheet& sheet, Frames& frame) {
  std::vector<Refusal::WrongByte> wrong;
  for (std::size_t at = 0; at < frame.size(); ++at) {
    auto wanted = mendedBy(sheet, frame, at);
    if (!wanted.empty()) wrong.push_back({at, frame[at], std::move(wanted)});
  }
  return wrong;
}

/// The first two places that together make the frame good.
std::vector<Refusal::WrongByte> pairWrong(const ProtocolSheet& sheet, Frames& frame) {
  for (std::size_t first = 0; first < frame.size(); ++first) {
    const std::uint8_t own = frame[first];
    for (unsigned value = 0; value < kByteValues; ++value) {
      frame[first] = static_cast<std::uint8_t>(value);
      for (std::size_t second = first + 1; second < frame.size(); ++second) {
        auto wanted = mendedBy(sheet, frame, second);
        if (wanted.empty()) continue;
        const std::uint8_t good = frame[first];
        return {{first, own, {good}}, {second, frame[second], std::move(wanted)}};
      }
    }
    frame[first] = own;
  }
  return {};
}

/// What a change of one byte may change, in the order of FrameField::Name.
constexpr std::size_t kNames = 5;
std::array<bool, kNames> differences(const Said& a, const Said& b) {
  return {a.reading.weight != b.reading.weight, a.reading.price != b.reading.price,
          a.reading.cost != b.reading.cost, a.reading.stable != b.reading.stable, a.code != b.code};
}

}  // namespace

Refusal refusalOf(const ProtocolSheet& sheet, Frame frame) {
  Refusal refusal;
  refusal.size = frame.size();
  if (frame.empty()) {
    refusal.reason = Refusal::Reason::Silence;
    return refusal;
  }
  if (const auto* style = std::get_if<TerminatorRead>(&sheet.read)) {
    refusal.wantedSize = style->minLength;
    if (!endsFrame(*style, frame)) {
      refusal.reason = Refusal::Reason::NoEnd;
      return refusal;
    }
  } else {
    refusal.wantedSize = frameLength(sheet);
  }
  if (frame.size() < refusal.wantedSize) {
    refusal.reason = Refusal::Reason::TooShort;
    return refusal;
  }

  Frames bytes(frame.begin(), frame.end());
  refusal.reason = Refusal::Reason::WrongBytes;
  refusal.wrong = singleWrong(sheet, bytes);
  // A fixed byte is the one place to mend. Where every other place does as well, they are bound
  // to each other.
  if (2 * refusal.wrong.size() > bytes.size()) refusal.reason = Refusal::Reason::Checksum;
  if (refusal.wrong.empty() && bytes.size() <= kLongestForPairs) {
    refusal.wrong = pairWrong(sheet, bytes);
  }
  if (refusal.wrong.empty()) refusal.reason = Refusal::Reason::ManyBytes;
  return refusal;
}

std::vector<FrameField> fieldsOf(const ProtocolSheet& sheet, Frame frame) {
  const Said said = readingOf(sheet, frame);
  std::array<std::vector<std::size_t>, kNames> bytes;
  Frames changed(frame.begin(), frame.end());
  for (std::size_t at = 0; at < changed.size(); ++at) {
    const std::uint8_t own = changed[at];
    std::array<bool, kNames> any = {};
    for (unsigned value = 0; value < kByteValues; ++value) {
      changed[at] = static_cast<std::uint8_t>(value);
      if (!sheet.isGood(changed)) continue;
      const auto now = differences(said, readingOf(sheet, changed));
      for (std::size_t name = 0; name < kNames; ++name) any[name] = any[name] || now[name];
    }
    changed[at] = own;
    for (std::size_t name = 0; name < kNames; ++name) {
      if (any[name]) bytes[name].push_back(at);
    }
  }
  std::vector<FrameField> fields;
  for (std::size_t name = 0; name < kNames; ++name) {
    if (bytes[name].empty()) continue;
    fields.push_back({static_cast<FrameField::Name>(name), std::move(bytes[name])});
  }
  if (fields.empty()) return {{FrameField::Name::Weight, {}}, {FrameField::Name::Stable, {}}};
  return fields;
}

}  // namespace recognise
