// Models 19, 21: scales of the maker JADEVER.

#include "Kin.h"

namespace sim {

std::vector<ScaleModel> jadeverModels() {
  return {
      {// JADEVER SNUG II
       .number = 19,
       // It sends a line end before each line too, and by the first CR the component finds the
       // line.
       .layout = {lineEnd(), kStableOrUnstable, Mark{.usual = " GS ", .net = " NT "}, kPlusOrMinus,
                  is(' '), Number{.places = 8}, is(" kg"), lineEnd()}},
      {// JADEVER JPL, JPL-N
       .number = 21,
       .commands = {{Action::Weigh, is(0, 0, 3, 0, 0, 0, 0, 0)},
                    {Action::Tare, is(0, 0, 1)},
                    {.action = Action::Price, .fixed = is(0, 0, 2), .payload = 6}},
       .layout = unitsFirst(Form::UnitsFirst, 5),
       .decimals = kFixedPoint,
       .checkedByte = {},
       .reads = kKilogramsByFactor,
       .alwaysStable = true,
       .hundredth = 0.01},
  };
}

}  // namespace sim
