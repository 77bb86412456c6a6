#include "Scale.h"

#include <algorithm>

namespace sim {

namespace {

/// Price commands carry five digits, the units first, as numbers or as characters, in hundredths.
constexpr std::size_t kPriceDigits = 5;

double priceOf(const Bytes& payload) {
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

RequestRecogniser::Match RequestRecogniser::match(const Command& command) const {
  const std::size_t fixed = std::min(command.fixed.bytes.size(), pending_.size());
  if (!std::equal(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(fixed),
                  command.fixed.bytes.begin()) ||
      (endsLine(command.fixed.bytes.back()) && !atLineStart_)) {
    return Match::None;
  }
  return pending_.size() < command.fixed.bytes.size() + command.payload ? Match::Partial
                                                                        : Match::Whole;
}

std::optional<RequestRecogniser::Found> RequestRecogniser::feed(std::uint8_t byte) {
  pending_.push_back(byte);
  while (!pending_.empty()) {
    bool partial = false;
    for (const Command& command : model_->commands) {
      switch (match(command)) {
        case Match::None: break;
        case Match::Partial: partial = true; break;
        case Match::Whole: {
          const auto payload =
              pending_.begin() + static_cast<std::ptrdiff_t>(command.fixed.bytes.size());
          Found found = {&command, Bytes(payload, pending_.end())};
          reset();
          return found;
        }
      }
    }
    if (partial) break;
    atLineStart_ = endsLine(pending_.front());
    pending_.erase(pending_.begin());
  }
  return {};
}

std::vector<Scale::Answer> Scale::receive(std::span<const std::uint8_t> bytes) {
  std::vector<Answer> answers;
  for (const std::uint8_t byte : bytes) {
    const auto found = recogniser_.feed(byte);
    if (!found) continue;
    carryOut(*found);
    const Action action = found->command->action;
    Bytes reply = action == Action::Weigh ? frame() : found->command->reply.bytes;
    if (!reply.empty()) answers.push_back({action, std::move(reply)});
  }
  return answers;
}

void Scale::carryOut(const RequestRecogniser::Found& found) {
  const Action action = found.command->action;
  ++counts_[static_cast<std::size_t>(action)];
  switch (action) {
    case Action::Tare: state_.pressTare(); break;
    case Action::Zero: state_.pressZero(); break;
    case Action::Price: state_.price = priceOf(found.payload); break;
    case Action::Weigh:
    case Action::Setup: break;
  }
}

}  // namespace sim
