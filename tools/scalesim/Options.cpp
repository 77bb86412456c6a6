#include "Options.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <memory>
#include <set>

#include <CLI/CLI.hpp>

#include "SelfDescription.h"
#include "Texts.h"

namespace {

constexpr double kHundredths = 100.0;
/// A gap of more than a minute or a heap of garbage of more than 64 KiB serves no test.
constexpr int kLongestPause_ms = 60'000;
constexpr int kMostBytes = 65'536;
constexpr int kMostFrames = 1'000'000;
constexpr int kHighestPort = 65'535;
const std::set<int> kSpeeds = {600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};

/// The command line as it stands there, before anything is checked against a model.
struct Raw {
  Options options;
  std::string model;
  std::string weight;
  std::string price;
  std::string language;
  int tcp = 0;
  int dribble = 0;
  std::size_t cut = 0;
  bool help = false;
  bool version = false;
  bool list = false;
  bool pty = false;

  CLI::Option* modelGiven = nullptr;
  CLI::Option* allGiven = nullptr;
  CLI::Option* replayGiven = nullptr;
  CLI::Option* linkGiven = nullptr;
  CLI::Option* speedGiven = nullptr;
  CLI::Option* tcpGiven = nullptr;
  CLI::Option* weightGiven = nullptr;
  CLI::Option* decimalsGiven = nullptr;
  CLI::Option* priceGiven = nullptr;
  CLI::Option* cutGiven = nullptr;
  int decimals = 0;
};

class HelpFormat : public CLI::Formatter {
 public:
  HelpFormat() { column_width(26); }
  std::string make_usage(const CLI::App* /*app*/, std::string /*name*/) const override {
    return std::string("\n       ") + say(texts::kUsage) + "\n";
  }
  // The model number is told among the options.
  std::string make_positionals(const CLI::App* /*app*/) const override { return ""; }
};

std::unique_ptr<CLI::App> makeCommandLine(Raw& raw) {
  Options& options = raw.options;
  sim::Faults& faults = options.faults;
  auto app = std::make_unique<CLI::App>(say(texts::kPurpose), "scalesim");
  app->formatter(std::make_shared<HelpFormat>());
  app->footer(say(texts::kFooter));
  app->set_help_flag();

  const std::string what = say(texts::kGroupWhat);
  raw.modelGiven = app->add_option("model,-m,--model", raw.model, say(texts::kOptModel))
                       ->option_text("MODEL")
                       ->group(what);
  raw.allGiven = app->add_option("--all", options.folder, say(texts::kOptAll))
                     ->option_text("DIR")
                     ->group(what);
  raw.replayGiven = app->add_option("--replay", options.log, say(texts::kOptReplay))
                        ->option_text("LOG")
                        ->group(what);
  app->add_flag("--list", raw.list, say(texts::kOptList))->group(what);

  const std::string where = say(texts::kGroupWhere);
  app->add_flag("--pty", raw.pty, say(texts::kOptPty))->group(where);
  raw.linkGiven = app->add_option("--link", options.link, say(texts::kOptLink))
                      ->option_text("PATH")
                      ->group(where);
  raw.tcpGiven = app->add_option("--tcp", raw.tcp, say(texts::kOptTcp))
                     ->expected(0, 1)
                     ->check(CLI::Range(0, kHighestPort))
                     ->option_text("[PORT]")
                     ->group(where);

  raw.speedGiven = app->add_option("--speed", options.speed, say(texts::kOptSpeed))
                       ->check(CLI::IsMember(kSpeeds))
                       ->option_text("BAUD")
                       ->group(where);

  const std::string shows = say(texts::kGroupShows);
  raw.weightGiven = app->add_option("--weight", raw.weight, say(texts::kOptWeight))
                        ->option_text("KG")
                        ->group(shows);
  raw.decimalsGiven = app->add_option("--decimals", raw.decimals, say(texts::kOptDecimals))
                          ->option_text("N")
                          ->group(shows);
  raw.priceGiven = app->add_option("--price", raw.price, say(texts::kOptPrice))
                       ->option_text("PRICE")
                       ->group(shows);
  app->add_flag("--unstable", options.unstable, say(texts::kOptUnstable))->group(shows);
  app->add_flag("--overload", options.overload, say(texts::kOptOverload))->group(shows);

  const std::string group = say(texts::kGroupFaults);
  app->add_flag("--silent", faults.silent, say(texts::kOptSilent))->group(group);
  app->add_option("--garbage", faults.garbage, say(texts::kOptGarbage))
      ->check(CLI::Range(0, kMostBytes))
      ->option_text("N")
      ->group(group);
  app->add_option("--corrupt", faults.corruptEvery, say(texts::kOptCorrupt))
      ->check(CLI::Range(1, kMostFrames))
      ->option_text("EVERY")
      ->group(group);
  raw.cutGiven = app->add_option("--cut", raw.cut, say(texts::kOptCut))
                     ->check(CLI::Range(0, kMostBytes))
                     ->option_text("N")
                     ->group(group);
  app->add_option("--dribble", raw.dribble, say(texts::kOptDribble))
      ->check(CLI::Range(0, kLongestPause_ms))
      ->option_text("MS")
      ->group(group);
  app->add_option("--hang-up-after", faults.hangUpAfter, say(texts::kOptHangUp))
      ->check(CLI::Range(1, kMostFrames))
      ->option_text("N")
      ->group(group);
  app->add_option("--spoil-only", faults.frames, say(texts::kOptSpoilOnly))
      ->check(CLI::Range(1, kMostFrames))
      ->option_text("N")
      ->group(group);

  const std::string other = say(texts::kGroupOther);
  app->add_flag("-v,--verbose", options.verbose, say(texts::kOptVerbose))->group(other);
  app->add_option("--lang", raw.language, say(texts::kOptLang))->option_text("en|ru")->group(other);
  app->add_flag("-h,--help", raw.help, say(texts::kOptHelp))->group(other);
  app->add_flag("--version", raw.version, say(texts::kOptVersion))->group(other);
  app->add_option(kSelfDescriptionOption, options.description)
      ->check(CLI::IsMember({"man", "bash", "zsh"}))
      ->group("");
  return app;
}

void parse(CLI::App& app, int argc, const char* const* argv) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::ExtrasError&) {
    std::string names;
    for (const std::string& name : app.remaining()) names += (names.empty() ? "" : " ") + name;
    throw UsageError(fill(texts::kUnknownArgument, {names}));
  } catch (const CLI::ParseError& error) {
    throw UsageError(fill(texts::kBadValue, {error.what()}));
  }
}

