#include "Options.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

#include "CommandLine.h"
#include "Text.h"

namespace {

constexpr double kHundredths = 100.0;
/// A gap of more than a minute or a heap of garbage of more than 64 KiB serves no test.
constexpr int kLongestPause_ms = 60'000;
constexpr std::size_t kMostBytes = 65'536;
constexpr int kMostFrames = 1'000'000;
constexpr int kHighestPort = 65'535;
constexpr int kHighestModel = 999;
constexpr int kMostDecimals = 9;
/// Stands behind a flag in place of the options that it needs or excludes.
constexpr const char* kNothing = " ";
constexpr std::array kSpeeds = {600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};

/// What is given as a number, until it is known whether it was given.
struct Numbers {
  int model = 0;
  int tcpPort = 0;
  int decimals = 0;
  int dribble_ms = 0;
  std::size_t cut = 0;
};

CLI::Option* addReal(CLI::App& app, const std::string& name, std::optional<double>& target,
                     const std::string& about) {
  const auto take = [name, &target](const std::string& given) {
    target = numberIn(given);
    if (!target) refuse(name, say("'{0}' is no number", given));
  };
  return app.add_option_function<std::string>(name, take, about);
}

[[noreturn]] void refuseUse(const std::string& why) {
  throw Failure(kWrongUsage, why, say("`{0} --help` shows how it is used.", "scalesim"));
}

/// None of them may stand beside `option`.
void keepApart(CLI::Option* option, std::initializer_list<CLI::Option*> others) {
  for (CLI::Option* other : others) option->excludes(other);
}

/// Turns down what was given of a group beside --replay.
void refuseBesideReplay(const CLI::App& app, const std::string& group) {
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_group() == group && option->count() > 0)
      refuseUse(say("{0} and {1} exclude each other", "--replay", option->get_name()));
  }
}

void refuseUnknown(const Options& options) {
  const sim::ScaleModel& model = *options.model;
  const auto refuseIt = [&](bool given, bool known, const char* name) {
    if (given && !known)
      refuseUse(
          say("model {0} has no {1}; it knows: {2}", model.number, name, knownOptions(model)));
  };
  refuseIt(options.decimals.has_value(), model.hasDecimals(), "--decimals");
  refuseIt(options.price.has_value(), model.hasPrice(), "--price");
  refuseIt(options.unstable, model.showsStability(), "--unstable");
  refuseIt(options.overload, model.showsOverload(), "--overload");
}

const sim::ScaleModel* modelOf(int number, const std::string& variant) {
  const sim::ScaleModel* model = sim::findScaleModel(number);
  if (model == nullptr)
    refuseUse(
        say("there is no simulator of model {0}; `scalesim --list` shows those there are", number));
  if (variant.empty()) return model;
  const sim::ScaleModel* found = sim::findScaleModel(number, variant);
  if (found != nullptr) return found;
  std::vector<std::string_view> names;
  for (const sim::Variant& known : model->variants) names.push_back(known.name);
  if (names.empty()) refuseUse(say("model {0} has no variants", number));
  refuseUse(say("model {0} has no variant '{1}', but: {2}", number, variant, joined(names)));
}

}  // namespace

sim::ScaleState Options::stateOf(const sim::ScaleModel& of) const {
  sim::ScaleState state = of.usualState();
  if (weight) state.weight = *weight;
  if (decimals && of.hasDecimals()) state.decimals = *decimals;
  if (price && of.hasPrice()) state.price = *price;
  state.stable = !(unstable && of.showsStability());
  state.overload = overload && of.showsOverload();
  return state;
}

