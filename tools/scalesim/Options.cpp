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
constexpr int kMostBytes = 65'536;
constexpr int kMostFrames = 1'000'000;
constexpr int kHighestPort = 65'535;
constexpr int kHighestModel = 999;
constexpr int kMostDecimals = 9;
constexpr std::array kSpeeds = {600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};

CLI::Option* addReal(CLI::App& app, const std::string& name, std::optional<double>& target,
                     const char* type, const std::string& about) {
  const auto take = [name, &target](const std::string& given) {
    target = numberIn(given);
    if (!target) refuse(name, say("'{0}' is no number", given));
  };
  return app.add_option_function<std::string>(name, take, about)->type_name(type);
}

[[noreturn]] void refuseUse(const std::string& why) {
  throw Failure(kWrongUsage, why, say("`{0} --help` shows how it is used.", "scalesim"));
}

/// None of them may stand beside `option`.
void keepApart(CLI::Option* option, std::initializer_list<CLI::Option*> others) {
  for (CLI::Option* other : others) option->excludes(other);
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
  std::optional<int> number;
  std::string variant;
  bool about = false;
  bool list = false;
  bool tcp = false;
  const std::string shows = say("What the scale shows");
  const std::string misbehaviour = say("Misbehaviour");
  sim::Faults& faults = options.faults;
  CLI::Option* model = nullptr;
  CLI::Option* all = nullptr;
  CLI::Option* replay = nullptr;
  {
    const GroupOfOptions group(app, say("What to play"));
    model = addNumber(app, "--model,-m,model", number, 0, kHighestModel,
                      say("Model number, as on the parameter page"));
    addText(app, "--variant", variant,
            say("Another way in which such scales speak; --list shows them"))
        ->type_name("NAME")
        ->needs(model);
    all = addText(app, "--all", options.folder,
                  say("One simulator of each model, on pseudo-terminals and TCP ports, with a "
                      "settings.xml in DIR"))
              ->type_name("DIR");
    replay = addText(app, "--replay", options.log,
                     say("The scale's side of an exchange log, again and again"))
                 ->type_name("LOG");
    app.add_flag("--list", list, say("List the models and their variants"));
    app.add_flag("--about", about, say("Tell what is known of the model"))->needs(model);
    keepApart(all, {model, replay});
    keepApart(replay, {model});
  }
  {
    const GroupOfOptions group(app, say("Where"));
    CLI::Option* port =
        addText(app, "--port,-p", options.port,
                say("Serial device to make, a link to a pseudo-terminal, removed at the end "
                    "(default: one with a name of its own)"))
            ->type_name("DEVICE");
    CLI::Option* baud = addNumber(app, "--baud,-b", options.baud, kSpeeds.front(), kSpeeds.back(),
                                  say("The scale's own speed on the serial line: a host at another "
                                      "one gets garbage (default: any)"));
    CLI::Option* anyPort = app.add_flag("--tcp", tcp, say("On any free TCP port of 127.0.0.1"));
    CLI::Option* tcpPort = addNumber(app, "--tcp-port,-t", options.tcp, 1, kHighestPort,
                                     say("On this TCP port of 127.0.0.1"));
    keepApart(anyPort, {port, baud, all});
    keepApart(tcpPort, {port, baud, all});
    keepApart(all, {port});
    keepApart(replay, {baud});
  }
  {
    const GroupOfOptions group(app, shows);
    addReal(app, "--weight", options.weight, "KG", say("Load on the pan, kilograms"));
    addNumber(app, "--decimals", options.decimals, 0, kMostDecimals,
              say("Digits behind the point of the weight"));
    addReal(app, "--price", options.price, "PRICE", say("Price of a kilogram"));
    app.add_flag("--unstable", options.unstable, say("The weight is moving"));
    app.add_flag("--overload", options.overload, say("The load is too heavy"));
  }
  {
    const GroupOfOptions group(app, misbehaviour);
    app.add_flag("--silent", faults.silent, say("Listens and says nothing"));
    addNumber(app, "--garbage", faults.garbage, 0, kMostBytes,
              say("N stray bytes before each frame"));
    addNumber(app, "--corrupt", faults.corruptEvery, 1, kMostFrames,
              say("Damages one frame of every N, the first one first"));
    addNumber(app, "--cut", faults.cut, 0, kMostBytes,
              say("Sends only the first N bytes of each frame"));
    addNumber(app, "--dribble", faults.dribble, 0, kLongestPause_ms,
              say("Pause of N milliseconds before each byte"));
    addNumber(app, "--hang-up-after", faults.hangUpAfter, 1, kMostFrames,
              say("After every N frames closes the connection, or lets the device vanish for half "
                  "a second"));
    addNumber(app, "--spoil-only", faults.frames, 1, kMostFrames,
              say("Misbehaves for the first N frames only"));
  }
  for (CLI::Option* option : app.get_options()) {
    const bool forOneScale = option->get_group() == shows || option->get_group() == misbehaviour;
    if (forOneScale) replay->excludes(option);
    // The help names the value alone, not what the option goes with or without; a blank for none.
    option->option_text(option->get_type_name().empty() ? " " : option->get_type_name());
  }
  app.add_flag("--verbose,-v", options.verbose, say("Show all bytes on standard error"));
  if (const auto code = parse(app, argc, argv)) return code;

  if (options.baud != 0 && std::ranges::find(kSpeeds, options.baud) == kSpeeds.end())
    refuseUse(say("--baud: the speeds are {0}", joined(kSpeeds)));
  if (tcp) options.tcp = options.tcp.value_or(0);
  if (list) {
    options.task = Options::Task::List;
  } else if (replay->count() > 0) {
    options.task = Options::Task::Replay;
  } else if (all->count() > 0) {
    options.task = Options::Task::PlayAll;
  } else if (!number) {
    refuseUse(
        say("no model was named; give its number (`scalesim --list` shows them) or --all DIR"));
  } else {
    options.model = modelOf(*number, variant);
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
