#pragma once

#include "PolledScales.h"

/// Camry (model 17). Kilograms and money units.
class CScalesCamry final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  CScalesCamry() : PolledScales(kSheet) {}
};

/// OCS and VK ZEVS III with radio link (model 18), in continuous transmission. The weight as the
/// scale shows it.
class CScalesOCSrc final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  CScalesOCSrc() : PolledScales(kSheet) {}
};

/// DIGI DS-788, 781, 782 (model 23). The weight as the scale shows it.
class Scales_DIGI788 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  Scales_DIGI788() : PolledScales(kSheet) {}
};

/// CERTUS CBA (model 25), in continuous transmission. The weight as the scale shows it.
class ScalesCertusCBA final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesCertusCBA() : PolledScales(kSheet) {}
};