std::optional<ExitCode> readOptions(int argc, char** argv, Options& options) {
  CLI::App app(say("Plays the scale's side of any model of the component."), "scalesim");
  addCommonOptions(app);
  app.footer(
      say("The first line of output is the address: a device path or 127.0.0.1:PORT. While it "
          "runs, scalesim takes new weights (\"1.250\") and commands from standard input; \"help\" "
          "lists them.\n\nExit codes: 0 good, 1 failure at run time, 2 wrong usage."));
  Numbers numbers;
  std::string variant;
  bool about = false;
  bool list = false;
  bool tcp = false;
  sim::Faults& faults = options.faults;
  CLI::Option* model = nullptr;
  CLI::Option* all = nullptr;
  CLI::Option* replay = nullptr;
  CLI::Option* port = nullptr;
  CLI::Option* tcpPort = nullptr;
  CLI::Option* cut = nullptr;
  CLI::Option* decimals = nullptr;
  const std::string shows = say("What the scale shows");
  const std::string misbehaviour = say("Misbehaviour");
  {
    const GroupOfOptions group(app, say("What to play"));
    model = addNumber(app, "--model,-m,model", numbers.model, 0, kHighestModel,
                      say("Model number, as on the parameter page"))
                ->option_text("N");
    addText(app, "--variant", variant,
            say("Another way in which such scales speak; --list shows them"))
        ->option_text("NAME")
        ->needs(model);
    all = addText(app, "--all", options.folder,
                  say("One simulator of each model, on pseudo-terminals and TCP ports, with a "
                      "settings.xml in DIR"))
              ->option_text("DIR");
    replay = addText(app, "--replay", options.log,
                     say("The scale's side of an exchange log, again and again"))
                 ->option_text("LOG");
    app.add_flag("--list", list, say("List the models and their variants"));
    app.add_flag("--about", about, say("Tell what is known of the model"))
        ->option_text(kNothing)
        ->needs(model);
    keepApart(all, {model, replay});
    keepApart(replay, {model});
  }
  {
    const GroupOfOptions group(app, say("Where"));
    port = addText(app, "--port,-p", options.port,
                   say("Serial device to make, a link to a pseudo-terminal, removed at the end "
                       "(default: one with a name of its own)"))
               ->option_text("DEVICE");
    CLI::Option* baud =
        addNumber(app, "--baud,-b", options.baud, kSpeeds.front(), kSpeeds.back(),
                  say("The scale's own speed on the serial line: a host at another one gets "
                      "garbage (default: any)"))
            ->option_text("N");
    CLI::Option* anyPort =
        app.add_flag("--tcp", tcp, say("On any free TCP port of 127.0.0.1"))->option_text(kNothing);
    tcpPort = addNumber(app, "--tcp-port,-t", numbers.tcpPort, 1, kHighestPort,
                        say("On this TCP port of 127.0.0.1"))
                  ->option_text("N");
    keepApart(anyPort, {port, baud, all});
    keepApart(tcpPort, {port, baud, all});
    keepApart(all, {port});
    keepApart(replay, {baud});
  }
  {
    const GroupOfOptions group(app, shows);
    addReal(app, "--weight", options.weight, say("Load on the pan, kilograms"))->option_text("KG");
    decimals = addNumber(app, "--decimals", numbers.decimals, 0, kMostDecimals,
                         say("Digits behind the point of the weight"))
                   ->option_text("N");
    addReal(app, "--price", options.price, say("Price of a kilogram"))->option_text("PRICE");
    app.add_flag("--unstable", options.unstable, say("The weight is moving"));
    app.add_flag("--overload", options.overload, say("The load is too heavy"));
  }
  {
    const GroupOfOptions group(app, misbehaviour);
    app.add_flag("--silent", faults.silent, say("Listens and says nothing"));
    addNumber(app, "--garbage", faults.garbage, std::size_t{0}, kMostBytes,
              say("N stray bytes before each frame"))
        ->option_text("N");
    addNumber(app, "--corrupt", faults.corruptEvery, 1, kMostFrames,
              say("Damages one frame of every N, the first one first"))
        ->option_text("N");
    cut = addNumber(app, "--cut", numbers.cut, std::size_t{0}, kMostBytes,
                    say("Sends only the first N bytes of each frame"))
              ->option_text("N");
    addNumber(app, "--dribble", numbers.dribble_ms, 0, kLongestPause_ms,
              say("Pause of N milliseconds before each byte"))
        ->option_text("N");
    addNumber(app, "--hang-up-after", faults.hangUpAfter, 1, kMostFrames,
              say("After every N frames closes the connection, or lets the device vanish for half "
                  "a second"))
        ->option_text("N");
    addNumber(app, "--spoil-only", faults.frames, 1, kMostFrames,
              say("Misbehaves for the first N frames only"))
        ->option_text("N");
  }
  app.add_flag("--verbose,-v", options.verbose, say("Show all bytes on standard error"));
  if (const auto code = parse(app, argc, argv)) return code;

  if (options.baud != 0 && std::ranges::find(kSpeeds, options.baud) == kSpeeds.end())
    refuseUse(say("--baud: the speeds are {0}", joined(kSpeeds)));
  if (tcp || tcpPort->count() > 0) options.tcp = static_cast<std::uint16_t>(numbers.tcpPort);
  if (decimals->count() > 0) options.decimals = numbers.decimals;
  if (cut->count() > 0) faults.cut = numbers.cut;
  faults.dribble = std::chrono::milliseconds{numbers.dribble_ms};
  if (list) {
    options.task = Options::Task::List;
  } else if (replay->count() > 0) {
    refuseBesideReplay(app, shows);
    refuseBesideReplay(app, misbehaviour);
    options.task = Options::Task::Replay;
  } else if (all->count() > 0) {
    options.task = Options::Task::PlayAll;
  } else if (model->count() == 0) {
    refuseUse(
        say("no model was named; give its number (`scalesim --list` shows them) or --all DIR"));
  } else {
    options.model = modelOf(numbers.model, variant);
    if (about) {
      options.task = Options::Task::About;
      return std::nullopt;
    }
    refuseUnknown(options);
    checkState(*options.model, options.stateOf(*options.model));
  }
  return std::nullopt;
}

std::string knownOptions(const sim::ScaleModel& model) {
  std::string known = "--weight";
  if (model.hasDecimals()) known += " --decimals";
  if (model.hasPrice()) known += " --price";
  if (model.showsStability()) known += " --unstable";
  if (model.showsOverload()) known += " --overload";
  return known;
}

std::optional<double> numberIn(std::string_view text) {
  std::string number(text);
  std::ranges::replace(number, ',', '.');
  const auto value = realNumber(number);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

void checkState(const sim::ScaleModel& model, const sim::ScaleState& state) {
  if (state.decimals < model.decimals.fewest || state.decimals > model.decimals.most)
    refuseUse(say("model {0} takes {1} to {2} decimals", model.number, model.decimals.fewest,
                  model.decimals.most));
  const auto limits = model.limits(state.decimals);
  const auto text = [&](std::int64_t units) { return sim::decimalText(units, state.decimals); };
  const std::int64_t units = model.unitsOf(state.weight, state.decimals);
  if (units < limits.lowest || units > limits.highest)
    refuseUse(say("model {0} can't show {1} {2}; with {3} decimals it shows {4} to {5}",
                  model.number, text(units), model.unit.name, state.decimals, text(limits.lowest),
                  text(limits.highest)));
  if (state.price < 0 ||
      std::round(state.price * kHundredths) > static_cast<double>(model.highestPrice()))
    refuseUse(say("model {0} takes prices from 0 to {1}", model.number,
                  sim::decimalText(model.highestPrice(), 2)));
}
