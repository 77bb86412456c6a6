// Models 7, 8, 12, 31, 34: scales of the maker Мирвесов.

#include "Kin.h"

namespace sim {

namespace {

/// The part that both modes of the A9 have: sign, digits, number of decimals, checksum of all
/// behind the first byte.
Layout a9(const Fixed& begin) {
  const Checksum checksum = {.from = 1, .kind = Checksum::Kind::Nibbles};
  return Layout{begin} + digitsAndDecimals(kSign) + Layout{checksum, is(ETX)};
}

/// `kind` tells the place of the point, and in other scales the division too.
Layout a12eh(unsigned kind, unsigned status, char fill, const Fixed& end = is(CR)) {
  return {is(STX),
          Status{.always = kind, .decimals = true},
          Status{.always = status, .moving = 0x08, .negative = 0x02, .overload = 0x04},
          is(' '),
          Number{.form = Form::Digits, .places = 6, .fill = fill},
          Number{.of = &Display::tare, .form = Form::Digits, .places = 6, .fill = fill},
          end};
}

}  // namespace

std::vector<ScaleModel> mirvesovModels() {
  constexpr Unit kPounds = {.name = "lb", .inKilogram = 2.20462262};
  const Number a12Weight = {.places = 7, .fill = '0'};
  return {
      {// А9, DS3M1  (Мирвесов)
       .number = 7,
       .commands = {{Action::Weigh, is(STX, "@D", 0, 4, ETX)}},
       .layout = a9(is(STX, "@D")),
       .decimals = kUpToThree,
       .reads = kGramsByDecimalCode,
       .variants = {{.name = "four-decimals",
                     .about =
                         message("shows four decimals; the component reads ten times too much"),
                     .layout = addressed(digitsAndDecimals(kPlusOrMinus)),
                     .decimals = Decimals{.fewest = 4, .most = 4, .usual = 4}},
                    {.name = "address-1",
                     .about =
                         message("answers to its own address 1 only, as the maker's paper has it; "
                                 "the component asks another and hears nothing"),
                     .layout = addressed(digitsAndDecimals(kPlusOrMinus)),
                     .commands = {{Action::Weigh, is(STX, "AD05", ETX)}}}}},
      {// А12 (Мирвесов)
       .number = 8,
       .commands = {{.action = Action::Weigh, .fixed = is('R'), .payload = 3},
                    {Action::Tare, is('T')},
                    {Action::Zero, is('Z')}},
       .layout = {is("w0"), Number{.places = 9, .minus = Minus::Beside}, lineEnd()},
       // Fewer decimals would let the field hold more grams than fit the component's 32 bits.
       .decimals = {.fewest = 2, .most = 4, .usual = 3},
       .reads = kGramsCut,
       .alwaysStable = true,
       .variants = {{.name = "pounds",
                     .about = message("shows pounds; the component takes them for kilograms"),
                     .layout = {is("ww"), a12Weight, is("lb"), lineEnd()},
                     .unit = kPounds},
                    {"new",
                     message("the newer A12(E): other letters and a checksum; the component "
                             "finds no frame"),
                     {is('W'), Mark{.usual = "G", .net = "N"}, a12Weight, is("kg"),
                      Checksum{.kind = Checksum::Kind::Characters}, lineEnd()}}}},
      {// DS2 (Мирвесов)
       .number = 12,
       .commands = {{Action::Weigh, is(STX, "AD05", ETX)}},
       .layout = addressed({kSign, Number{.places = 7, .fill = '0'}}),
       .decimals = {.fewest = 0, .most = 4, .usual = 0},
       .usualWeight = 25.0,
       .reads = {WeightUnit::Grams,
                 [](std::int64_t units, int /*decimals*/) {
                   return static_cast<double>(units) * 1000.0;
                 }},
       .remark =
           message("the component leaves the point of the weight out, so a weight with decimals "
                   "comes out too large; by default the simulator shows whole kilograms, which "
                   "come out as grams"),
       .variants = {{.name = "decimals-digit",
                     .about =
                         message("sends six digits and the number of decimals; the component takes "
                                 "that for a digit of the weight"),
                     .layout = addressed(digitsAndDecimals(kPlusOrMinus)),
                     .decimals = Decimals{}}}},
      {// A12EH (и некоторые модели BDU)
       .number = 31,
       .layout = a12eh(0x2A, 0x20, '0'),
       .reads = kKilogramsByFactor,

       // A weight that is not valid reads as a good zero in motion.
       .readSpecial =
           [](const Display& display, Reading& reading) {
             if (!display.overload) return;
             reading.weight = 0.0;
             reading.stable = false;
           },
       .variants = {{"division-2",
                     message("weighs in steps of 2; the component then leaves the point out"),
                     a12eh(0x32, 0x30, ' ')},
                    {"con2",
                     message("the output Con2, which tells the place of the point in "
                             "another way; the component leaves it out"),
                     a12eh(0x22, 0x30, '0', lineEnd())}}},
      {// А9 (непрерывный режим передачи)
       .number = 34,
       .layout = a9(is(STX)),
       .reads = kKilogramsByFactor},
  };
}

}  // namespace sim
