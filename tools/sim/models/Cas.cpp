// Models 13, 14, 27, 28: scales that speak the CAS protocol or kin of it.

#include "Kin.h"

namespace sim {

namespace {

/// Status, weight text, unit, exclusive or of all these.
Layout cas(const Layout& weightAndUnit) {
  return Layout{is(ACK, SOH, STX), Mark{.usual = "S", .moving = "U"}} + weightAndUnit +
         Layout{Checksum{.from = 3}, is(ETX, EOT)};
}

ScaleModel casModel(int number) {
  return {
      .number = number,
      // The ENQ alone gets no answer: a real scale says ACK to it, and the reader, who listens
      // only behind the DC1, would take two in a row for a broken frame.
      .commands = {{Action::Weigh, is(ENQ, DC1)}},
      .layout = cas({Number{.places = 7, .minus = Minus::First, .overload = "F      "}, is("kg")}),
      .readSpecial = overloadIsCode7};
}

}  // namespace

std::vector<ScaleModel> casModels() {
  constexpr char kUns2Address = 0x2A;
  std::vector<ScaleModel> models = {
      casModel(13),
      {// CAS-LP (v1.6)
       .number = 14,
       .commands = {{Action::Weigh, is(SOH, 0x89)}},
       .layout =
           {is(SOH, 0x80, 0xAA), Status{.stable = 0x40, .negative = 0x80, .overload = 0x01},
            Number{.form = Form::LowFirst, .places = 2},
            Number{
                .of = &Display::price, .form = Form::LowFirst, .places = 4, .minus = Minus::Binary},
            Number{
                .of = &Display::cost, .form = Form::LowFirst, .places = 4, .minus = Minus::Binary},
            Number{.of = &Display::tare, .form = Form::LowFirst, .places = 2}, is(0, 0)},
       .decimals = kUpToThree,
       .checkedByte = 1,
       .reads = kRawCount,
       .hundredth = 1.0,
       .readSpecial = overloadIsCode7},
      casModel(27),
      {// BTHE (протокол UNS-02)
       .number = 28,
       .commands = {{Action::Weigh, is(kUns2Address, 3)},
                    {Action::Tare, is(kUns2Address, 1)},
                    {.action = Action::Price, .fixed = is(kUns2Address, 2), .payload = 6}},
       .layout = unitsFirst(Form::UnitsFirstNumbers, 6),
       .decimals = kFixedPoint,
       .checkedByte = {},
       .reads = kKilogramsByFactor,
       .hundredth = 0.01},
  };
  models.front().variants = {
      {.name = "long",
       .about =
           message("a weight of seven characters beside its sign; the frame is a byte longer than "
                   "the component takes"),
       .layout = cas({kSign, Number{.places = 7}, is(" g")}),
       .decimals = kUpToOne,
       .unit = kGrams}};
  return models;
}

}  // namespace sim
