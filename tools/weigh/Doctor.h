#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "DoctorTexts.h"
#include "Interrupt.h"
#include "Options.h"
#include "Progress.h"
#include "SerialDevices.h"
#include "Session.h"

namespace weigh {

/// One thing found out, in the current language.
struct Finding {
  /// For scripts, the same in all languages.
  std::string code;
  std::string cause;
  std::string remedy;
};

Finding finding(const Advice& advice, std::initializer_list<std::string> arguments = {});

/// The polls that were made through the component.
struct PollTimes {
  int done = 0;
  int answered = 0;
  /// Of the answered ones; none without.
  std::optional<Milliseconds> median;
  std::optional<Milliseconds> worst;
  /// What the line itself needs for request, pause and answer at its speed; none on a network and
  /// for models whose answers have no fixed length.
  std::optional<Milliseconds> wire;
};

/// What is the matter with one scale.
struct Diagnosis {
  Finding verdict;
  /// The scale gives a weight, whatever there is to say of it.
  bool weighs = false;
  /// What was noticed beside it.
  std::vector<Finding> notes;
  PollTimes polls;
  /// The last answered poll.
  std::optional<Reading> reading;
  /// What came in where no poll was answered.
  std::vector<std::uint8_t> bytes;
  /// The serial devices of the machine, if the one that was named isn't one of them.
  std::vector<devices::SerialDevice> devices;
};

/// What a diagnosis works with.
struct Practice {
  std::filesystem::path component;
  devices::Roots roots = {};
  const Interrupt& interrupt;
  Progress& progress;
};

/// How long the diagnosis of a scale may take.
std::chrono::seconds longestDiagnosis(const Connection& connection);

/// Looks at the line, polls the scale through the component as the platform does, and if that
/// brings no answer listens to what comes in. Asks for weights only.
Diagnosis diagnose(const Connection& connection, const Practice& practice);

/// Whether a model's frames can say that the weight is moving. The drivers of the others call
/// every weight moving, or none.
bool tellsMotion(int model);

}  // namespace weigh
