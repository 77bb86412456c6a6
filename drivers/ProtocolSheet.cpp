#include "ProtocolSheet.h"

#include <algorithm>

namespace {

template <typename... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

bool hasItsLength(const ProtocolSheet& sheet, Frame frame) {
  return std::visit(Overloaded{[&](const TerminatorRead& read) {
                                 return frame.size() >= read.minLength &&
                                        frame.size() <= read.capacity;
                               },
                               [&](const auto& read) { return frame.size() == read.length; }},
                    sheet.read);
}

bool stands(const FixedByte& byte, Frame frame) {
  return byte.oneOf.contains(frame[byte.placeIn(frame.size())]);
}

bool allStand(const FixedBytes& fixed, Frame frame) {
  return std::ranges::all_of(fixed.view(),
                             [&](const FixedByte& byte) { return stands(byte, frame); });
}

std::vector<FixedByte> wrongOf(const FixedBytes& fixed, Frame frame) {
  std::vector<FixedByte> wrong;
  std::ranges::copy_if(fixed.view(), std::back_inserter(wrong),
                       [&](const FixedByte& byte) { return !stands(byte, frame); });
  return wrong;
}

}  // namespace

std::string Framing::text() const {
  const char letter = parity == COMPort::None ? 'N' : parity == COMPort::Even ? 'E' : 'O';
  return std::to_string(dataBits) + letter + (stopBits == COMPort::Two ? '2' : '1');
}

int Framing::bits() const {
  return 1 + dataBits + (parity == COMPort::None ? 0 : 1) + (stopBits == COMPort::Two ? 2 : 1);
}

Command PriceCommand::of(long price) const {
  Command command = head;
  command.bytes = priceFrame(head.bytes, price, zero);
  return command;
}

std::optional<Command> Commands::ofPrice(long number) const {
  if (price) return price->of(number);
  const auto chosen = std::ranges::find(setup, number, &SetupCommand::number);
  return chosen == setup.end() ? std::nullopt : std::optional(chosen->command);
}

std::vector<std::uint8_t> Request::bytesOfFirstAttempt() const {
  std::vector<std::uint8_t> bytes(first.view().begin(), first.view().end());
  bytes.insert(bytes.end(), frameHead, 0);
  bytes.insert(bytes.end(), second.view().begin(), second.view().end());
  return bytes;
}

bool showsOverload(const ProtocolSheet& sheet) {
  return sheet.overload.mask != 0 || sheet.withoutWeight == kOverload;
}

bool transmitsByItself(const ProtocolSheet& sheet) { return sheet.request.first.empty(); }

std::size_t frameLength(const ProtocolSheet& sheet) {
  return std::visit(Overloaded{[](const TerminatorRead&) { return std::size_t{0}; },
                               [](const auto& read) { return read.length; }},
                    sheet.read);
}

std::size_t shortestFrame(const ProtocolSheet& sheet) {
  const auto* read = std::get_if<TerminatorRead>(&sheet.read);
  return read == nullptr ? frameLength(sheet) : read->minLength;
}

bool mayBegin(const ProtocolSheet& sheet, std::uint8_t byte) {
  const auto* read = std::get_if<StartByteRead>(&sheet.read);
  return read == nullptr || read->start.contains(byte);
}

bool endsFrame(const TerminatorRead& style, Frame frame) {
  const std::size_t size = style.match == TerminatorRead::Match::AnyOf ? 1 : style.end.size();
  if (frame.size() < size) return false;
  if (style.match == TerminatorRead::Match::AnyOf) return style.end.contains(frame.back());
  return std::ranges::equal(frame.last(size), style.end.view());
}

bool isWhole(const TerminatorRead& style, Frame frame) {
  return frame.size() >= style.capacity ||
         (frame.size() >= style.minLength && endsFrame(style, frame));
}

Outputs outputsAtEntry(const ProtocolSheet& sheet, const Outputs& ofCaller) {
  if (sheet.atEntry == AtEntry::AllZero) return {};
  Outputs outputs = ofCaller;
  outputs.stable = sheet.atEntry == AtEntry::Stable;
  return outputs;
}

std::vector<FixedByte> wrongBytes(const ProtocolSheet& sheet, Frame frame) {
  std::vector<FixedByte> wrong = wrongOf(sheet.fixed, frame);
  if (sheet.orFixed.view().empty()) return wrong;
  std::vector<FixedByte> orWrong = wrongOf(sheet.orFixed, frame);
  return orWrong.size() < wrong.size() ? orWrong : wrong;
}

void takeMotionOfAnyFrame(const ProtocolSheet& sheet, Frame frame, Outputs& outputs) {
  if (sheet.motionOfBadFrames && hasItsLength(sheet, frame)) {
    outputs.stable = sheet.motion.isAtRest(frame);
  }
}

bool isGood(const ProtocolSheet& sheet, Frame frame) {
  if (!hasItsLength(sheet, frame)) return false;
  const bool orFixed = !sheet.orFixed.view().empty() && allStand(sheet.orFixed, frame);
  return (orFixed || allStand(sheet.fixed, frame)) &&
         (sheet.checksum.of == nullptr || sheet.checksum.of(frame) == frame[sheet.checksum.at]);
}

Outcome parse(const ProtocolSheet& sheet, Frame frame, Outputs& outputs) {
  if (sheet.overload.isIn(frame)) {
    outputs.weight = 0.0;
    outputs.stable = false;
    return endPoll(kOverload);
  }
  const NumberField::Value weight = sheet.weight.in(frame);
  outputs.weight = weight.number;
  if (sheet.price.exists()) outputs.price = sheet.price.in(frame).number;
  if (sheet.cost.exists()) outputs.cost = sheet.cost.in(frame).number;
  outputs.stable = sheet.motion.isAtRest(frame);
  if (weight.none && sheet.withoutWeight != kSuccess) return endPoll(sheet.withoutWeight);
  if (sheet.judge != nullptr) return sheet.judge(frame, outputs);
  return sheet.asking.allAttempts ? askAgain(kSuccess) : endPoll();
}
