#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "ScaleModel.h"

namespace sim {

/// Finds the commands of a model in what arrives byte by byte, in pieces of any size. Bytes that
/// begin no command are stepped over; a command that is a line of text begins where a line does.
class RequestRecogniser {
 public:
  explicit RequestRecogniser(const ScaleModel& model) : model_(&model) {}

  struct Found {
    const Command* command;
    Bytes payload;
  };

  /// Takes one byte; the command that it completes, if it does.
  std::optional<Found> feed(std::uint8_t byte);
  /// Forgets a command that has come in part.
  void reset() {
    pending_.clear();
    atLineStart_ = true;
  }

 private:
  enum class Match { None, Partial, Whole };
  Match match(const Command& command) const;

  const ScaleModel* model_;
  Bytes pending_;
  /// Whether the byte before those pending ended a line.
  bool atLineStart_ = true;
};

/// One simulated scale without its line: requests in, answers out.
class Scale {
 public:
  explicit Scale(const ScaleModel& model) : Scale(model, model.usualState()) {}
  Scale(const ScaleModel& model, const ScaleState& state)
      : model_(&model), state_(state), recogniser_(model) {}

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
  void forgetPartOfRequest() { recogniser_.reset(); }

  /// May be changed at any time; the next frame shows it.
  ScaleState& state() { return state_; }
  const ScaleState& state() const { return state_; }
  Bytes frame() const { return model_->frame(state_); }
  Reading expectedReading() const { return model_->expectedReading(state_); }
  /// How many commands of a kind have come.
  int count(Action action) const { return counts_[static_cast<std::size_t>(action)]; }

 private:
  void carryOut(const RequestRecogniser::Found& found);

  const ScaleModel* model_;
  ScaleState state_;
  RequestRecogniser recogniser_;
  std::array<int, 5> counts_ = {};
};

}  // namespace sim
