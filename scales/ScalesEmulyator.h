#pragma once

#include "ScalesObject.h"

/// A scale that needs no port and invents its weights (kilograms) and prices (money units), so
/// that a configuration can be set up without hardware. One reading in five is unstable, one in
/// ten ends as if the scale hadn't answered. A given seed of `rand` gives a given sequence.
class ScalesEmulyator final : public IScalesObject {
 public:
  int OpenComPort() override;
  int getScalesInfo(double* weight, double* price, double* cost, long* stable) override;
  int pressT(double tare) override;
  int pressNull() override;
  /// Takes the price in hundredths. What is negative in its low 32 bits brings random prices.
  int setPrice(long price) override;

 private:
  std::int32_t price_ = -1;
};
