#pragma once

#include "PolledScales.h"

/// Massa-K MK_TV and MK_TN (model 10). The weight as the scale counts it.
class ScalesMASSAK_MK_TB__MK_TH final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesMASSAK_MK_TB__MK_TH() : PolledScales(kSheet) {}
};

/// Rinstrum R320 and R420 (model 11). Grams.
class Scales_R320 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  Scales_R320() : PolledScales(kSheet) {}
};
