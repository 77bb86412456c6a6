#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Models.h"
#include "PollTime.h"
#include "SimulatedScale.h"

/// What a poll may come to.
enum class Expected {
  /// Code and numbers that the scale's state calls for.
  Right,
  /// "No answer", and no weight.
  NoAnswer,
  /// "No connection", and no weight.
  NoConnection,
  /// The right reading, "no answer" or "no connection", but no wrong weight.
  RightOrNone,
  /// Any reading: the protocol has nothing by which to tell.
  Anything,
};

/// One driver at one simulated scale. Polls, and notes everything that isn't as it should be.
class Trial {
 public:
  Trial(const sim::ScaleModel& model, sim::Transport transport);

  const sim::ScaleModel& model() const { return model_; }
  bool overTcp() const { return transport_ == sim::Transport::Tcp; }
  sim::SimulatedScale& scale() { return scale_; }

  /// How the scale sends from now on, and what that costs a call of the processor beside its waits.
  void talks(Talk talk, std::chrono::milliseconds work = {}) {
    talk_ = talk;
    work_ = work;
  }

  /// `expected` if the driver has a way to tell a bad frame of this model, otherwise anything.
  Expected ifTold(Expected expected) const;
  void poll(std::string_view when, Expected expected);
  /// Presses the tare key, where the model has it; only the time is looked at.
  void tare(std::string_view when);

  /// What went wrong: empty if nothing did.
  const std::vector<std::string>& faults() const { return faults_; }
  /// Whether all of it is a call that lasted too long.
  bool wasOnlyLate() const { return late_ == faults_.size(); }

 private:
  using Clock = std::chrono::steady_clock;

  bool allows(Expected expected, const sim::Reading& got, double weightBefore);
  void note(std::string_view when, const std::string& what);
  void noteIfLate(std::string_view when, Clock::time_point begin, std::chrono::milliseconds waits);

  const sim::ScaleModel& model_;
  const ProtocolSheet& sheet_;
  sim::Transport transport_;
  sim::SimulatedScale scale_;
  std::unique_ptr<IScalesObject> driver_;
  Talk talk_;
  std::chrono::milliseconds work_{0};
  std::vector<std::string> faults_;
  std::size_t late_ = 0;
};
