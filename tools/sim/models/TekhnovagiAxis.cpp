// Models 2, 3, 9: scales of the makers Техноваги and Axis, which answer a short command with a
// line of text.

#include <cstdlib>

#include "Kin.h"

namespace sim {

std::vector<ScaleModel> tekhnovagiAndAxisModels() {
  return {
      {// TBE  (Техноваги)
       .number = 2,
       .commands = {{Action::Weigh, is("G1\r\n")}, {Action::Tare, is("ST\r\n")}},
       .layout = {is(' '), Number{.places = 11, .minus = Minus::Beside}, lineEnd()},
       .reads = kGramsCut},
      {// TB1, TB4  (Техноваги)
       .number = 3,
       .commands = {{Action::Weigh, is("G01W\r\n")}, {Action::Tare, is("S01T\r\n")}},
       // The letter behind the address tells the kind of the reading: good, below zero, error.
       .layout = {is("R01"), Mark{.usual = "W", .negative = "N", .overload = "E"},
                  Number{.places = 6, .fill = '0'}, lineEnd()},
       .checkedByte = -2,

       // A reading of kind E comes out with its number, without sign, and the code 1099.
       .readSpecial =
           [](const Display& display, Reading& reading) {
             if (!display.overload) return;
             reading.weight = asWritten(std::abs(display.weight), display.decimals);
             reading.code = 1099;
           }},
      {// BDU, BTU, BD, 4BDU, SE01, SE02 (Axis)
       .number = 9,
       .commands = {{Action::Weigh, is("SI\r\n")}, {Action::Tare, is("ST\r\n")}},
       .layout = {kSign, Number{.places = 9}, is(" kg "), lineEnd()},
       .reads = kGramsCut,
       .alwaysStable = true,
       .variants = {{.name = "grams",
                     .about =
                         message("shows grams; the component doesn't look at the unit and reads a "
                                 "thousand times too much"),
                     .layout = {kSign, Number{.places = 9}, is("  g "), lineEnd()},
                     .decimals = kUpToOne,
                     .unit = kGrams}}},
  };
}

}  // namespace sim
