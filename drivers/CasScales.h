#pragma once

#include "PolledScales.h"

/// CAS AP, AD, DB, ER, EM, SW, CS (model 13). The weight as the scale shows it.
class ScalesCAS final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesCAS() : PolledScales(kSheet) {}
};

/// CAS LP, version 1.6 (model 14). Weight, price and cost as the scale counts them.
class ScalesCASLP16 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesCASLP16() : PolledScales(kSheet) {}
};

/// BTHE with the CAS protocol SDL-07 (model 27).
class ScalesBTHE_SDL_07 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesBTHE_SDL_07() : PolledScales(kSheet) {}
};

/// BTHE with the protocol UNS-02 (model 28). Takes tare and price.
class ScalesBTHE_UNS_2 final : public PolledScales {
 public:
  static const ProtocolSheet kSheet;
  ScalesBTHE_UNS_2() : PolledScales(kSheet) {}
};
