#pragma once

#include "PolledScales.h"

/// VTA-60 of Prompribor (model 0). Weight in grams, price and cost in hundredths. Takes tare and
/// price.
class CScalesVTA5 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  CScalesVTA5() : PolledScales(kSheet) {}
};

/// VN-..-a-CI of Prompribor with block IE04 (model 1). Grams. Takes tare.
class ScalesVN_A_CI final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesVN_A_CI() : PolledScales(kSheet) {}
};

/// VN-..-220V of Prompribor with block IE03, on request (model 4). Grams. Takes tare.
class ScalesVN_220_CI_OLD final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesVN_220_CI_OLD() : PolledScales(kSheet) {}
};
