#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Models.h"

/// The numbers of all models that have a protocol, from the one table of models.
inline std::vector<int> modelsWithSheet() {
  std::vector<int> numbers;
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet != nullptr) numbers.push_back(model.number);
  }
  return numbers;
}

inline const ProtocolSheet& sheetOf(int model) { return *findScalesModel(model)->sheet; }

inline std::string numberOfModel(const testing::TestParamInfo<int>& info) {
  return std::to_string(info.param);
}
