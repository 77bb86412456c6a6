#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "Endpoint.h"
#include "ExchangeRecords.h"
#include "Line.h"

namespace sim {

/// Plays the scale's side of a recorded exchange, again and again. Answers come in the pieces of
/// the record and in its order; its pauses aren't recorded, so they come at once. A scale that
/// wasn't asked sends all that was heard of it in one go, time after time.
class ReplayLine : public Line {
 public:
  /// `turns` must not be empty.
  ReplayLine(std::vector<exchange::Turn> turns, std::unique_ptr<Endpoint> endpoint);

  const Endpoint& endpoint() const { return *endpoint_; }
  void setObserver(Observer observer) { observer_ = std::move(observer); }
  /// Called when a request has come that isn't the recorded one: with the bytes that came, and
  /// those of the record.
  using Stranger = std::function<void(const Bytes& came, const Bytes& recorded)>;
  void setStranger(Stranger stranger) { stranger_ = std::move(stranger); }

  int descriptor() const override { return endpoint_->descriptor(); }
  short events() const override;
  Clock::time_point deadline() const override;
  void receive(Clock::time_point now) override;
  void advance(Clock::time_point now) override;

 private:
  struct Outgoing {
    Clock::time_point due;
    Bytes bytes;
  };

  bool streams() const { return turns_.front().request.empty(); }
  void send(const Bytes& bytes);
  void answer(Clock::time_point now);

  std::vector<exchange::Turn> turns_;
  std::unique_ptr<Endpoint> endpoint_;
  Observer observer_;
  Stranger stranger_;
  std::size_t turn_ = 0;
  /// What has come of the request of the present turn.
  Bytes came_;
  std::deque<Outgoing> queue_;
  Clock::time_point lastInput_ = Clock::time_point::min();
  Clock::time_point nextStream_ = Clock::time_point::min();
};

}  // namespace sim
