#pragma once

#include "PolledScales.h"

/// IQ plus 355 (model 24). The weight as the terminal shows it. Takes tare; a price selects one of
/// its setup commands.
class ScalesIQplus355 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesIQplus355() : PolledScales(kSheet) {}
};

/// HBM WE2110 (model 26). The weight as the terminal shows it. Takes tare.
class Scales_HBMWE2110 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  Scales_HBMWE2110() : PolledScales(kSheet) {}
};

/// ICS NT (model 30). Kilograms, price and cost as the terminal counts them. Takes tare and price.
class ScalesICS_NT final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesICS_NT() : PolledScales(kSheet) {}
};

/// RADWAG WPT/4 (model 35). The weight as the terminal shows it. Takes tare.
class CScalesWPT4Radwag final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  CScalesWPT4Radwag() : PolledScales(kSheet) {}
};
