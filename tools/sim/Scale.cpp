#include "Scale.h"

#include <algorithm>

namespace sim {

namespace {

/// Price commands carry five digits, the units first, as numbers or as characters, in hundredths.
constexpr std::size_t kPriceDigits = 5;

double priceOf(std::span<const std::uint8_t> payload) {
  constexpr unsigned kDigitOfNumberOrCharacter = 0x0F;
  constexpr double kHundredths = 100.0;
  std::int64_t price = 0;
  for (std::size_t i = std::min(kPriceDigits, payload.size()); i > 0; --i) {
    price = price * 10 + static_cast<std::int64_t>(payload[i - 1] & kDigitOfNumberOrCharacter);
  }
  return static_cast<double>(price) / kHundredths;
}

bool endsLine(std::uint8_t byte) { return byte == CR || byte == LF; }

}  // namespace

/// Whether what is pending begins so.
bool Scale::mayBe(const Command& command) const {
  const Bytes& fixed = command.fixed.bytes;
  const auto [here, there] = std::ranges::mismatch(pending_, fixed);
  return (here == pending_.end() || there == fixed.end()) &&
         (atLineStart_ || !endsLine(fixed.back()));
}

/// The command that is pending whole; null for none.
const Command* Scale::completed() {
  while (!pending_.empty()) {
    bool begun = false;
    for (const Command& command : model_->commands) {
      if (!mayBe(command)) continue;
      if (pending_.size() >= command.fixed.bytes.size() + command.payload) return &command;
      begun = true;
    }
    if (begun) break;
    atLineStart_ = endsLine(pending_.front());
    pending_.erase(pending_.begin());
  }
  return nullptr;
}

std::vector<Scale::Answer> Scale::receive(std::span<const std::uint8_t> bytes) {
  std::vector<Answer> answers;
  for (const std::uint8_t byte : bytes) {
    pending_.push_back(byte);
    const Command* command = completed();
    if (command == nullptr) continue;
    carryOut(*command);
    forgetPartOfRequest();
    Bytes reply = command->action == Action::Weigh ? frame() : command->reply.bytes;
    if (!reply.empty()) answers.push_back({command->action, std::move(reply)});
  }
  return answers;
}

void Scale::carryOut(const Command& command) {
  ++counts_[static_cast<std::size_t>(command.action)];
  switch (command.action) {
    case Action::Tare: state_.pressTare(); break;
    case Action::Zero: state_.pressZero(); break;
    case Action::Price:
      state_.price = priceOf(std::span(pending_).subspan(command.fixed.bytes.size()));
      break;
    case Action::Weigh:
    case Action::Setup: break;
  }
}

}  // namespace sim
