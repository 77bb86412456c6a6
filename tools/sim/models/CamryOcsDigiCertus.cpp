// Models 17, 18, 23, 25: scales of the makers Camry, OCS, DIGI and Certus.

#include "Kin.h"

namespace sim {

std::vector<ScaleModel> camryOcsDigiCertusModels() {
  const Mark grossOrNet = {.usual = ",GS", .net = ",NT"};
  return {
      {// Camry
       .number = 17,
       .line = {.parity = Parity::Even, .stopBits = 2},
       .commands = {{Action::Weigh, is(0, 0, 3, 0, 0, 0, 0, 0)}},
       .layout = unitsFirst(Form::UnitsFirst, 5),
       .decimals = kFixedPoint,
       .checkedByte = {},
       .reads = kKilogramsByFactor,
       .alwaysStable = true,
       .hundredth = 0.01,
       .variants = {{"numbers",
                     message("sends digits as numbers instead of characters; the component "
                             "reads a stable zero"),
                     unitsFirst(Form::UnitsFirstNumbers, 5)}}},
      {// OCS, ВК ЗЕВС III с радиоканалом
       .number = 18,
       .layout =
           {is(0x7F, 0x01),
            Number{.form = Form::ShiftedBackwards, .places = 5, .minus = Minus::First, .fill = '0'},
            Status{.stable = 0x01}, Checksum{.from = 1}},
       .decimals = kUpToThree},
      {// DIGI DS-788, 781, 782
       .number = 23,
       .commands = {{Action::Weigh, is(ENQ)}},
       .layout = {is(STX), Status{.always = 0x40, .stable = 0x02, .negative = 0x04}, is(CR, '0'),
                  Number{.places = 6, .fill = '0'}, lineEnd()},
       .takesFirst = true,
       .noTcp = kEndMarkNeedsSerialLine,
       .variants = {{"underflow",
                     message("a load far below zero, which shows as letters; the component "
                             "reads zero, not stable"),
                     {is("@P", CR, "0    UF"), lineEnd()}}}},
      {// CERTUS CBA
       .number = 25,
       // It sends a line end before each line too, and by the first CR the component finds the
       // line.
       .layout = {lineEnd(), kStableOrUnstable, grossOrNet, kPlusOrMinus, Number{.places = 7},
                  is(" kg"), lineEnd()},
       .variants = {{.name = "comma",
                     .about = message("sends a second comma; the component loses the last digit"),
                     .layout = {lineEnd(), kStableOrUnstable, grossOrNet, is(','), kSign,
                                Number{.places = 7}, is(" g"), lineEnd()},
                     .decimals = kUpToOne,
                     .unit = kGrams},
                    {.name = "grams",
                     .about =
                         message("shows grams; the component doesn't look at the unit and reads a "
                                 "thousand times too much"),
                     .layout = {lineEnd(), kStableOrUnstable, grossOrNet, kSign,
                                Number{.places = 7}, is("g  "), lineEnd()},
                     .decimals = kUpToOne,
                     .unit = kGrams}}},
  };
}

}  // namespace sim
