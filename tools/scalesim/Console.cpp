#include "Console.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <stdexcept>

#include "Messages.h"
#include "ModelSheet.h"
#include "Options.h"
#include "Output.h"

namespace {

using sim::ScaleLine;
using sim::ScaleModel;
using sim::ScaleState;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Takes the first word off `text`.
std::string_view takeWord(std::string_view& text) {
  const std::string_view word = text.substr(0, text.find_first_of(" \t"));
  text = trimmed(text.substr(word.size()));
  return word;
}

/// A command that changes what a scale shows.
struct StateCommand {
  std::string_view name;
  bool wantsNumber;
  void (*change)(ScaleState&, double);
  /// Of the models that know it; null for all.
  bool (ScaleModel::*known)() const = nullptr;
};

constexpr std::array kStateCommands = {
    StateCommand{"weight", true, [](ScaleState& s, double value) { s.weight = value; }},
    StateCommand{"price", true, [](ScaleState& s, double value) { s.price = value; },
                 &ScaleModel::hasPrice},
    StateCommand{"decimals", true,
                 [](ScaleState& s, double value) {
                   constexpr double kMost = 9.0;
                   s.decimals = static_cast<int>(std::clamp(value, -1.0, kMost));
                 },
                 &ScaleModel::hasDecimals},
    StateCommand{"stable", false, [](ScaleState& s, double) { s.stable = true; },
                 &ScaleModel::showsStability},
    StateCommand{"unstable", false, [](ScaleState& s, double) { s.stable = false; },
                 &ScaleModel::showsStability},
    StateCommand{"overload", false, [](ScaleState& s, double) { s.overload = true; },
                 &ScaleModel::showsOverload},
    StateCommand{"normal", false, [](ScaleState& s, double) { s.overload = false; },
                 &ScaleModel::showsOverload},
    StateCommand{"tare", false, [](ScaleState& s, double) { s.pressTare(); }},
    StateCommand{"zero", false, [](ScaleState& s, double) { s.pressZero(); }},
};

/// A command that changes the line.
struct LineCommand {
  std::string_view name;
  void (*change)(ScaleLine&);
};

template <bool silent>
void setSilent(ScaleLine& line) {
  sim::Faults faults = line.faults();
  faults.silent = silent;
  line.setFaults(faults);
}

constexpr std::array kLineCommands = {
    LineCommand{"silent", setSilent<true>},
    LineCommand{"speak", setSilent<false>},
    LineCommand{"away", [](ScaleLine& line) { line.goAway(); }},
    LineCommand{"back", [](ScaleLine& line) { line.comeBack(); }},
};

}  // namespace

Console::Console(std::vector<ScaleLine*> lines, std::ostream& out, bool echo)
    : lines_(std::move(lines)), out_(out), echo_(echo) {}

void Console::feed(std::string_view input) {
  pending_ += input;
  for (std::size_t end = 0; !quit_ && (end = pending_.find('\n')) != std::string::npos;) {
    const std::string line = pending_.substr(0, end);
    pending_.erase(0, end + 1);
    execute(line);
  }
  // A flood without line ends is no command.
  constexpr std::size_t kLongestLine = 4096;
  if (pending_.size() > kLongestLine) pending_.clear();
}

void Console::answer(std::string_view text) { out_ << visible(text) << std::endl; }

void Console::execute(std::string_view line) {
  std::string_view command = trimmed(line);
  if (command.empty()) return;
  if (command == "quit") {
    quit_ = true;
    return;
  }
  if (command == "help") {
    return answer(
        say("1.250         new weight, kilograms\n"
            "price 12.50   new price\n"
            "decimals 2    digits behind the point\n"
            "stable, unstable\n"
            "overload, normal\n"
            "tare, zero    the keys of the scale\n"
            "silent, speak\n"
            "away, back    pull the cable and plug it in again\n"
            "show          what the scale shows\n"
            "quit\n"
            "With --all, a model's number and a colon in front name one model: \"13: unstable\"."));
  }
  const std::string whole(command);
  std::vector<ScaleLine*> chosen = lines_;
  const std::size_t colon = command.find(':');
  const bool named = colon != std::string_view::npos;
  if (named) {
    const std::string number(trimmed(command.substr(0, colon)));
    std::erase_if(chosen, [&](const ScaleLine* scale) {
      return std::to_string(scale->scale().model().number) != number;
    });
    if (chosen.empty()) return answer(say("no scale of model {0} is running", number));
    command = trimmed(command.substr(colon + 1));
  }
  // Said to several scales, a command is for those that know it.
  const bool mustKnow = named || lines_.size() == 1;
  try {
    for (ScaleLine* scale : chosen) apply(*scale, command, whole, mustKnow);
  } catch (const std::exception& error) {
    answer(error.what());
  }
}

void Console::apply(ScaleLine& line, std::string_view command, const std::string& whole,
                    bool mustKnow) {
  std::string_view rest = command;
  std::string_view word = takeWord(rest);
  const ScaleModel& model = line.scale().model();
  if (numberIn(word)) {
    rest = command;
    word = "weight";
  }
  const auto* change = std::ranges::find(kLineCommands, word, &LineCommand::name);
  const auto* set = std::ranges::find(kStateCommands, word, &StateCommand::name);
  if (change != kLineCommands.end()) {
    change->change(line);
  } else if (set != kStateCommands.end()) {
    const std::optional<double> number = numberIn(rest);
    if (set->wantsNumber != number.has_value() || (!set->wantsNumber && !rest.empty())) {
      throw std::invalid_argument(
          set->wantsNumber ? say("{0} wants a number, and '{1}' is none", word, rest)
                           : say("'{0}' is no weight and no command; \"help\" lists them", whole));
    }
    if (set->known != nullptr && !(model.*set->known)()) {
      if (!mustKnow) return;
      return answer(say("model {0} doesn't know '{1}'", model.number, word));
    }
    ScaleState state = line.scale().state();
    set->change(state, number.value_or(0.0));
    if (mustKnow) checkState(model, state);
    line.scale().state() = state;
  } else if (word != "show") {
    throw std::invalid_argument(
        say("'{0}' is no weight and no command; \"help\" lists them", whole));
  }
  if (echo_ || word == "show") show(line);
}

void Console::show(const ScaleLine& line) {
  const ScaleModel& model = line.scale().model();
  const sim::Display display = model.display(line.scale().state());
  constexpr int kMoneyDecimals = 2;
  std::string text = std::to_string(model.number) + ": " + displayText(model, display) + ", " +
                     (display.overload ? say("overload")
                      : display.stable ? say("stable")
                                       : say("moving"));
  if (model.hasPrice()) {
    text += say(", price {0}, cost {1}", sim::decimalText(display.price, kMoneyDecimals),
                sim::decimalText(display.cost, kMoneyDecimals));
  }
  if (display.tare != 0) {
    sim::Display tare = display;
    tare.weight = display.tare;
    text += say(", tare {0}", displayText(model, tare));
  }
  if (line.faults().silent) text += say(", silent");
  if (line.endpoint().isAway()) text += say(", away");
  answer(text);
}
