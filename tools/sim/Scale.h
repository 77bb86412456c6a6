#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "ScaleModel.h"

namespace sim {

/// One simulated scale without its line: requests in, answers out. Finds the model's commands in
/// what arrives, in pieces of any size. Bytes that begin no command are stepped over; a command
/// that is a line of text begins where a line does.
class Scale {
 public:
  explicit Scale(const ScaleModel& model) : Scale(model, model.usualState()) {}
  Scale(const ScaleModel& model, const ScaleState& state) : model_(&model), state_(state) {}

  /// The model's description, which lives as long as the program.
  const ScaleModel& model() const { return *model_; }

  /// What a scale has to say to a piece of its input.
  struct Answer {
    Action action;
    Bytes bytes;
  };
  /// Takes what arrived, carries the commands out and returns the answers to them in order; a
  /// command without answer gives none.
  std::vector<Answer> receive(std::span<const std::uint8_t> bytes);
  /// Forgets a request that has come in part, as scales do after a silence.
  void forgetPartOfRequest() {
    pending_.clear();
    atLineStart_ = true;
  }

  /// May be changed at any time; the next frame shows it.
  ScaleState& state() { return state_; }
  const ScaleState& state() const { return state_; }
  Bytes frame() const { return model_->frame(state_); }
  Reading expectedReading() const { return model_->expectedReading(state_); }
  /// How many commands of a kind have come.
  int count(Action action) const { return counts_[static_cast<std::size_t>(action)]; }

 private:
  bool mayBe(const Command& command) const;
  const Command* completed();
  void carryOut(const Command& command);

  const ScaleModel* model_;
  ScaleState state_;
  /// What has come of a command.
  Bytes pending_;
  /// Whether the byte before those pending ended a line.
  bool atLineStart_ = true;
  std::array<int, 5> counts_ = {};
};

}  // namespace sim
