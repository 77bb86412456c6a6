#pragma once

#include <memory>
#include <span>
#include <string>

#include "ProtocolSheet.h"
#include "ScalesObject.h"

/// One row of the model list.
struct ScalesModel {
  int number;
  /// UTF-8.
  const char* name;
  /// Makes the driver; null for a model without one: scales that send when their button is
  /// pressed, the one with a bar code scanner, and spare numbers.
  std::unique_ptr<IScalesObject> (*create)();
  /// The protocol; null for a model without a driver and for the emulator.
  const ProtocolSheet* sheet;

  /// Number and name as the parameter page shows them.
  std::string pageText() const;
};

/// All models, each at the index of its number, in the page's order. The only list of models there
/// is.
std::span<const ScalesModel> scalesModels();

/// The row of a model; null for a number that isn't in the list.
const ScalesModel* findScalesModel(int number);

/// Makes the driver of a model; null for a model without one.
std::unique_ptr<IScalesObject> createScales(int model);
