#include "Readings.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "FrameBuilder.h"

namespace sim {

namespace {

constexpr double kGramsInKilogram = 1000.0;

}  // namespace

double kilogramsAsWritten(std::int64_t units, int decimals) {
  const std::int64_t power = powerOfTen(decimals);
  const std::int64_t magnitude = units < 0 ? -units : units;
  const std::int64_t whole = magnitude / power;
  const std::int64_t behindThePoint = magnitude % power;
  const double value =
      static_cast<double>(whole) + static_cast<double>(behindThePoint) / static_cast<double>(power);
  return units < 0 ? -value : value;
}

double gramsCut(std::int64_t units, int decimals) {
  return std::trunc(kilogramsAsWritten(units, decimals) * kGramsInKilogram);
}

double gramsByDecimalCode(std::int64_t units, int decimals) {
  return static_cast<double>(units * powerOfTen(3 - decimals));
}

double kilogramsByFactor(std::int64_t units, int decimals) {
  constexpr std::array<double, 6> kFactors = {1.0, 0.1, 0.01, 0.001, 0.0001, 0.00001};
  return static_cast<double>(units) * kFactors.at(static_cast<std::size_t>(decimals));
}

double rawCount(std::int64_t units, int /*decimals*/) { return static_cast<double>(units); }

double digitsRunTogether(std::int64_t units, int /*decimals*/) {
  return static_cast<double>(units) * kGramsInKilogram;
}

void overloadIsCode7(const Display& display, Reading& reading) {
  if (!display.overload) return;
  reading = {};
  reading.code = 7;
}

const Text kEndMarkNeedsSerialLine = {
    "the component asks for more bytes than the scale sends and waits for the end mark; over TCP "
    "it gets all the bytes that it asked for or none",
    "компонента запрашивает больше байт, чем передают весы, и ждёт признак конца; по TCP она "
    "получает либо все запрошенные байты, либо ни одного"};

}  // namespace sim
