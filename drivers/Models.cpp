#include "Models.h"

#include <array>

#include "CamryOcsDigiCertusScales.h"
#include "CasScales.h"
#include "JadeverScales.h"
#include "KeliScales.h"
#include "MassaKRinstrumScales.h"
#include "MirvesovScales.h"
#include "PrompriborScales.h"
#include "ScalesEmulyator.h"
#include "SmartEsitVisBstScales.h"
#include "TekhnovagiAxisScales.h"
#include "TerminalScales.h"

namespace {

template <typename Driver>
std::unique_ptr<IScalesObject> make() {
  return std::make_unique<Driver>();
}

template <typename Driver>
constexpr ScalesModel with(int number, const char* pageText) {
  return {number, pageText, make<Driver>, &Driver::kSheet};
}

constexpr ScalesModel emulator(int number, const char* pageText) {
  return {number, pageText, make<ScalesEmulyator>, nullptr};
}

constexpr ScalesModel without(int number, const char* pageText) {
  return {number, pageText, nullptr, nullptr};
}

constexpr std::array kModels = {
    with<CScalesVTA5>(0, "0:  ВТА-60 (Промприбор)"),
    with<ScalesVN_A_CI>(1, "1:  ВН-..-а-СI (блок ІЕ04, Промприбор)"),
    with<ScalesTBE>(2, "2:  TBE  (Техноваги)"),
    with<ScalesTB1>(3, "3:  TB1, TB4  (Техноваги)"),
    with<ScalesVN_220_CI_OLD>(4, "4:  ВН-..- 220В (Блок ІЕ03, v1100, по запросу, Промприбор)"),
    without(5, "5:  ВН-..- 220В (Блок ІЕ03, v1100, событие, на весах кнопка отправки данных)"),
    without(6, "6:  ВН-..-а-CI  (Блок ІЕ04, + сканер штрих кодов)"),
    with<ScalesA9>(7, "7:  А9, DS3M1  (Мирвесов)"),
    with<ScalesA12>(8, "8:  А12 (Мирвесов)"),
    with<ScalesAxis_BTU>(9, "9:  BDU, BTU, BD, 4BDU, SE01, SE02 (Axis)"),
    with<ScalesMASSAK_MK_TB__MK_TH>(10, "10: Масса-К (МК_ТВ, МК_ТН)"),
    with<Scales_R320>(11, "11: Rinstrum R320,R420"),
    with<ScalesDS2>(12, "12: DS2 (Мирвесов)"),
    with<ScalesCAS>(13, "13: CAS (АР, AD, DB, ER, EM, SW, CS)"),
    with<ScalesCASLP16>(14, "14: CAS-LP (v1.6)"),
    without(15, "15: BTA-60 (протокол 3) (прием по нажатию кнопки \"Х\" на весах)"),
    with<Scales_KELI>(16, "16: KELI"),
    with<CScalesCamry>(17, "17: Camry"),
    with<CScalesOCSrc>(18, "18: OCS, ВК ЗЕВС III с радиоканалом"),
    with<ScalesJADEVER_SNUGII>(19, "19: JADEVER SNUG II"),
    emulator(20,
             "20: ЭМУЛЯТОР ВЕСОВ (помогает настроить работу без физического подключения весов)"),
    with<ScalesJADEVER_JPL_N>(21, "21: JADEVER JPL, JPL-N"),
    without(22,
            "22: BTA-60 (протокол 4) (прием по нажатию кнопки \"Х\" на весах, + передача цены на "
            "весы)"),
    with<Scales_DIGI788>(23, "23: DIGI DS-788, 781, 782"),
    with<ScalesIQplus355>(24, "24: IQ plus 355"),
    with<ScalesCertusCBA>(25, "25: CERTUS CBA"),
    with<Scales_HBMWE2110>(26, "26: HBM WE2110"),
    with<ScalesBTHE_SDL_07>(27, "27: BTHE (протокол CAS, SDL-07)"),
    with<ScalesBTHE_UNS_2>(28, "28: BTHE (протокол UNS-02)"),
    with<ScalesT7E>(29, "29: T7E"),
    with<ScalesICS_NT>(30, "30: ICS NT"),
    with<ScalesA12EH>(31, "31: A12EH (и некоторые модели BDU)"),
    without(32, "32: ВН-..- 220В, ввод Тары (1С-Cобытие, на весах кнопка отправки данных)"),
    with<CScalesSMART>(33, "33: SMART"),
    with<CScalesA9Contin>(34, "34: А9 (непрерывный режим передачи)"),
    with<CScalesWPT4Radwag>(35, "35: WPT/4  RADWAG"),
    with<CScalesESITSMART2>(36, "36: ESIT Smart2"),
    with<ScalesESIT_ECI_STATIC>(37, "37: ESIT ECI STATIC"),
    with<ScalesK9Keli>(38, "38: KELI: K9"),
    with<ScalesVIS318L>(39, "39: ВИС HL318L"),
    with<ScalesD12Keli>(40, "40: KELI: D12"),
    with<ScalesBST106>(41, "41: Резерв"),
    without(42, "42: Резерв"),
    without(43, "43: Резерв"),
    without(44, "44: Резерв"),
    without(45, "45: Резерв"),
};

constexpr bool numberedFromZero() {
  for (std::size_t i = 0; i < kModels.size(); ++i) {
    if (kModels[i].number != static_cast<int>(i)) return false;
  }
  return true;
}
static_assert(numberedFromZero(), "findScalesModel takes a number as the index of its row");

}  // namespace

std::span<const ScalesModel> scalesModels() { return kModels; }

const ScalesModel* findScalesModel(int number) {
  if (number < 0 || static_cast<std::size_t>(number) >= kModels.size()) return nullptr;
  return &kModels[static_cast<std::size_t>(number)];
}

std::unique_ptr<IScalesObject> createScales(int model) {
  const ScalesModel* row = findScalesModel(model);
  return row == nullptr || row->create == nullptr ? nullptr : row->create();
}
