#pragma once

#include <vector>

#include "ExchangeRecords.h"
#include "Line.h"

namespace sim {

/// Plays the scale's side of a recorded exchange, again and again. Answers come in the pieces of
/// the record and in its order; its pauses aren't recorded, so they come at once. A scale that
/// wasn't asked sends all that was heard of it in one go, time after time.
class ReplayLine final : public Line {
 public:
  /// `turns` must not be empty.
  ReplayLine(std::vector<exchange::Turn> turns, std::unique_ptr<Endpoint> endpoint);

  /// Called when a request has come that isn't the recorded one: with the bytes that came, and
  /// those of the record.
  using Stranger = std::function<void(const Bytes& came, const Bytes& recorded)>;
  void setStranger(Stranger stranger) { stranger_ = std::move(stranger); }

 private:
  void hear(const Bytes& arrived, Clock::time_point now) override;
  void forgetPartOfRequest() override { came_.clear(); }
  bool streams() const override { return turns_.front().request.empty(); }
  void sendUnasked(Clock::time_point now) override;
  void answer(Clock::time_point now);

  std::vector<exchange::Turn> turns_;
  Stranger stranger_;
  std::size_t turn_ = 0;
  /// What has come of the request of the present turn.
  Bytes came_;
};

}  // namespace sim
