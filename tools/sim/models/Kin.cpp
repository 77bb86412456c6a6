#include "Kin.h"

#include <array>
#include <cmath>

namespace sim {

Layout operator+(Layout first, const Layout& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Layout unitsFirst(Form form, int priceDigits) {
  return {Number{.form = form, .places = 6, .fill = '0'},
          Number{.of = &Display::price, .form = form, .places = priceDigits, .fill = '0'},
          Number{.of = &Display::cost, .form = form, .places = 6, .fill = '0'}};
}

Layout addressed(const Layout& weight) {
  const Checksum checksum = {.from = 1, .kind = Checksum::Kind::Characters};
  return Layout{is(STX, "AD")} + weight + Layout{checksum, is(ETX)};
}

Layout digitsAndDecimals(const Mark& sign) {
  return {sign, Number{.form = Form::Digits, .places = 6, .fill = '0'},
          Status{.always = '0', .decimals = true}};
}

Layout streamLine(Layout begin, std::string_view overload) {
  return std::move(begin) + Layout{kSign,
                                   Number{.places = 7},
                                   is("K"),
                                   Mark{.usual = "G", .net = "N"},
                                   Mark{.usual = " ", .moving = "M", .overload = overload},
                                   lineEnd()};
}

const WeightReading kGramsCut = {WeightUnit::Grams, [](std::int64_t units, int decimals) {
                                   constexpr double kGramsInKilogram = 1000.0;
                                   return std::trunc(asWritten(units, decimals) * kGramsInKilogram);
                                 }};

const WeightReading kGramsByDecimalCode = {
    WeightUnit::Grams, [](std::int64_t units, int decimals) {
      return static_cast<double>(units * powerOfTen(3 - decimals));
    }};

const WeightReading kKilogramsByFactor = {
    WeightUnit::Kilograms, [](std::int64_t units, int decimals) {
      constexpr std::array<double, 6> kFactors = {1.0, 0.1, 0.01, 0.001, 0.0001, 0.00001};
      return static_cast<double>(units) * kFactors.at(static_cast<std::size_t>(decimals));
    }};

const WeightReading kRawCount = {WeightUnit::Count, [](std::int64_t units, int /*decimals*/) {
                                   return static_cast<double>(units);
                                 }};

void overloadIsCode7(const Display& display, Reading& reading) {
  if (!display.overload) return;
  reading = {};
  reading.code = 7;
}

const char* const kEndMarkNeedsSerialLine = message(
    "the component asks for more bytes than the scale sends and waits for the end mark; over "
    "TCP it gets all the bytes that it asked for or none");

}  // namespace sim
