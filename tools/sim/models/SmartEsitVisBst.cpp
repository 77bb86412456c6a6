// Models 33, 36, 37, 39, 41: scales SMART, ESIT, ВИС and BST.

#include "Kin.h"

namespace sim {

std::vector<ScaleModel> smartEsitVisBstModels() {
  const Fixed bstTare = is(0x01, 0x06, 0x00, 0x07, 0xA5, 0x0B, 0x02, 0x9C);
  const Mark grossOrNet = {.usual = ",GS", .net = ",NT"};
  return {
      {// SMART
       .number = 33,
       .layout = {is(STX), kSign, Number{.places = 7, .fill = '0'}, is("kg"),
                  Mark{.usual = " ", .moving = "M"}, is(CR)},
       .variants = {{"over-capacity",
                     message("tells an overload by a letter where the component looks for "
                             "motion, and sends the number all the same"),
                     streamLine({is(STX)}, "O")}}},
      {// ESIT Smart2
       .number = 36,
       .layout = {kPlusOrMinus, Number{.form = Form::MarkedDigits, .places = 5, .fill = '0'},
                  is(CR)},
       .alwaysStable = true},
      {// ESIT ECI STATIC
       .number = 37,
       .commands = {{Action::Weigh, is('W', CR)}, {Action::Tare, is('T', CR)}},
       .layout = {Number{.places = 10, .minus = Minus::Beside}, lineEnd()},
       .takesFirst = true},
      {// ВИС HL318L
       .number = 39,
       .layout = {is(LF), kStableOrUnstable, grossOrNet, is(','),
                  Number{.places = 8, .minus = Minus::Beside}, is("kg", CR)},
       .variants = {{"plus",
                     message("sends a plus before the weight; the component reads a stable "
                             "zero"),
                     {is(LF), kStableOrUnstable, grossOrNet, is(','), kPlusOrMinus,
                      Number{.places = 7, .fill = '0'}, is("kg", CR)}},
                    {.name = "sign-before",
                     .about = message(
                         "sends the sign before the weight field and a comma behind it; the "
                         "component loses the minus"),
                     .layout = {is(LF), kStableOrUnstable, grossOrNet, kSign, Number{.places = 7},
                                is(",kg", CR)},
                     .decimals = Decimals{.fewest = 0, .most = 4, .usual = 2}}}},
      {// Резерв, a reply of Modbus RTU
       .number = 41,
       .commands = {{Action::Weigh, is(0x01, 0x03, 0x00, 0x02, 0x00, 0x03, 0xA4, 0x0B)},
                    {.action = Action::Tare, .fixed = bstTare, .reply = bstTare}},
       .layout = {is(0x01, 0x03, 0x06),
                  Number{.form = Form::HighFirst, .places = 4, .minus = Minus::Binary},
                  Status{.stable = 0x20}, is(0), Checksum{.kind = Checksum::Kind::ModbusCrc}},
       .decimals = kUpToThree,
       .checkedByte = 0,
       .takesFirst = true,
       .reads = kRawCount},
  };
}

}  // namespace sim
