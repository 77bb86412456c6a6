// Models 16, 29, 38, 40: indicators of KELI and their kin.

#include "Kin.h"

namespace sim {

std::vector<ScaleModel> keliModels() {
  const Fixed d12Zero = is(0x01, 0x06, 0x00, 0x01, 0x00, 0x17, 0x98, 0x04);
  return {
      {// KELI
       .number = 16,
       .commands = {{Action::Weigh, is(STX, 'B', ETX)}, {Action::Zero, is(STX, 'E', ETX)}},
       .layout = {is(STX, "NW:"), Number{.places = 7, .minus = Minus::First}, is("kg", ETX)},
       .takesFirst = true,
       .alwaysStable = true,
       .noTcp = kEndMarkNeedsSerialLine},
      {// T7E
       .number = 29,
       .layout = {is('='),
                  Number{.form = Form::Backwards, .places = 7, .minus = Minus::First, .fill = '0'}},
       .checkedByte = 0,
       .variants =
           {{"nine-bytes",
             message("sends a ninth byte with the sign; the component loses the minus"),
             {is('='),
              Number{.form = Form::Backwards, .places = 8, .minus = Minus::First, .fill = '0'}}},
            {"high-first",
             message("sends the highest digit first; the component reads backwards"),
             {is('='), Number{.places = 8, .minus = Minus::First, .fill = '0'}}}}},
      {// KELI: K9
       .number = 38,
       .commands = {{Action::Weigh, is(STX, "AD05", ETX)}},
       .layout = addressed({kPlusOrMinus, Number{.places = 7, .fill = '0'}}),
       .variants = {{"decimals-digit",
                     message("sends six digits and the number of decimals; the component takes "
                             "that for a digit of the weight"),
                     addressed(digitsAndDecimals(kPlusOrMinus))}}},
      {// KELI: D12, a reply of Modbus RTU whose registers hold text
       .number = 40,
       .commands = {{Action::Weigh, is(0x01, 0x03, 0x00, 0x03, 0x00, 0x04, 0xB4, 0x09)},
                    {.action = Action::Zero, .fixed = d12Zero, .reply = d12Zero}},
       .layout = {is(0x01, 0x03, 0x08),
                  Number{.form = Form::Digits, .places = 7, .minus = Minus::First, .fill = '0'},
                  Status{.always = '0', .decimals = true},
                  Checksum{.kind = Checksum::Kind::ModbusCrc}},
       .decimals = {.fewest = 0, .most = 5, .usual = 3},
       .checkedByte = 1,
       .reads = kKilogramsByFactor},
  };
}

}  // namespace sim
