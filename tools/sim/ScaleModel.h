#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Language.h"
#include "ScaleState.h"

namespace sim {

enum class Parity { None, Even };

/// How the serial line of a model is set; the speed is what the user sets on both sides.
struct LineSettings {
  int dataBits = 8;
  Parity parity = Parity::None;
  int stopBits = 1;

  /// In the usual short form: "8N1", "8E2".
  std::string text() const;
};

/// What a request or command makes a scale do.
enum class Action {
  Weigh,  ///< sends its frame
  Tare,
  Zero,
  Price,  ///< takes a price
  Setup,  ///< takes a setting that changes nothing here
};

/// One sequence of bytes that a scale understands.
struct Command {
  Action action;
  /// The fixed bytes. They may come in parts with pauses between.
  Bytes bytes;
  /// Bytes that follow with changing content.
  std::size_t payload = 0;
  /// What the scale says to it; a `Weigh` is answered with the frame instead.
  Bytes reply = {};
};

/// Where the sign of the weight stands in the frame.
enum class Sign {
  None,    ///< nowhere: a load below zero is sent as zero
  Beside,  ///< in a place of its own
  Inside,  ///< in a place of the weight field
};

/// What the weight field can hold.
struct WeightField {
  struct Limits {
    std::int64_t lowest;
    std::int64_t highest;
  };

  /// Characters or digits of the field; 0 for a binary field, which has `binary` instead.
  int places = 0;
  Sign sign = Sign::None;
  /// Whether the point takes a place of the field.
  bool pointInside = false;
  Limits binary = {0, 0};

  /// The limits in units of the last digit.
  Limits limits(int decimals) const;
};

struct Decimals {
  int fewest = 0;
  int most = 0;
  int usual = 0;
};

/// How the component reads the stability of a good frame.
enum class StableReading { AsShown, AlwaysStable, AlwaysMoving };

/// Price and cost in the frame; without digits the model has none.
struct PriceField {
  int priceDigits = 0;
  int costDigits = 0;
  /// What the component makes of a hundredth: 1.0 or 0.01.
  double factor = 0.0;
};

/// Unit of the weight that the component hands out.
enum class WeightUnit { Kilograms, Grams, Count };

/// A scale as its protocol sheet tells it, from the scale's side. The descriptions of all models
/// stand in models/, one file for each group of kin.
struct ScaleModel {
  /// As in the component's table of models, which holds the names.
  int number;
  LineSettings line = {};
  /// Sends frame after frame without being asked.
  bool streams = false;
  std::vector<Command> commands = {};

  WeightField weight;
  Decimals decimals;
  PriceField price = {};
  bool showsStability = false;
  bool showsOverload = false;
  /// Load of a simulator that was told none, kilograms.
  double usualWeight = 1.25;

  /// Builds the frame.
  Bytes (*build)(const Display&);
  /// The component looks for the frame's first byte and so steps over others before it; otherwise
  /// it takes whatever comes first for the frame.
  bool hasStartByte = false;
  /// Offset of a byte by which the component tells a damaged frame from a good one, from the end
  /// if negative; none where it would take any bytes of the right number.
  std::optional<int> checkedByte = {};

  WeightUnit unit;
  /// The weight that the component reads, from the weight in units of its last digit.
  double (*readWeight)(std::int64_t units, int decimals);
  StableReading stableReading = StableReading::AsShown;
  /// What overload and other special frames make of the reading; null where there are none.
  void (*readSpecial)(const Display&, Reading&) = nullptr;

  /// Why the component can't read this model over TCP; null where it can.
  const Text* noTcp = nullptr;
  /// A remark for the user; null without.
  const Text* remark = nullptr;

  bool answers() const { return !streams; }
  bool hasPrice() const { return price.priceDigits > 0; }
  bool hasDecimals() const { return decimals.fewest < decimals.most; }
  bool worksOverTcp() const { return noTcp == nullptr; }

  /// The state of a simulator that was told nothing.
  ScaleState usualState() const;
  /// What the display shows. A weight that the field can't hold shows as overload where the model
  /// has that, otherwise as the nearest weight that it can.
  Display display(const ScaleState& state) const;
  Bytes frame(const ScaleState& state) const { return build(display(state)); }
  /// What a poll of the component must hand out for this state, by the protocol.
  Reading expectedReading(const ScaleState& state) const;
};

/// All models that can be simulated, by ascending number.
std::span<const ScaleModel> scaleModels();
/// Null for a number that no simulator exists for.
const ScaleModel* findScaleModel(int number);

}  // namespace sim
