#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Faults.h"
#include "Output.h"
#include "ScaleModel.h"

/// The command line, checked against the model.
struct Options {
  enum class Task { Play, PlayAll, Replay, List, About };

  Task task = Task::Play;
  /// Null unless the task is about one model; a variant where one was named.
  const sim::ScaleModel* model = nullptr;
  /// Folder of --all.
  std::string folder;
  /// Exchange log of --replay.
  std::string log;
  /// TCP port, 0 for any; none for a pseudo-terminal.
  std::optional<std::uint16_t> tcp;
  /// Name of the device to make; empty for one in a temporary folder.
  std::string port;
  /// Speed of the scale's end of the pseudo-terminal; 0 for a line that carries any.
  int baud = 0;
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

/// Reads the command line. An exit code if that is all: help was printed. Throws Failure.
std::optional<ExitCode> readOptions(int argc, char** argv, Options& options);

/// The options for what the scale shows that a model knows, separated by blanks.
std::string knownOptions(const sim::ScaleModel& model);

/// A number as people write it, with a point or a comma; none for anything else.
std::optional<double> numberIn(std::string_view text);

/// Throws Failure for what the model can't show.
void checkState(const sim::ScaleModel& model, const sim::ScaleState& state);
