// Records the exchanges of tests/data/exchanges: a driver with its log at a simulated scale. What
// has to come of each follows from what was laid on the scale and what was done to its frames, by
// the protocol's rules as the simulator knows them; the driver's own result is held against it, and
// an exchange that differs isn't written but told.

#include <filesystem>
#include <fstream>
#include <future>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>

#include <CLI/CLI.hpp>

#include "CaseFile.h"
#include "CkString.h"
#include "Models.h"
#include "SimulatedScale.h"

namespace {

namespace fs = std::filesystem;
using exchange::PollOutcome;
using sim::ScaleModel;
using sim::ScaleState;
using sim::Transport;
using std::chrono::milliseconds;

constexpr int kBaudRate = 9600;

/// Fixed bytes tell a damaged frame; a scale that transmits has to have one besides its start.
bool tellsDamage(const ScaleModel& model) {
  return model.checkedByte && !(model.streams() && *model.checkedByte == 0);
}

/// One model takes whatever text comes within the time.
constexpr int kTakesAnyText = 26;
/// One model doesn't look at the head of its line, so that garbage there only moves the number.
constexpr int kLooksAtLineEndOnly = 11;

bool always(const ScaleModel& /*model*/) { return true; }
bool isAsked(const ScaleModel& model) { return !model.streams(); }
bool hasSign(const ScaleModel& model) { return model.limits(model.decimals.usual).lowest < 0; }
bool showsMotion(const ScaleModel& model) { return model.showsStability(); }
bool showsOverload(const ScaleModel& model) { return model.showsOverload(); }
bool hasPrice(const ScaleModel& model) { return model.hasPrice(); }
bool hasDecimals(const ScaleModel& model) { return model.hasDecimals(); }
bool damageAllTold(const ScaleModel& model) { return tellsDamage(model); }
bool damageOneTold(const ScaleModel& model) { return !model.streams() && tellsDamage(model); }
bool cutTold(const ScaleModel& model) {
  return !model.streams() ? model.number != kTakesAnyText : tellsDamage(model);
}
bool cutOneTold(const ScaleModel& model) { return !model.streams() && cutTold(model); }
bool stepsOver(const ScaleModel& model) { return model.hasStartByte; }
bool stumbles(const ScaleModel& model) {
  return !model.hasStartByte && model.checkedByte && model.number != kLooksAtLineEndOnly;
}

enum class Comes { TheReading, NoAnswer };

struct Scenario {
  const char* name;
  const char* special;
  bool (*applies)(const ScaleModel&);
  /// Recorded over TCP too.
  bool tcpToo;
  void (*lay)(ScaleState&, const ScaleModel&);
  /// `cut` counts from the frame's end.
  sim::Faults faults;
  Comes comes;
};

void leave(ScaleState& /*state*/, const ScaleModel& /*model*/) {}

sim::Faults silence(int frames) {
  sim::Faults faults;
  faults.silent = true;
  faults.frames = frames;
  return faults;
}
sim::Faults damage(int frames) {
  sim::Faults faults;
  faults.corruptEvery = 1;
  faults.frames = frames;
  return faults;
}
sim::Faults cutLast(std::size_t bytes, int frames) {
  sim::Faults faults;
  faults.cut = bytes;
  faults.frames = frames;
  return faults;
}
sim::Faults garbage(std::size_t bytes) {
  sim::Faults faults;
  faults.garbage = bytes;
  return faults;
}
sim::Faults dribble(milliseconds pause) {
  sim::Faults faults;
  faults.dribble = pause;
  return faults;
}

const std::vector<Scenario>& scenarios() {
  static const std::vector<Scenario> kScenarios = {
      {"load", "a usual load", always, true, leave, {}, Comes::TheReading},
      {"empty",
       "an empty pan",
       always,
       false,
       [](ScaleState& state, const ScaleModel&) { state.weight = 0.0; },
       {},
       Comes::TheReading},
      {"heavy",
       "a load near the end of the range",
       always,
       false,
       [](ScaleState& state, const ScaleModel&) { state.weight = 31.985; },
       {},
       Comes::TheReading},
      {"negative",
       "a load below zero",
       hasSign,
       true,
       [](ScaleState& state, const ScaleModel&) { state.weight = -0.455; },
       {},
       Comes::TheReading},
      {"few-decimals",
       "as few decimals as the scale can show",
       hasDecimals,
       false,
       [](ScaleState& state, const ScaleModel& model) {
         state.weight = 12.5;
         state.decimals = model.decimals.fewest;
       },
       {},
       Comes::TheReading},
      {"many-decimals",
       "as many decimals as the scale can show",
       hasDecimals,
       false,
       [](ScaleState& state, const ScaleModel& model) {
         state.weight = 2.5;
         state.decimals = model.decimals.most;
       },
       {},
       Comes::TheReading},
      {"moving",
       "a load that moves",
       showsMotion,
       true,
       [](ScaleState& state, const ScaleModel&) { state.stable = false; },
       {},
       Comes::TheReading},
      {"overload",
       "an overload",
       showsOverload,
       true,
       [](ScaleState& state, const ScaleModel&) { state.overload = true; },
       {},
       Comes::TheReading},
      {"price",
       "a load with a price of 12.50",
       hasPrice,
       true,
       [](ScaleState& state, const ScaleModel&) { state.price = 12.5; },
       {},
       Comes::TheReading},
      {"silent", "silence", always, true, leave, silence(0), Comes::NoAnswer},
      {"silent-once", "silence at first, then an answer", isAsked, true, leave, silence(1),
       Comes::TheReading},
      {"damaged", "a damaged byte in each frame", damageAllTold, false, leave, damage(0),
       Comes::NoAnswer},
      {"damaged-once", "a damaged byte in the first frame", damageOneTold, true, leave, damage(1),
       Comes::TheReading},
      {"cut", "each frame without its last byte", cutTold, false, leave, cutLast(1, 0),
       Comes::NoAnswer},
      {"cut-once", "the first frame without its last byte", cutOneTold, true, leave, cutLast(1, 1),
       Comes::TheReading},
      {"garbage", "three bytes of garbage before each frame", stepsOver, true, leave, garbage(3),
       Comes::TheReading},
      {"garbage-shifts", "a byte of garbage before each frame, which then stands out of place",
       stumbles, false, leave, garbage(1), Comes::NoAnswer},
      {"dribble", "the frame byte by byte", isAsked, false, leave, dribble(milliseconds{4}),
       Comes::TheReading},
  };
  return kScenarios;
}

PollOutcome outcomeOf(const Scenario& scenario, const ScaleModel& model, const ScaleState& state) {
  if (scenario.comes == Comes::NoAnswer) return {.code = 3};
  const sim::Reading reading = model.expectedReading(state);
  return {reading.code, reading.weight, reading.price, reading.cost, reading.stable};
}

std::string reckoning(const Scenario& scenario, const ScaleModel& model, const ScaleState& state) {
  if (scenario.comes == Comes::NoAnswer) return "no good frame comes in any attempt: no answer";
  const sim::Display display = model.display(state);
  std::ostringstream text;
  text << "the scale shows " << display.weight << " units of its last digit, " << display.decimals
       << " decimals";
  if (display.price != 0) text << ", price " << display.price << "/100";
  if (display.overload) text << ", overload";
  return text.str();
}

PollOutcome poll(IScalesObject& driver) {
  PollOutcome got;
  long stable = 0;
  got.code = driver.getScalesInfo(&got.weight, &got.price, &got.cost, &stable);
  got.stable = stable != 0;
  return got;
}

/// A log that was written; the line's own name means nothing elsewhere.
std::string readWithoutPath(const fs::path& file, const std::string& path) {
  std::ifstream stream(file, std::ios::binary);
  std::string log{std::istreambuf_iterator<char>(stream), {}};
  static const std::string kUsual = "/dev/ttyS0";
  if (path.empty()) return log;
  for (std::size_t at = 0; (at = log.find(path, at)) != std::string::npos; at += kUsual.size()) {
    log.replace(at, path.size(), kUsual);
  }
  return log;
}

/// True if the exchange was written.
bool record(const Scenario& scenario, const ScaleModel& model, Transport transport,
            const fs::path& folder) {
  ScaleState state = model.usualState();
  scenario.lay(state, model);
  sim::Faults faults = scenario.faults;
  if (faults.cut) faults.cut = model.frame(state).size() - *faults.cut;
  const sim::TemporaryDirectory logs;
  // The marker that switches the log on.
  std::ofstream(logs.path() / "log.txt").close();
  PollOutcome got;
  std::string path;
  {
    sim::SimulatedScale scale(model.number, transport, state, faults);
    path = scale.devicePath();
    const std::unique_ptr<IScalesObject> driver = createScales(model.number);
    CkString pathToDll;
    pathToDll.setString((logs.path() / "").c_str());
    driver->SetPathToDll(pathToDll);
    driver->SetScalesName("case");
    if (transport == Transport::Pty) {
      driver->SetComPort(path.c_str(), kBaudRate, nullptr);
    } else {
      driver->SetLanPort("127.0.0.1", scale.port(), nullptr);
    }
    got = poll(*driver);
  }
  const PollOutcome wanted = outcomeOf(scenario, model, state);
  const std::string line = transport == Transport::Pty ? "serial" : "tcp";
  const std::string name = (model.number < 10 ? "0" : "") + std::to_string(model.number) + "-" +
                           line + "-" + scenario.name;
  if (got != wanted) {
    std::cerr << name << ": got " << got.text() << ", reckoned " << wanted.text() << '\n';
    return false;
  }
  std::ofstream file(folder / (name + ".log"), std::ios::binary);
  file << "Model: " << model.number << '\n'
       << "Line: " << line << '\n'
       << "Special: " << scenario.special << '\n'
       << "Outcome: " << wanted.text() << '\n'
       << "Reckoned: " << reckoning(scenario, model, state) << "\n\n"
       << readWithoutPath(logs.path() / "log_scales_case.log", path);
  return true;
}

/// Of one model under all that can happen to it.
struct Recorded {
  int written = 0;
  int failed = 0;
};
Recorded recordAll(const ScaleModel& model, const fs::path& folder) {
  Recorded recorded;
  for (const Scenario& scenario : scenarios()) {
    for (const Transport transport : {Transport::Pty, Transport::Tcp}) {
      const bool tcp = transport == Transport::Tcp;
      if (!scenario.applies(model) || (tcp && !(scenario.tcpToo && model.worksOverTcp()))) {
        continue;
      }
      ++(record(scenario, model, transport, folder) ? recorded.written : recorded.failed);
    }
  }
  return recorded;
}

int run(int argc, char** argv) {
  fs::path folder;
  CLI::App app(
      "Records one poll of every simulated scale under every fault, as exchanges_test plays them");
  app.add_option("DIR", folder, "Folder for the recorded exchanges; made if there is none")
      ->required();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    constexpr int kWrongUsage = 2;
    return app.exit(error) == 0 ? EXIT_SUCCESS : kWrongUsage;
  }
  fs::create_directories(folder);
  std::vector<std::future<Recorded>> models;
  for (const ScaleModel& model : sim::scaleModels()) {
    models.push_back(std::async(std::launch::async, [&] { return recordAll(model, folder); }));
  }
  Recorded all;
  for (std::future<Recorded>& model : models) {
    const Recorded recorded = model.get();
    all.written += recorded.written;
    all.failed += recorded.failed;
  }
  std::cout << all.written << " exchanges recorded, " << all.failed << " not\n";
  return all.failed == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "record_exchanges: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
