#pragma once

#include "Faults.h"
#include "Line.h"
#include "Scale.h"

namespace sim {

/// A scale at its line: answers what arrives, streams where the model does, and keeps the times of
/// its misbehaviour. Used by one thread.
class ScaleLine final : public Line {
 public:
  ScaleLine(Scale scale, std::unique_ptr<Endpoint> endpoint, Faults faults = {});

  Scale& scale() { return scale_; }
  const Scale& scale() const { return scale_; }
  /// Replaces the misbehaviour; its counting of frames starts anew.
  void setFaults(Faults faults);
  const Faults& faults() const { return faults_; }

  /// Makes the line vanish until `comeBack`; what was still to be sent is lost.
  void goAway();
  void comeBack();

  short events() const override;
  Clock::time_point deadline() const override;
  void advance(Clock::time_point now) override;

 private:
  void hear(const Bytes& arrived, Clock::time_point now) override;
  void forgetPartOfRequest() override { scale_.forgetPartOfRequest(); }
  bool streams() const override { return scale_.model().streams() && !sendsWithoutEnd(); }
  void sendUnasked(Clock::time_point now) override { sendFrame(scale_.frame(), now); }
  void hangUp(Clock::time_point now) override;
  bool sendsWithoutEnd() const { return faults_.endless != Faults::Endless::Nothing; }
  void sendWithoutEnd(Clock::time_point now);
  void sendFrame(Bytes frame, Clock::time_point now);

  Scale scale_;
  Faults faults_;
  Misbehaviour misbehaviour_;
  Clock::time_point nextEndless_ = Clock::time_point::min();
  Clock::time_point returns_ = Clock::time_point::max();
};

}  // namespace sim
