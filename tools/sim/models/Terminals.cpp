// Models 24, 26, 30, 35: weighing terminals IQ plus, HBM, ICS and Radwag.

#include "Kin.h"

namespace sim {

namespace {

/// The command's name, motion, sign, weight, unit.
Layout radwag(std::string_view lineBefore) {
  return {is(lineBefore, "SUI"),
          Mark{.usual = " ", .moving = "?"},
          is(' '),
          kSign,
          Number{.places = 9},
          is(" kg "),
          lineEnd()};
}

}  // namespace

std::vector<ScaleModel> terminalModels() {
  return {
      {// IQ plus 355
       .number = 24,
       .commands = {{Action::Weigh, is("XN\r\n")},
                    {Action::Tare, is("KTARE\r\n")},
                    {Action::Setup, is("STREAM=OFF\r\n")},
                    {Action::Setup, is("EX\r\n")},
                    {Action::Setup, is("SX\r\n")}},
       // The echo of the command stands first.
       .layout = {is("XN\r\n"), Number{.places = 8, .minus = Minus::First, .lineFeedBehind = 2},
                  is("kg"), lineEnd()},
       .alwaysStable = true,
       .variants = {{.name = "stream",
                     .about =
                         message("sends by itself, as an indicator with STREAM = ON; the component "
                                 "finds no answer in it"),
                     .layout = streamLine({is(STX)}),
                     .streams = true}}},
      {// HBM WE2110
       .number = 26,
       .commands = {{Action::Weigh, is("S1;MSV?;")}, {Action::Tare, is("S1;TAR;")}},
       .layout = {Number{.places = 8, .minus = Minus::Beside}, lineEnd()},
       .checkedByte = {},
       .noTcp = kEndMarkNeedsSerialLine,
       .variants =
           {{.name = "cof9",
             .about = message("output format 9 without decimals: address and status stand behind "
                              "the weight, and the component takes the address for decimals"),
             .layout = {kSign, Number{.places = 7, .fill = '0'}, is(",01,00"),
                        Mark{.usual = "6", .moving = "4"}, lineEnd()},
             .decimals = kNone},
            {.name = "binary",
             .about = message("output format 8, binary; the component reads zero"),
             .layout = {Number{.form = Form::HighFirst, .places = 3, .minus = Minus::Binary},
                        Status{.always = 0x04, .stable = 0x02}, lineEnd()},
             .decimals = kNone}}},
      {// ICS NT
       .number = 30,
       .line = {.parity = Parity::Even},
       .commands = {{Action::Weigh, is(0, 0, 3)},
                    {Action::Tare, is(0, 0, 1)},
                    {.action = Action::Price, .fixed = is(0, 0, 2), .payload = 6}},
       .layout = unitsFirst(Form::UnitsFirst, 6),
       .decimals = kFixedPoint,
       .checkedByte = {},
       .reads = kKilogramsByFactor,
       .alwaysStable = true,
       // The price is handed out in hundredths, with the weight in kilograms.
       .hundredth = 1.0,
       .variants = {{"numbers",
                     message("sends digits as numbers instead of characters; the component "
                             "reads a stable zero"),
                     unitsFirst(Form::UnitsFirstNumbers, 6)}}},
      {// WPT/4  RADWAG
       .number = 35,
       .commands = {{Action::Weigh, is("SUI\r\n")},
                    {.action = Action::Tare, .fixed = is("I\r\n"), .reply = is("I A\r\n")}},
       .layout = radwag(""),
       .variants = {{"busy",
                     message("answers that it can't weigh now; the component hears no frame"),
                     {is("SUI I"), lineEnd()}},
                    {"acknowledged",
                     message("acknowledges the command in a line of its own; the component "
                             "takes that for the frame and refuses it"),
                     radwag("SUI A\r\n")}}},
  };
}

}  // namespace sim
