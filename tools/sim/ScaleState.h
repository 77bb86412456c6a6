#pragma once

#include <cstdint>
#include <vector>

namespace sim {

using Bytes = std::vector<std::uint8_t>;

/// What stands on the pan of a simulated scale, and what its keys were pressed to. Independent of
/// any model: what a model can't show it leaves out.
struct ScaleState {
  /// Load on the pan, kilograms.
  double weight = 0.0;
  /// Digits behind the point of the display; models with a fixed point show theirs instead.
  int decimals = 3;
  /// Money units for a kilogram.
  double price = 0.0;
  bool stable = true;
  bool overload = false;
  /// Load that the tare key took off, kilograms.
  double tare = 0.0;
  /// Load that the zero key called zero, kilograms.
  double zero = 0.0;

  /// The tare key: the present load becomes the tare.
  void pressTare() { tare = weight - zero; }
  /// The zero key: the present load becomes zero and the tare goes.
  void pressZero() {
    zero = weight;
    tare = 0.0;
  }
};

/// The numbers on the display, as the digits of a frame need them.
struct Display {
  /// Net weight in units of its last digit.
  std::int64_t weight = 0;
  int decimals = 0;
  /// Tare in units of the weight's last digit.
  std::int64_t tare = 0;
  /// Hundredths of a money unit for a kilogram.
  std::int64_t price = 0;
  /// Hundredths of a money unit.
  std::int64_t cost = 0;
  bool stable = true;
  bool overload = false;

  bool negative() const { return weight < 0; }
};

/// What the component is to hand out for a frame, before the coefficient.
struct Reading {
  double weight = 0.0;
  double price = 0.0;
  double cost = 0.0;
  bool stable = false;
  /// Result code of the poll.
  int code = 0;
};

}  // namespace sim