/// The language counts for the messages about all the rest, so it is looked for beforehand.
void useLanguageOf(int argc, const char* const* argv) {
  constexpr std::string_view kOption = "--lang";
  for (int i = 1; i < argc; ++i) {
    std::string_view name = argv[i];
    if (name == kOption && i + 1 < argc) {
      name = argv[i + 1];
    } else if (name.starts_with(kOption) && name.substr(kOption.size()).starts_with('=')) {
      name.remove_prefix(kOption.size() + 1);
    } else {
      continue;
    }
    Language language = currentLanguage();
    if (!languageByName(name, language)) {
      throw UsageError(fill(texts::kBadValue, {"--lang " + std::string(name) + ": en, ru"}));
    }
    useLanguage(language);
  }
}

double numberOf(const char* option, const std::string& text) {
  const std::optional<double> number = numberIn(text);
  if (!number) throw UsageError(fill(texts::kNotANumber, {option, text}));
  return *number;
}

const sim::ScaleModel* modelOf(const std::string& text) {
  int number = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const sim::ScaleModel* model = error == std::errc() && end == text.data() + text.size()
                                     ? sim::findScaleModel(number)
                                     : nullptr;
  if (model == nullptr) throw UsageError(fill(texts::kNoSuchModel, {text}));
  return model;
}

/// Whether anything says what the scale shows or how it misbehaves.
bool givesScale(const Options& options) {
  const sim::Faults& faults = options.faults;
  return options.weight || options.decimals || options.price || options.unstable ||
         options.overload || faults.silent || faults.garbage > 0 || faults.corruptEvery > 0 ||
         faults.cut || faults.dribble.count() > 0 || faults.hangUpAfter > 0;
}

void checkTransport(bool pty, bool link, bool tcp) {
  if (pty && tcp) throw UsageError(say(texts::kOneTransport));
  if (link && tcp) throw UsageError(say(texts::kLinkNeedsPty));
}

