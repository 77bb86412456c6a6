#include "ScalesEmulyator.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <ctime>

#include "Numbers.h"

namespace {

/// Where the invented weight lies: from `lowest` kilograms up, in `steps` steps of a gram.
struct WeightBand {
  double lowest;
  int steps;
};

constexpr std::array<WeightBand, 4> kWeightBands = {
    {{0.08, 30}, {2.0, 1000}, {19.0, 3000}, {95.0, 10000}}};

constexpr double kGram = 0.001;
constexpr double kHundredth = 0.01;
constexpr int kOneInUnstable = 5;
constexpr int kOneInSilent = 10;
constexpr int kRandomPrices = 99999;

}  // namespace

int ScalesEmulyator::OpenComPort() {
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  return kSuccess;
}

int ScalesEmulyator::getScalesInfo(double* weight, double* price, double* cost, long* stable) {
  *stable = std::rand() % kOneInUnstable == 0 ? 0 : 1;
  std::rand();  // its value is not used, but the sequence of a seed depends on the call
  const WeightBand& band =
      kWeightBands[static_cast<std::size_t>(std::rand()) % kWeightBands.size()];
  *weight = band.lowest + (std::rand() % band.steps) * kGram;
  *price = (price_ >= 0 ? price_ : std::rand() % kRandomPrices) * kHundredth;
  *cost = cutTo32(100.0 * *price * *weight) / 100.0;
  return std::rand() % kOneInSilent == 0 ? kNoAnswer : kSuccess;
}

int ScalesEmulyator::pressT(double /*tare*/) { return kSuccess; }

int ScalesEmulyator::pressNull() { return kNotSupported; }

int ScalesEmulyator::setPrice(long price) {
  price_ = static_cast<std::int32_t>(price);
  return kSuccess;
}
