#pragma once

#include "PolledScales.h"

/// KELI indicators (model 16). The weight as the scale shows it. Takes zero.
class Scales_KELI final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  Scales_KELI() : PolledScales(kSheet) {}
};

/// KELI K9 (model 38). The weight as the scale shows it.
class ScalesK9Keli final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesK9Keli() : PolledScales(kSheet) {}
};

/// KELI D12 (model 40), over Modbus RTU. The weight as the scale shows it. Takes zero, which is
/// its tare too.
class ScalesD12Keli final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesD12Keli() : PolledScales(kSheet) {}
};

/// T7E (model 29), in continuous transmission. The weight as the scale shows it.
class ScalesT7E final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesT7E() : PolledScales(kSheet) {}
};
