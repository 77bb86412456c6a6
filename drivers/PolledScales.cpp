#include "PolledScales.h"

#include <array>

#include "Cancellation.h"
#include "FrameReader.h"
#include "Sleep.h"

namespace {

constexpr std::size_t kReadOnceSize = 100;

}  // namespace

/// The port layer throws nothing, so this net catches what nobody foresaw.
template <typename Operation>
int PolledScales::underCatchAll(Operation operation) {
  return unlessThrown(operation, [&]() -> int {
    if (sheet_.closeOnException) CloseComPort();
    return kNoConnection;
  });
}

int PolledScales::OpenComPort() {
  const int code = IScalesObject::OpenComPort();
  // Set whatever the code is. A speed that the line refuses closes the port again, and the first
  // read then finds none.
  port.setBitRate(static_cast<unsigned long>(baudRate));
  port.setParity(sheet_.line.parity);
  port.setDataBits(sheet_.line.dataBits);
  port.setStopBits(sheet_.line.stopBits);
  return code;
}

int PolledScales::getScalesInfo(double* weight, double* price, double* cost, long* stable) {
  Outputs outputs = outputsAtEntry(sheet_, {*weight, *price, *cost});
  const int code = underCatchAll([&] { return poll(outputs); });
  *weight = outputs.weight;
  *price = outputs.price;
  *cost = outputs.cost;
  *stable = outputs.stable ? 1 : 0;
  return code;
}

int PolledScales::poll(Outputs& outputs) {
  if (const int code = isConnectedOrConnect(); code != kSuccess) return code;

  int status = kNoAnswer;
  // Once a poll. A scale that transmits by itself may well leave no gap.
  bool mayRenew = !transmitsByItself(sheet_);
  int budget_ms = sheet_.asking.budget_ms;
  std::array<std::uint8_t, kMaxFrame> buffer = {};
  for (int attempt = 0; attempt < sheet_.asking.attempts; ++attempt) {
    const bool flooded = drain(port, sheet_.drainSize);
    // What a network has queued on the way from a scale that was flooding it can outlast any drain,
    // and read as an answer it is a wrong weight. A new connection begins without it.
    if (flooded && mayRenew && port.Renew()) drain(port, sheet_.drainSize);
    mayRenew &= !flooded;
    sendRequest(buffer);
    buffer.fill(0);
    if (!sheet_.asking.oneBudgetForAll) budget_ms = sheet_.asking.budget_ms;
    const Frame frame = std::span(buffer).first(readFrame(port, sheet_.read, budget_ms, buffer));

    takeMotionOfAnyFrame(sheet_, frame, outputs);
    if (!isGood(sheet_, frame)) continue;
    const Outcome outcome = parse(sheet_, frame, outputs);
    status = outcome.code;
    if (outcome.next == Outcome::Next::HangUp) {
      CloseComPort();
      return status;
    }
    if (outcome.next == Outcome::Next::EndPoll) break;
  }
  CloseIfMust();
  return status;
}

void PolledScales::sendRequest(Frame lastFrame) {
  const Request& request = sheet_.request;
  if (transmitsByItself(sheet_)) return;
  ByteRow first = request.first;
  for (const std::uint8_t byte : lastFrame.first(request.frameHead)) first.add(byte);
  port.write(first.data(), first.size());
  if (request.second.empty()) return;
  orbSleep_mSec(request.pause_ms);
  port.write(request.second.data(), request.second.size());
}

int PolledScales::send(const Command& command) {
  for (int i = 0; i < command.times; ++i) {
    port.write(command.bytes.data(), command.bytes.size());
    if (command.pause_ms > 0) orbSleep_mSec(command.pause_ms);
  }
  switch (command.afterwards) {
    case Command::Afterwards::Nothing: break;
    case Command::Afterwards::ReadOnce: {
      std::array<unsigned char, kReadOnceSize> answer = {};
      port.read(answer.data(), answer.size());
      break;
    }
    case Command::Afterwards::Drain: drain(port, sheet_.drainSize); break;
  }
  CloseIfMust();
  return kSuccess;
}

int PolledScales::pressT(double /*tare*/) {
  if (!sheet_.commands.tare) return kNotSupported;
  return underCatchAll([&] {
    const int code = isConnectedOrConnect();
    return code == kSuccess ? send(*sheet_.commands.tare) : code;
  });
}

int PolledScales::pressNull() {
  if (!sheet_.commands.zero) return kNotSupported;
  return underCatchAll([&] {
    const int code = isConnectedOrConnect();
    return code == kSuccess ? send(*sheet_.commands.zero) : code;
  });
}

int PolledScales::setPrice(long price) {
  if (!sheet_.commands.takePrice()) return kNotSupported;
  return underCatchAll([&] {
    if (const int code = isConnectedOrConnect(); code != kSuccess) return code;
    const std::optional<Command> command = sheet_.commands.ofPrice(price);
    return command ? send(*command) : static_cast<int>(kNotSupported);
  });
}
