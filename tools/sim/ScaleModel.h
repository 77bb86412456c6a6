#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Frame.h"
#include "Messages.h"
#include "ScaleState.h"

namespace sim {

enum class Parity { None, Even };

/// The form of a character on a model's serial line; the speed is what the user sets on both sides.
struct Framing {
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
  /// May come in parts with pauses between.
  Fixed fixed;
  /// Bytes that follow with changing content.
  std::size_t payload = 0;
  /// What the scale says to it; a `Weigh` is answered with the frame instead.
  Fixed reply = {};
};

struct Decimals {
  int fewest = 0;
  int most = 4;
  int usual = 3;
};

/// The unit of a display.
struct Unit {
  const char* name = "kg";
  double inKilogram = 1.0;
};

/// Unit of the weight that the component hands out.
enum class WeightUnit { Kilograms, Grams, Count };

/// What the component makes of the weight in units of its last digit. Written from the protocols:
/// the order of the floating-point steps counts, since some weights are cut and not rounded.
struct WeightReading {
  WeightUnit unit;
  double (*read)(std::int64_t units, int decimals);
};
/// A decimal text, read as its whole part plus its fraction.
double asWritten(std::int64_t units, int decimals);

/// Another way in which scales of a model's kin speak. The component refuses or misreads it; what
/// isn't given is as in the model.
struct Variant {
  /// As the user names it: "pounds".
  std::string_view name;
  /// English, to be translated when it is said.
  const char* about;
  Layout layout = {};
  std::vector<Command> commands = {};
  /// Sends without being asked, where the model answers.
  bool streams = false;
  std::optional<Decimals> decimals = {};
  Unit unit = {};
};

/// A scale as its protocol sheet tells it, from the scale's side. The descriptions of all models
/// stand in models/, one file for each group of kin.
struct ScaleModel {
  /// As in the component's table of models, which holds the names.
  int number;
  Framing line = {};
  /// A scale that has none for `Weigh` sends frame after frame without being asked.
  std::vector<Command> commands = {};
  Layout layout;
  Decimals decimals = {};
  /// Load of a simulator that was told none, kilograms.
  double usualWeight = 1.25;
  Unit unit = {};

  /// Offset of a byte by which the component tells a damaged frame from a good one, from the end
  /// if negative; none where it would take any bytes of the right number.
  std::optional<int> checkedByte = -1;
  /// The component takes whatever comes first for the frame.
  bool takesFirst = false;
  WeightReading reads = {WeightUnit::Kilograms, asWritten};
  /// What the component says of the weight where the frame doesn't tell whether it moves.
  bool alwaysStable = false;
  /// What the component makes of a hundredth of a money unit.
  double hundredth = 0.0;
  /// What overload and other special frames make of the reading; null where there are none.
  void (*readSpecial)(const Display&, Reading&) = nullptr;

  /// Why the component can't read this model over TCP; null where it can. English, as `remark`, a
  /// remark for the user.
  const char* noTcp = nullptr;
  const char* remark = nullptr;

  std::vector<Variant> variants = {};
  /// Of the model as a variant of itself; null for the model proper.
  const Variant* variant = nullptr;

  bool streams() const;
  /// The component looks for the frame's first byte and so steps over others before it.
  bool hasStartByte() const { return checkedByte && !takesFirst; }
  bool hasPrice() const { return numberIn(layout, &Display::price) != nullptr; }
  bool hasDecimals() const { return decimals.fewest < decimals.most; }
  bool showsStability() const { return sim::showsStability(layout); }
  bool showsOverload() const { return sim::showsOverload(layout); }
  bool worksOverTcp() const { return noTcp == nullptr; }

  /// What the frame can say of the weight, in units of the last digit.
  Number::Limits limits(int decimals) const;
  /// The highest price in hundredths; 0 without price.
  std::int64_t highestPrice() const;
  /// A load in kilograms, in units of the display's last digit.
  std::int64_t unitsOf(double kilograms, int decimals) const;

  /// The state of a simulator that was told nothing.
  ScaleState usualState() const;
  /// What the display shows. A weight that the field can't hold shows as overload where the model
  /// has that, otherwise as the nearest weight that it can.
  Display display(const ScaleState& state) const;
  Bytes frame(const ScaleState& state) const { return frameOf(layout, display(state)); }
  /// What a poll of the component must hand out for this state, by the protocol.
  Reading expectedReading(const ScaleState& state) const;
};

/// All models that can be simulated, by ascending number.
std::span<const ScaleModel> scaleModels();
/// Null for a number or a variant that no simulator exists for; the model proper without a name.
/// Both live as long as the program.
const ScaleModel* findScaleModel(int number, std::string_view variant = {});

}  // namespace sim
