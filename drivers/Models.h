#pragma once

#include <memory>
#include <span>

#include "ProtocolSheet.h"
#include "ScalesObject.h"

/// One row of the model list.
struct ScalesModel {
  int number;
  /// As the parameter page shows it, UTF-8.
  const char* pageText;
  /// Makes the driver; null for a model without one: scales that send when their button is
  /// pressed, the one with a bar code scanner, and spare numbers.
  std::unique_ptr<IScalesObject> (*create)();
  /// The protocol; null for a model without a driver and for the emulator.
  const ProtocolSheet* sheet;
};

/// All models, in the page's order. The only list of models there is.
std::span<const ScalesModel> scalesModels();

/// The row of a model; null for a number that isn't in the list.
const ScalesModel* findScalesModel(int number);

/// Makes the driver of a model; null for a model without one.
std::unique_ptr<IScalesObject> createScales(int model);
