#pragma once

#include "ProtocolSheet.h"
#include "ScalesObject.h"

/// A scale that is polled by its protocol sheet. All that the protocols share stands here: the
/// line settings at opening, the guard, the attempts, the commands and the ways out.
///
///     PolledScales scale(kSheetOfCAS);
///     scale.SetComPort("/dev/ttyUSB0", 9600, nullptr);
///     const int code = scale.getScalesInfo(&weight, &price, &cost, &stable);
///
/// The calls answer with a result code; the outputs hold what the sheet says, whatever the code.
class PolledScales : public IScalesObject {
 public:
  /// `sheet` must outlive the object.
  explicit PolledScales(const ProtocolSheet& sheet) : sheet_(sheet) {}

  int OpenComPort() override;
  int getScalesInfo(double* weight, double* price, double* cost, long* stable) override;
  int pressT(double tare) override;
  int pressNull() override;
  int setPrice(long price) override;

 private:
  int poll(Outputs& outputs);
  void sendRequest(Frame lastFrame);
  int send(const Command& command);
  template <typename Operation>
  int underCatchAll(Operation operation);

  const ProtocolSheet& sheet_;
};
