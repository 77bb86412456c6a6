#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Faults.h"
#include "ScaleModel.h"

/// The command line, checked against the model.
struct Options {
  enum class Task { Play, PlayAll, Replay, List, Help, HelpOnModel, Version, Describe };

  Task task = Task::Play;
  /// Null unless the task is about one model.
  const sim::ScaleModel* model = nullptr;
  /// What Task::Describe is to print: "man", "bash" or "zsh".
  std::string description;
  /// Folder of --all.
  std::string folder;
  /// Exchange log of --replay.
  std::string log;
  /// TCP port, 0 for any; none for a pseudo-terminal.
  std::optional<std::uint16_t> tcp;
  std::string link;
  /// Speed of the scale's end of the pseudo-terminal; 0 for a line that carries any.
  int speed = 0;
  bool verbose = false;
  sim::Faults faults;

  std::optional<double> weight;
  std::optional<int> decimals;
  std::optional<double> price;
  bool unstable = false;
  bool overload = false;

  /// The model's usual state with what the options change; those it doesn't know are left out.
  sim::ScaleState stateOf(const sim::ScaleModel& of) const;
};

/// A command line that can't be obeyed. The message says why, in the current language.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the command line and sets the language of the messages. Throws UsageError.
Options readOptions(int argc, const char* const* argv);

/// The text of --help.
std::string helpText();
/// The manual page or the completion for a shell.
std::string descriptionText(const std::string& form);

/// The options for what the scale shows that a model knows, separated by blanks.
std::string knownOptions(const sim::ScaleModel& model);

/// A number as people write it, with a point or a comma; none for anything else.
std::optional<double> numberIn(std::string_view text);

/// Throws UsageError for what the model can't show.
void checkState(const sim::ScaleModel& model, const sim::ScaleState& state);
