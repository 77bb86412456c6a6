#include "Trial.h"

#include <cmath>
#include <sstream>

namespace {

using std::chrono::milliseconds;

constexpr int kBaudRate = 9600;

/// How late waits may end, and what a call costs beside them.
constexpr double kLateness = 1.1;
constexpr milliseconds kOwnTime{300};

bool same(double a, double b) { return std::abs(a - b) < 1e-9; }

bool sameReading(const sim::Reading& a, const sim::Reading& b) {
  return a.code == b.code && same(a.weight, b.weight) && same(a.price, b.price) &&
         same(a.cost, b.cost) && a.stable == b.stable;
}

std::string text(const sim::Reading& reading) {
  std::ostringstream out;
  out << "code " << reading.code << ", weight " << reading.weight << ", price " << reading.price
      << ", cost " << reading.cost << (reading.stable ? ", stable" : ", moving");
  return out.str();
}

}  // namespace

Trial::Trial(const sim::ScaleModel& model, sim::Transport transport)
    : model_(model),
      sheet_(*findScalesModel(model.number)->sheet),
      transport_(transport),
      scale_(model.number, transport),
      driver_(createScales(model.number)) {
  driver_->SetLeaveConn(1);
  if (overTcp()) {
    driver_->SetLanPort("127.0.0.1", scale_.port(), nullptr);
  } else {
    driver_->SetComPort(scale_.devicePath().c_str(), kBaudRate, nullptr);
  }
  driver_->CloseComPort();
}

Expected Trial::ifTold(Expected expected) const {
  return model_.checkedByte ? expected : Expected::Anything;
}

bool Trial::allows(Expected expected, const sim::Reading& got, double weightBefore) {
  const bool noWeight = same(got.weight, 0.0) || same(got.weight, weightBefore);
  const bool isRight = sameReading(got, scale_.expectedReading());
  const bool isNoAnswer = got.code == kNoAnswer && noWeight;
  const bool isNoConnection = got.code == kNoConnection && noWeight;
  switch (expected) {
    case Expected::Right: return isRight;
    case Expected::NoAnswer: return isNoAnswer;
    case Expected::NoConnection: return isNoConnection;
    case Expected::RightOrNone: return isRight || isNoAnswer || isNoConnection;
    case Expected::Anything: break;
  }
  return true;
}

void Trial::poll(std::string_view when, Expected expected) {
  constexpr double kUntouched = -777.0;
  sim::Reading got;
  got.weight = kUntouched;
  long stable = 0;
  const Clock::time_point begin = Clock::now();
  got.code = driver_->getScalesInfo(&got.weight, &got.price, &got.cost, &stable);
  noteIfLate(when, begin, longestPoll(sheet_, overTcp(), talk_));
  got.stable = stable != 0;
  if (allows(expected, got, kUntouched)) return;
  note(when, text(got) + "; the scale has " + text(scale_.expectedReading()));
}

void Trial::tare(std::string_view when) {
  if (!sheet_.commands.tare) return;
  const Clock::time_point begin = Clock::now();
  driver_->pressT(0.0);
  noteIfLate(when, begin, longestTare(sheet_, overTcp(), talk_));
}

void Trial::note(std::string_view when, const std::string& what) {
  faults_.push_back(std::string(when) + ": " + what);
}

void Trial::noteIfLate(std::string_view when, Clock::time_point begin, milliseconds waits) {
  const auto lasted = std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
  const auto allowed =
      std::chrono::duration_cast<milliseconds>(waits * kLateness) + kOwnTime + work_;
  if (lasted <= allowed) return;
  ++late_;
  note(when, std::to_string(lasted.count()) + " ms of at most " + std::to_string(allowed.count()));
}
