#include "Models.h"

#include <array>

#include "Drivers.h"
#include "ScalesEmulyator.h"

namespace {

template <typename Driver>
std::unique_ptr<IScalesObject> make() {
  return std::make_unique<Driver>();
}

struct Row {
  const char* name;
  std::unique_ptr<IScalesObject> (*create)() = nullptr;
  const ProtocolSheet* sheet = nullptr;
};

constexpr auto kRows = std::to_array<Row>({
    {"ВТА-60 (Промприбор)", make<CScalesVTA5>, &CScalesVTA5::kSheet},
    {"ВН-..-а-СI (блок ІЕ04, Промприбор)", make<ScalesVN_A_CI>, &ScalesVN_A_CI::kSheet},
    {"TBE  (Техноваги)", make<ScalesTBE>, &ScalesTBE::kSheet},
    {"TB1, TB4  (Техноваги)", make<ScalesTB1>, &ScalesTB1::kSheet},
    {"ВН-..- 220В (Блок ІЕ03, v1100, по запросу, Промприбор)", make<ScalesVN_220_CI_OLD>,
     &ScalesVN_220_CI_OLD::kSheet},
    {"ВН-..- 220В (Блок ІЕ03, v1100, событие, на весах кнопка отправки данных)"},
    {"ВН-..-а-CI  (Блок ІЕ04, + сканер штрих кодов)"},
    {"А9, DS3M1  (Мирвесов)", make<ScalesA9>, &ScalesA9::kSheet},
    {"А12 (Мирвесов)", make<ScalesA12>, &ScalesA12::kSheet},
    {"BDU, BTU, BD, 4BDU, SE01, SE02 (Axis)", make<ScalesAxis_BTU>, &ScalesAxis_BTU::kSheet},
    {"Масса-К (МК_ТВ, МК_ТН)", make<ScalesMASSAK_MK_TB__MK_TH>, &ScalesMASSAK_MK_TB__MK_TH::kSheet},
    {"Rinstrum R320,R420", make<Scales_R320>, &Scales_R320::kSheet},
    {"DS2 (Мирвесов)", make<ScalesDS2>, &ScalesDS2::kSheet},
    {"CAS (АР, AD, DB, ER, EM, SW, CS)", make<ScalesCAS>, &ScalesCAS::kSheet},
    {"CAS-LP (v1.6)", make<ScalesCASLP16>, &ScalesCASLP16::kSheet},
    {"BTA-60 (протокол 3) (прием по нажатию кнопки \"Х\" на весах)"},
    {"KELI", make<Scales_KELI>, &Scales_KELI::kSheet},
    {"Camry", make<CScalesCamry>, &CScalesCamry::kSheet},
    {"OCS, ВК ЗЕВС III с радиоканалом", make<CScalesOCSrc>, &CScalesOCSrc::kSheet},
    {"JADEVER SNUG II", make<ScalesJADEVER_SNUGII>, &ScalesJADEVER_SNUGII::kSheet},
    {"ЭМУЛЯТОР ВЕСОВ (помогает настроить работу без физического подключения весов)",
     make<ScalesEmulyator>},
    {"JADEVER JPL, JPL-N", make<ScalesJADEVER_JPL_N>, &ScalesJADEVER_JPL_N::kSheet},
    {"BTA-60 (протокол 4) (прием по нажатию кнопки \"Х\" на весах, + передача цены на весы)"},
    {"DIGI DS-788, 781, 782", make<Scales_DIGI788>, &Scales_DIGI788::kSheet},
    {"IQ plus 355", make<ScalesIQplus355>, &ScalesIQplus355::kSheet},
    {"CERTUS CBA", make<ScalesCertusCBA>, &ScalesCertusCBA::kSheet},
    {"HBM WE2110", make<Scales_HBMWE2110>, &Scales_HBMWE2110::kSheet},
    {"BTHE (протокол CAS, SDL-07)", make<ScalesBTHE_SDL_07>, &ScalesBTHE_SDL_07::kSheet},
    {"BTHE (протокол UNS-02)", make<ScalesBTHE_UNS_2>, &ScalesBTHE_UNS_2::kSheet},
    {"T7E", make<ScalesT7E>, &ScalesT7E::kSheet},
    {"ICS NT", make<ScalesICS_NT>, &ScalesICS_NT::kSheet},
    {"A12EH (и некоторые модели BDU)", make<ScalesA12EH>, &ScalesA12EH::kSheet},
    {"ВН-..- 220В, ввод Тары (1С-Cобытие, на весах кнопка отправки данных)"},
    {"SMART", make<CScalesSMART>, &CScalesSMART::kSheet},
    {"А9 (непрерывный режим передачи)", make<CScalesA9Contin>, &CScalesA9Contin::kSheet},
    {"WPT/4  RADWAG", make<CScalesWPT4Radwag>, &CScalesWPT4Radwag::kSheet},
    {"ESIT Smart2", make<CScalesESITSMART2>, &CScalesESITSMART2::kSheet},
    {"ESIT ECI STATIC", make<ScalesESIT_ECI_STATIC>, &ScalesESIT_ECI_STATIC::kSheet},
    {"KELI: K9", make<ScalesK9Keli>, &ScalesK9Keli::kSheet},
    {"ВИС HL318L", make<ScalesVIS318L>, &ScalesVIS318L::kSheet},
    {"KELI: D12", make<ScalesD12Keli>, &ScalesD12Keli::kSheet},
    {"Резерв", make<ScalesBST106>, &ScalesBST106::kSheet},
    {"Резерв"},
    {"Резерв"},
    {"Резерв"},
    {"Резерв"},
});

constexpr auto kModels = [] {
  std::array<ScalesModel, kRows.size()> models = {};
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    models[i] = {static_cast<int>(i), kRows[i].name, kRows[i].create, kRows[i].sheet};
  }
  return models;
}();

}  // namespace

std::string ScalesModel::pageText() const {
  constexpr std::size_t kWidth = 4;
  std::string text = std::to_string(number) + ":";
  text.resize(kWidth, ' ');
  return text + name;
}

std::span<const ScalesModel> scalesModels() { return kModels; }

const ScalesModel* findScalesModel(int number) {
  if (number < 0 || static_cast<std::size_t>(number) >= kModels.size()) return nullptr;
  return &kModels[static_cast<std::size_t>(number)];
}

std::unique_ptr<IScalesObject> createScales(int model) {
  const ScalesModel* row = findScalesModel(model);
  return row == nullptr || row->create == nullptr ? nullptr : row->create();
}
