#pragma once

#include <array>
#include <vector>

#include "ScaleModel.h"

namespace sim {

std::vector<ScaleModel> prompriborModels();
std::vector<ScaleModel> tekhnovagiAndAxisModels();
std::vector<ScaleModel> mirvesovModels();
std::vector<ScaleModel> massaKAndRinstrumModels();
std::vector<ScaleModel> jadeverModels();
std::vector<ScaleModel> casModels();
std::vector<ScaleModel> keliModels();
std::vector<ScaleModel> camryOcsDigiCertusModels();
std::vector<ScaleModel> terminalModels();
std::vector<ScaleModel> smartEsitVisBstModels();

inline constexpr std::array kModelGroups = {
    prompriborModels, tekhnovagiAndAxisModels,
    mirvesovModels,   massaKAndRinstrumModels,
    jadeverModels,    casModels,
    keliModels,       camryOcsDigiCertusModels,
    terminalModels,   smartEsitVisBstModels,
};

}  // namespace sim
