#pragma once

#include "PolledScales.h"

/// TBE of Tekhnovagi (model 2). Grams. Takes tare.
class ScalesTBE final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesTBE() : PolledScales(kSheet) {}
};

/// TB1 and TB4 of Tekhnovagi (model 3). The weight as the scale shows it. Takes tare.
class ScalesTB1 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesTB1() : PolledScales(kSheet) {}
};

/// BDU, BTU, BD, 4BDU, SE01, SE02 of Axis (model 9). Grams. Takes tare.
class ScalesAxis_BTU final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesAxis_BTU() : PolledScales(kSheet) {}
};
