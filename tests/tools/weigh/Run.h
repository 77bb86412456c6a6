#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "SimulatedScale.h"

/// How a run of weigh ended.
struct ProgramRun {
  /// -1 for an end by a signal.
  int exitCode;
  std::string out;
  std::string err;

  /// The JSON records of the output, one per line.
  std::vector<nlohmann::json> records() const;
};

constexpr int kGood = 0;
constexpr int kScaleFailed = 1;
constexpr int kWrongUsage = 2;

using Arguments = std::vector<std::string>;

/// Runs weigh in English, unless the arguments say otherwise, and waits for its end.
ProgramRun weigh(const Arguments& arguments);
/// The same of any program.
ProgramRun runOf(const Arguments& commandLine);
/// Sends it a signal as soon as it has written a line.
ProgramRun weighUntil(int signal, const Arguments& arguments);

/// The words of a row of test data: "read --host ''", where '' is an empty one.
Arguments wordsOf(const std::string& text);

Arguments operator+(Arguments first, const Arguments& second);

/// The options that lead to a simulated scale.
Arguments optionsOf(const sim::SimulatedScale& scale);

/// Elements of a settings file. The id is the one under which the component knows the scale.
std::string serialEntry(int element, int id, int model, const std::string& device,
                        const char* coefficient = "1");
std::string networkEntry(int element, int id, int model, int port, const char* coefficient = "1");
