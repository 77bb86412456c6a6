#pragma once

#include "PolledScales.h"

/// JADEVER SNUG II (model 19), in continuous transmission. Kilograms.
class ScalesJADEVER_SNUGII final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesJADEVER_SNUGII() : PolledScales(kSheet) {}
};

/// JADEVER JPL and JPL-N (model 21). Kilograms and money units. Takes tare and price.
class ScalesJADEVER_JPL_N final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesJADEVER_JPL_N() : PolledScales(kSheet) {}
};