void refuseUnknown(const Options& options) {
  const sim::ScaleModel& model = *options.model;
  const auto refuse = [&](bool given, bool known, const char* name) {
    if (!given || known) return;
    throw UsageError(
        fill(texts::kOptionUnknown, {std::to_string(model.number), name, knownOptions(model)}));
  };
  refuse(options.decimals.has_value(), model.hasDecimals(), "--decimals");
  refuse(options.price.has_value(), model.hasPrice(), "--price");
  refuse(options.unstable, model.showsStability(), "--unstable");
  refuse(options.overload, model.showsOverload(), "--overload");
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

Options readOptions(int argc, const char* const* argv) {
  useLanguageOf(argc, argv);
  Raw raw;
  const auto app = makeCommandLine(raw);
  parse(*app, argc, argv);

  Options options = raw.options;
  if (raw.modelGiven->count() > 0) options.model = modelOf(raw.model);
  if (raw.help) {
    options.task = options.model == nullptr ? Options::Task::Help : Options::Task::HelpOnModel;
    return options;
  }
  if (raw.version) {
    options.task = Options::Task::Version;
    return options;
  }
  if (!options.description.empty()) {
    options.task = Options::Task::Describe;
    return options;
  }
  if (raw.list) {
    options.task = Options::Task::List;
    return options;
  }
  if (raw.weightGiven->count() > 0) options.weight = numberOf("--weight", raw.weight);
  if (raw.priceGiven->count() > 0) options.price = numberOf("--price", raw.price);
  if (raw.decimalsGiven->count() > 0) options.decimals = raw.decimals;
  if (raw.cutGiven->count() > 0) options.faults.cut = raw.cut;
  options.faults.dribble = std::chrono::milliseconds{raw.dribble};
  const bool tcp = raw.tcpGiven->count() > 0;
  const bool link = raw.linkGiven->count() > 0;
  if (tcp) options.tcp = static_cast<std::uint16_t>(raw.tcp);

  if (raw.replayGiven->count() > 0) {
    const bool more = raw.allGiven->count() + raw.speedGiven->count() > 0 || givesScale(options);
    if (options.model != nullptr || more) throw UsageError(say(texts::kReplayAlone));
    checkTransport(raw.pty, link, tcp);
    options.task = Options::Task::Replay;
    return options;
  }
  if (raw.allGiven->count() > 0) {
    if (options.model != nullptr || raw.pty || link || tcp) throw UsageError(say(texts::kAllAlone));
    options.task = Options::Task::PlayAll;
    return options;
  }
  if (options.model == nullptr) throw UsageError(say(texts::kModelMissing));
  checkTransport(raw.pty, link, tcp);
  if (raw.speedGiven->count() > 0 && tcp) throw UsageError(say(texts::kSpeedNeedsPty));
  refuseUnknown(options);
  checkState(*options.model, options.stateOf(*options.model));
  return options;
}

std::string helpText() {
  Raw raw;
  return makeCommandLine(raw)->help();
}

std::string descriptionText(const std::string& form) {
  Raw raw;
  return selfDescription(*makeCommandLine(raw), form);
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
  std::replace(number.begin(), number.end(), ',', '.');
  double value = 0.0;
  const char* end = number.data() + number.size();
  const auto [stop, error] = std::from_chars(number.data(), end, value);
  if (error != std::errc() || stop != end || !std::isfinite(value)) return {};
  return value;
}

void checkState(const sim::ScaleModel& model, const sim::ScaleState& state) {
  const std::string number = std::to_string(model.number);
  if (state.decimals < model.decimals.fewest || state.decimals > model.decimals.most) {
    throw UsageError(
        fill(texts::kDecimalsOutOfRange,
             {number, std::to_string(model.decimals.fewest), std::to_string(model.decimals.most)}));
  }
  const auto limits = model.limits(state.decimals);
  const double units =
      std::round(state.weight * static_cast<double>(sim::powerOfTen(state.decimals)));
  if (units < static_cast<double>(limits.lowest) || units > static_cast<double>(limits.highest)) {
    throw UsageError(fill(
        texts::kWeightOutOfRange,
        {number, sim::decimalText(std::llround(std::abs(units)), state.decimals),
         std::to_string(state.decimals),
         (limits.lowest < 0 ? "-" : "") + sim::decimalText(std::abs(limits.lowest), state.decimals),
         sim::decimalText(limits.highest, state.decimals)}));
  }
  const double highestPrice = static_cast<double>(model.highestPrice());
  if (state.price < 0 || std::round(state.price * kHundredths) > highestPrice) {
    throw UsageError(
        fill(texts::kPriceOutOfRange, {number, sim::decimalText(std::llround(highestPrice), 2)}));
  }
}
