// A hundred scales in one component, polled in turn for as long as it is told: descriptors, memory
// and the cost of a poll must be at the end what they were at the start. Exit code 0 if they are
// and every reading was right, 1 if not, 2 for a wrong option.

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <numeric>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Component.h"
#include "Fleet.h"
#include "Usage.h"

namespace {

using Clock = std::chrono::steady_clock;
using fixture::Usage;
using std::chrono::milliseconds;

constexpr int kScales = 100;

/// More than allocator and kernel wander by, and far less than a leak in each poll adds up to.
constexpr std::size_t kMemoryWander_KiB = 2048;
/// Processor time wanders with the machine's other work; a cost that grows with the polls made
/// doesn't stop at this.
constexpr double kCostWander = 1.5;
/// Rounds at the start and at the end whose cost is compared; fewer say nothing.
constexpr std::size_t kRoundsCompared = 5;

/// What one poll of each scale cost.
struct Round {
  milliseconds wall;
  std::chrono::nanoseconds processor;
};

class Soak {
 public:
  Soak(int polls, bool keepConnections) : polls_(polls), keep_(keepConnections) {}

  /// True if all is as it was at the start.
  bool run(Fleet& fleet);

 private:
  Round pollAll(const Fleet& fleet);
  void poll(const Fleet::Member& member, std::size_t index);
  void showProgress();
  bool judge(const Usage& before, const Usage& after) const;
  double cost(std::vector<Round>::const_iterator first) const;

  int polls_;
  bool keep_;
  int done_ = 0;
  int wrong_ = 0;
  std::vector<Round> rounds_;
  Clock::time_point shown_ = Clock::time_point::min();
  host::Component component_{ORBELO_COMPONENT};
};

const char* name(bool keepConnections) { return keepConnections ? "conleave on " : "conleave off"; }

bool Soak::run(Fleet& fleet) {
  if (!component_.call("SetPathDllFolder", {fleet.writeSettings(keep_)}).good()) {
    std::cout << "The component refused the settings file.\n";
    return false;
  }
  // The first rounds fill what is filled once.
  pollAll(fleet);
  const Usage before = Usage::now();
  rounds_.clear();
  while (done_ < polls_) rounds_.push_back(pollAll(fleet));
  const Usage after = Usage::now();
  if (::isatty(STDOUT_FILENO) != 0) std::cout << '\r';
  return judge(before, after);
}

Round Soak::pollAll(const Fleet& fleet) {
  const Clock::time_point begin = Clock::now();
  const auto processorBegin = fixture::threadTime();
  for (std::size_t i = 0; i < fleet.members().size(); ++i) {
    poll(fleet.members()[i], i);
    showProgress();
  }
  return {std::chrono::duration_cast<milliseconds>(Clock::now() - begin),
          fixture::threadTime() - processorBegin};
}

void Soak::poll(const Fleet::Member& member, std::size_t index) {
  constexpr double kRounding = 1e-9;
  const host::CallResult call = component_.call("GetWeightPriceCost", {std::to_string(index)});
  ++done_;
  const double weight = std::get<double>(call.params.at(1));
  if (call.good() && std::abs(weight - member.expected.weight) < kRounding) return;
  ++wrong_;
  constexpr int kMostShown = 10;
  if (wrong_ > kMostShown) return;
  std::cout << "\npoll " << done_ << ", model " << member.model->number << " at " << member.address
            << ": code " << component_.lastError().code << ", weight " << weight << "; wanted "
            << member.expected.weight << '\n';
}

void Soak::showProgress() {
  const bool watched = ::isatty(STDOUT_FILENO) != 0;
  const auto interval = watched ? std::chrono::seconds{1} : std::chrono::seconds{60};
  const Clock::time_point now = Clock::now();
  if (shown_ != Clock::time_point::min() && now - shown_ < interval) return;
  shown_ = now;
  const Usage usage = Usage::now();
  std::cout << (watched ? "\r" : "") << name(keep_) << ": " << done_ << " of " << polls_
            << " polls, " << wrong_ << " wrong, " << usage.descriptors << " descriptors, "
            << usage.residentKib << " KiB   " << (watched ? "" : "\n") << std::flush;
}

/// The cheapest of some rounds: other work on the machine only adds.
double Soak::cost(std::vector<Round>::const_iterator first) const {
  const auto last = first + static_cast<std::ptrdiff_t>(kRoundsCompared);
  const auto cheapest = std::min_element(
      first, last, [](const Round& a, const Round& b) { return a.processor < b.processor; });
  return std::chrono::duration<double, std::micro>(cheapest->processor).count() / kScales;
}

bool Soak::judge(const Usage& before, const Usage& after) const {
  const auto wall = std::accumulate(rounds_.begin(), rounds_.end(), milliseconds{0},
                                    [](milliseconds sum, const Round& r) { return sum + r.wall; });
  std::cout << name(keep_) << ": " << done_ << " polls, " << wrong_ << " wrong, "
            << static_cast<double>(wall.count()) /
                   static_cast<double>(std::max<std::size_t>(rounds_.size(), 1) * kScales)
            << " ms each\n  descriptors " << before.descriptors << " -> " << after.descriptors
            << ", threads " << before.threads << " -> " << after.threads << ", memory "
            << before.residentKib << " -> " << after.residentKib << " KiB";
  bool same = wrong_ == 0 && after.descriptors == before.descriptors &&
              after.threads == before.threads &&
              after.residentKib <= before.residentKib + kMemoryWander_KiB;
  if (rounds_.size() >= 2 * kRoundsCompared) {
    const double first = cost(rounds_.begin());
    const double last = cost(rounds_.end() - static_cast<std::ptrdiff_t>(kRoundsCompared));
    std::cout << ", processor time of a poll " << first << " -> " << last << " us";
    same = same && last <= first * kCostWander;
  } else {
    std::cout << "; too short to compare the cost of a poll";
  }
  std::cout << (same ? "\n  as at the start\n" : "\n  NOT as at the start\n");
  return same;
}

int run(int argc, char** argv) {
  int polls = 100000;
  std::string conleave = "both";
  CLI::App app(
      "A hundred scales, half serial and half TCP, polled in turn with conleave off and on");
  app.add_option("--polls", polls, "Polls, half of them with each conleave; 10 take about a second")
      ->capture_default_str()
      ->check(CLI::Range(2, 1000000000));
  app.add_option("--conleave", conleave,
                 "Only this setting, so that two halves can run side by side")
      ->capture_default_str()
      ->check(CLI::IsMember({"off", "on", "both"}));
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    constexpr int kWrongOption = 2;
    return app.exit(error) == 0 ? EXIT_SUCCESS : kWrongOption;
  }
  Fleet fleet(kScales);
  bool same = true;
  for (const bool keepConnections : {false, true}) {
    if (conleave == (keepConnections ? "off" : "on")) continue;
    same = Soak(polls / 2, keepConnections).run(fleet) && same;
  }
  return same ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "soak: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
