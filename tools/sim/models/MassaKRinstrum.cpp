// Models 10, 11: scales of Масса-К and indicators of Rinstrum.

#include "Kin.h"

namespace sim {

std::vector<ScaleModel> massaKAndRinstrumModels() {
  return {
      {// Масса-К (МК_ТВ, МК_ТН)
       .number = 10,
       .line = {.parity = Parity::Even},
       .commands = {{Action::Weigh, is('E')}},
       .layout = {Number{.form = Form::LowFirst, .places = 2, .minus = Minus::Binary}},
       .decimals = kUpToThree,
       .checkedByte = {},
       .reads = kRawCount,
       .variants = {{.name = "unasked",
                     .about = message("another protocol of the maker, which sends by itself; the "
                                      "component takes the first two bytes, always the same, for a "
                                      "weight"),
                     .layout = {is(0x55, 0xAA), Number{.form = Form::LowFirst, .places = 2},
                                Status{.negative = 0x80}},
                     .streams = true,
                     .decimals = kFixedPoint}}},
      {// Rinstrum R320,R420
       .number = 11,
       .commands = {{Action::Weigh, is("20050027:\r\n")}},
       .layout = {is("81050027:"), kSign, Number{.places = 9}, is(" kg"), lineEnd()},
       .takesFirst = true,
       .reads = kGramsCut,
       .noTcp =
           message("the component asks for 30 bytes and the indicator's line is shorter; over TCP "
                   "it gets all the bytes that it asked for or none"),
       .variants = {{"error",
                     message("answers with an error, as while its menus are open; the component "
                             "reads the error's number as a weight"),
                     {is("C1050027:0601"), lineEnd()}},
                    {.name = "auto",
                     .about =
                         message("sends by itself, as an indicator set to AUTO instead of NET; the "
                                 "component finds no answer in it"),
                     .layout = streamLine({}),
                     .streams = true}}},
  };
}

}  // namespace sim
