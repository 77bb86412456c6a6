#pragma once

#include "PolledScales.h"

/// SMART (model 33), in continuous transmission. The weight as the scale shows it.
class CScalesSMART final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  CScalesSMART() : PolledScales(kSheet) {}
};

/// ESIT Smart2 (model 36), in continuous transmission. The weight as the scale shows it.
class CScalesESITSMART2 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  CScalesESITSMART2() : PolledScales(kSheet) {}
};

/// ESIT ECI STATIC (model 37). The weight as the scale shows it. Takes tare.
class ScalesESIT_ECI_STATIC final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesESIT_ECI_STATIC() : PolledScales(kSheet) {}
};

/// VIS HL318L (model 39), in continuous transmission. The weight as the scale shows it.
class ScalesVIS318L final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesVIS318L() : PolledScales(kSheet) {}
};

/// BST106 (model 41), over Modbus RTU. The weight as the scale counts it. Takes tare.
class ScalesBST106 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesBST106() : PolledScales(kSheet) {}
};
