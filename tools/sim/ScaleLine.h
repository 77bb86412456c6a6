#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <span>

#include "Endpoint.h"
#include "Faults.h"
#include "Line.h"
#include "Scale.h"

namespace sim {

/// A scale at its line: answers what arrives, streams where the model does, and keeps the times of
/// its misbehaviour. Used by one thread.
class ScaleLine : public Line {
 public:
  ScaleLine(Scale scale, std::unique_ptr<Endpoint> endpoint, Faults faults = {});

  Scale& scale() { return scale_; }
  const Scale& scale() const { return scale_; }
  const Endpoint& endpoint() const { return *endpoint_; }
  /// Replaces the misbehaviour; its counting of frames starts anew.
  void setFaults(Faults faults);
  const Faults& faults() const { return faults_; }
  void setObserver(Observer observer) { observer_ = std::move(observer); }

  /// Makes the line vanish until `comeBack`; what was still to be sent is lost.
  void goAway();
  void comeBack();

  int descriptor() const override { return endpoint_->descriptor(); }
  short events() const override;
  Clock::time_point deadline() const override;
  void receive(Clock::time_point now) override;
  void advance(Clock::time_point now) override;

 private:
  struct Outgoing {
    Clock::time_point due;
    Bytes bytes;
    bool hangUp;
  };

  bool wantsToStream() const;
  bool sendsWithoutEnd() const { return faults_.endless != Faults::Endless::Nothing; }
  void sendWithoutEnd(Clock::time_point now);
  void sendFrame(Bytes frame, Clock::time_point now);
  void enqueue(Bytes bytes, std::chrono::milliseconds pause, Clock::time_point now, bool hangUp);
  void hangUp(Clock::time_point now);
  Clock::time_point lastDue(Clock::time_point now) const;

  Scale scale_;
  std::unique_ptr<Endpoint> endpoint_;
  Faults faults_;
  Misbehaviour misbehaviour_;
  Observer observer_;
  std::deque<Outgoing> queue_;
  Clock::time_point nextFrame_ = Clock::time_point::min();
  Clock::time_point nextEndless_ = Clock::time_point::min();
  Clock::time_point returns_ = Clock::time_point::max();
  Clock::time_point lastInput_ = Clock::time_point::min();
};

}  // namespace sim
