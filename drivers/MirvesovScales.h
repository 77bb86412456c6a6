#pragma once

#include "PolledScales.h"

/// A9 and DS3M1 of Mirvesov (model 7). Grams.
class ScalesA9 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesA9() : PolledScales(kSheet) {}
};

/// A9 in continuous transmission (model 34). Kilograms.
class CScalesA9Contin final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  CScalesA9Contin() : PolledScales(kSheet) {}
};

/// A12 of Mirvesov (model 8). Grams. Takes tare and zero.
class ScalesA12 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesA12() : PolledScales(kSheet) {}
};

/// A12EH and some BDU (model 31), in continuous transmission. Kilograms.
class ScalesA12EH final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesA12EH() : PolledScales(kSheet) {}
};

/// DS2 of Mirvesov (model 12). Grams.
class ScalesDS2 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesDS2() : PolledScales(kSheet) {}
};
