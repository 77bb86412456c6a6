#pragma once

#include "PolledScales.h"
#include "ProtocolSheet.h"

// The drivers: one class for each protocol, and the sheet that it polls by. In the drawings over
// the sheets a ruler counts the bytes of the frame; those with "--" under them are not looked at.

template <const ProtocolSheet& sheet>
class SheetScales final : public PolledScales {
 public:
  static constexpr const ProtocolSheet& kSheet = sheet;
  SheetScales() : PolledScales(sheet) {}
};

// PrompriborScales.cpp
extern const ProtocolSheet kSheetOfVTA5;
extern const ProtocolSheet kSheetOfVN_A_CI;
extern const ProtocolSheet kSheetOfVN_220_CI_OLD;
using CScalesVTA5 = SheetScales<kSheetOfVTA5>;
using ScalesVN_A_CI = SheetScales<kSheetOfVN_A_CI>;
using ScalesVN_220_CI_OLD = SheetScales<kSheetOfVN_220_CI_OLD>;

// TekhnovagiAxisScales.cpp
extern const ProtocolSheet kSheetOfTBE;
extern const ProtocolSheet kSheetOfTB1;
extern const ProtocolSheet kSheetOfAxis_BTU;
using ScalesTBE = SheetScales<kSheetOfTBE>;
using ScalesTB1 = SheetScales<kSheetOfTB1>;
using ScalesAxis_BTU = SheetScales<kSheetOfAxis_BTU>;

// MirvesovScales.cpp
extern const ProtocolSheet kSheetOfA9;
extern const ProtocolSheet kSheetOfA9Contin;
extern const ProtocolSheet kSheetOfA12;
extern const ProtocolSheet kSheetOfA12EH;
extern const ProtocolSheet kSheetOfDS2;
using ScalesA9 = SheetScales<kSheetOfA9>;
using CScalesA9Contin = SheetScales<kSheetOfA9Contin>;
using ScalesA12 = SheetScales<kSheetOfA12>;
using ScalesA12EH = SheetScales<kSheetOfA12EH>;
using ScalesDS2 = SheetScales<kSheetOfDS2>;

// MassaKRinstrumScales.cpp
extern const ProtocolSheet kSheetOfMASSAK_MK_TB__MK_TH;
extern const ProtocolSheet kSheetOfR320;
using ScalesMASSAK_MK_TB__MK_TH = SheetScales<kSheetOfMASSAK_MK_TB__MK_TH>;
using Scales_R320 = SheetScales<kSheetOfR320>;

// JadeverScales.cpp
extern const ProtocolSheet kSheetOfJADEVER_SNUGII;
extern const ProtocolSheet kSheetOfJADEVER_JPL_N;
using ScalesJADEVER_SNUGII = SheetScales<kSheetOfJADEVER_SNUGII>;
using ScalesJADEVER_JPL_N = SheetScales<kSheetOfJADEVER_JPL_N>;

// CasScales.cpp
extern const ProtocolSheet kSheetOfCAS;
extern const ProtocolSheet kSheetOfBTHE_SDL_07;
extern const ProtocolSheet kSheetOfCASLP16;
extern const ProtocolSheet kSheetOfBTHE_UNS_2;
using ScalesCAS = SheetScales<kSheetOfCAS>;
using ScalesBTHE_SDL_07 = SheetScales<kSheetOfBTHE_SDL_07>;
using ScalesCASLP16 = SheetScales<kSheetOfCASLP16>;
using ScalesBTHE_UNS_2 = SheetScales<kSheetOfBTHE_UNS_2>;

// KeliScales.cpp
extern const ProtocolSheet kSheetOfKELI;
extern const ProtocolSheet kSheetOfK9Keli;
extern const ProtocolSheet kSheetOfD12Keli;
extern const ProtocolSheet kSheetOfT7E;
using Scales_KELI = SheetScales<kSheetOfKELI>;
using ScalesK9Keli = SheetScales<kSheetOfK9Keli>;
using ScalesD12Keli = SheetScales<kSheetOfD12Keli>;
using ScalesT7E = SheetScales<kSheetOfT7E>;

// CamryOcsDigiCertusScales.cpp
extern const ProtocolSheet kSheetOfCamry;
extern const ProtocolSheet kSheetOfOCSrc;
extern const ProtocolSheet kSheetOfDIGI788;
extern const ProtocolSheet kSheetOfCertusCBA;
using CScalesCamry = SheetScales<kSheetOfCamry>;
using CScalesOCSrc = SheetScales<kSheetOfOCSrc>;
using Scales_DIGI788 = SheetScales<kSheetOfDIGI788>;
using ScalesCertusCBA = SheetScales<kSheetOfCertusCBA>;

// TerminalScales.cpp
extern const ProtocolSheet kSheetOfIQplus355;
extern const ProtocolSheet kSheetOfHBMWE2110;
extern const ProtocolSheet kSheetOfICS_NT;
extern const ProtocolSheet kSheetOfWPT4Radwag;
using ScalesIQplus355 = SheetScales<kSheetOfIQplus355>;
using Scales_HBMWE2110 = SheetScales<kSheetOfHBMWE2110>;
using ScalesICS_NT = SheetScales<kSheetOfICS_NT>;
using CScalesWPT4Radwag = SheetScales<kSheetOfWPT4Radwag>;

// SmartEsitVisBstScales.cpp
extern const ProtocolSheet kSheetOfSMART;
extern const ProtocolSheet kSheetOfESITSMART2;
extern const ProtocolSheet kSheetOfESIT_ECI_STATIC;
extern const ProtocolSheet kSheetOfVIS318L;
extern const ProtocolSheet kSheetOfBST106;
using CScalesSMART = SheetScales<kSheetOfSMART>;
using CScalesESITSMART2 = SheetScales<kSheetOfESITSMART2>;
using ScalesESIT_ECI_STATIC = SheetScales<kSheetOfESIT_ECI_STATIC>;
using ScalesVIS318L = SheetScales<kSheetOfVIS318L>;
using ScalesBST106 = SheetScales<kSheetOfBST106>;

// Short names for the sheets.
using Take = TextNotation::Take;
inline constexpr auto kCostsAsSilence = StartByteRead::WrongByte::CostsAsSilence;
inline constexpr auto kCostsOne_ms = StartByteRead::WrongByte::CostsOne_ms;
